#include "cloning_app/report/progress_view.h"

#include <nlohmann/json.hpp>

#include "cloning_app/report/comparison.h"
#include "cloning_app/report/json_lines.h"
#include "cloning_app/report/text_view.h"

namespace vxclone {

namespace {

constexpr double kMillisecondsInASecond = 1000;

class JsonView final : public ProgressView {
 public:
    JsonView(std::string run, vxcommon::Writer out, ViewOptions options)
        : run_(std::move(run)), lines_(out), options_(std::move(options)) {}

    void progress(const Progress& progress) override {
        latest_ = progress;
        Json members = begin();
        if (progress.entries != 0) {
            members["entry"] = progress.entry;
            members["entries"] = progress.entries;
        }
        if (progress.category) {
            members["category"] = categoryOf(*progress.category).name;
        }
        lines_.write(Event::Progress, members);
    }
    void category(const Row& row) override {
        Json members = begin();
        members["category"] = categoryOf(row.category).name;
        members["reported"] = vxclone::nameOf(row.verdict);
        lines_.write(Event::Progress, members);
    }
    void tick() override {}
    void clear() override {}
    void notice(const std::string& sentence) override {
        Json members = begin();
        members["message"] = sentence;
        lines_.write(Event::Progress, members);
    }
    void done(const Report& report) override {
        for (const Row& row : report.rows) {
            lines_.write(Event::Result, jsonOf(row));
        }
        for (const Difference& difference : report.differences.list) {
            lines_.write(Event::Result, jsonOf(difference));
        }
        for (const Check& check : report.checks) {
            lines_.write(Event::Finding, jsonOf(check));
        }
        for (const Lack& lack : report.lacks) {
            lines_.write(Event::Finding, jsonOf(lack));
        }
        Json summary = {{"exit", report.exitStatus}, {"messages", report.closing}};
        if (!report.digest.empty()) {
            summary["digest"] = report.digest;
        }
        if (report.notCompared) {
            summary["notCompared"] = *report.notCompared;
        }
        lines_.write(Event::Summary, summary);
    }
    void failed(const Error& error) override { lines_.error(error); }

 private:
    using Json = nlohmann::ordered_json;

    /// The members that every line of a current run has.
    Json begin() const {
        Json members = {
            {"run", run_},
            {"elapsed", static_cast<double>(options_.elapsed().count()) / kMillisecondsInASecond}};
        if (latest_.phase) {
            members["phase"] = vxclone::nameOf(*latest_.phase);
        }
        if (latest_.percent) {
            members["percent"] = *latest_.percent;
        }
        return members;
    }

    std::string run_;
    JsonLines lines_;
    ViewOptions options_;
    Progress latest_;
};

}  // namespace

std::unique_ptr<ProgressView> makeProgressView(ViewKind kind, std::string run, vxcommon::Writer out,
                                               vxcommon::Writer err, ViewOptions options) {
    switch (kind) {
        case ViewKind::Terminal:
            return makeTerminalView(std::move(run), out, err, std::move(options));
        case ViewKind::Plain:
            return makePlainView(std::move(run), out, err, std::move(options));
        case ViewKind::Json:
            break;
    }
    return std::make_unique<JsonView>(std::move(run), out, std::move(options));
}

int conclude(const Result<Report>& result, ProgressView& view) {
    if (!result) {
        view.failed(result.error());
        return exitStatusOf(result.error().code);
    }
    view.done(*result);
    return result->exitStatus;
}

}  // namespace vxclone
