#include "cloning_app/run/progress_view.h"

#include <array>
#include <nlohmann/json.hpp>

namespace vxclone {

namespace {

std::string_view nameOf(Direction direction) {
    return direction == Direction::Backup ? "backup" : "restore";
}

/// What both views for people do at the end.
class TextView : public ProgressView {
 public:
    TextView(Direction direction, std::ostream& out, std::ostream& err, bool coloured)
        : direction_(direction), out_(out), err_(err), coloured_(coloured) {}

    void done(const Report& report) override {
        out_ << renderTable(report.rows, report.checks, coloured_);
        for (const std::string& sentence : report.closing) {
            out_ << sentence << '\n';
        }
        out_ << std::flush;
    }

    void failed(const Error& error) override { err_ << "vxclone: " << error.sentence << '\n' << std::flush; }

 protected:
    std::ostream& out() { return out_; }
    Direction direction() const { return direction_; }

 private:
    Direction direction_;
    std::ostream& out_;
    std::ostream& err_;
    bool coloured_;
};

class PlainView final : public TextView {
 public:
    using TextView::TextView;

    void percent(int value) override { out() << nameOf(direction()) << ' ' << value << " %\n" << std::flush; }
    void category(const Row& row) override {
        out() << categoryOf(row.category).name << ": " << textOf(row) << '\n' << std::flush;
    }
    void tick() override {}
    void notice(const std::string& sentence) override { out() << sentence << '\n' << std::flush; }
};

class TerminalView final : public TextView {
 public:
    using TextView::TextView;

    void percent(int value) override {
        percent_ = value;
        draw();
    }
    void category(const Row& row) override {
        ++reported_;
        latest_ = std::string(categoryOf(row.category).name) + " " + std::string(wordsOf(row.verdict));
        draw();
    }
    void tick() override {
        ++ticks_;
        draw();
    }
    void notice(const std::string& sentence) override {
        clear();
        out() << sentence << '\n';
        draw();
    }
    void done(const Report& report) override {
        clear();
        TextView::done(report);
    }
    void failed(const Error& error) override {
        clear();
        TextView::failed(error);
    }

 private:
    static constexpr std::size_t kBarWidth = 20;

    std::string bar() const {
        std::string bar(kBarWidth, ' ');
        if (direction() == Direction::Restore) {
            const auto filled = static_cast<std::size_t>(percent_) * kBarWidth / 100;
            bar.replace(0, filled, filled, '#');
        } else {
            bar[ticks_ % kBarWidth] = '#';
        }
        return bar;
    }

    void draw() {
        clear();
        out() << nameOf(direction()) << " [" << bar() << "] ";
        if (direction() == Direction::Restore) {
            out() << percent_ << " %";
        } else {
            out() << reported_ << " reported";
        }
        out() << (latest_.empty() ? "" : "  ") << latest_ << std::flush;
        drawn_ = true;
    }

    void clear() {
        if (drawn_) {
            out() << "\r\x1b[K" << std::flush;
        }
        drawn_ = false;
    }

    int percent_ = 0;
    std::size_t reported_ = 0;
    std::size_t ticks_ = 0;
    std::string latest_;
    bool drawn_ = false;
};

class JsonView final : public ProgressView {
 public:
    explicit JsonView(std::ostream& out) : out_(out) {}

    void percent(int value) override { write({{"event", "progress"}, {"percent", value}}); }
    void category(const Row& row) override {
        Json line = {{"event", "category"}};
        line.update(entry(row));
        write(line);
    }
    void tick() override {}
    void notice(const std::string& sentence) override { write({{"event", "notice"}, {"message", sentence}}); }
    void done(const Report& report) override {
        Json line = {{"event", "done"}, {"exit", report.exitStatus}};
        for (const Row& row : report.rows) {
            line["categories"].push_back(entry(row));
        }
        for (const Check& check : report.checks) {
            line["checks"].push_back(entry(check));
        }
        line["messages"] = report.closing;
        write(line);
    }
    void failed(const Error& error) override {
        write({{"event", "error"},
               {"code", vxclone::nameOf(error.code)},
               {"exit", exitStatusOf(error.code)},
               {"message", error.sentence}});
    }

 private:
    using Json = nlohmann::ordered_json;

    static Json entry(const Row& row) {
        Json entry = {{"category", categoryOf(row.category).name}, {"result", vxclone::nameOf(row.verdict)}};
        for (const auto& [name, text] :
             {std::pair("application", &row.subject), std::pair("detail", &row.detail)}) {
            if (!text->empty()) {
                entry[name] = *text;
            }
        }
        return entry;
    }

    static Json entry(const Check& check) {
        Json entry = {{"check", vxclone::nameOf(check.subject)}, {"result", vxclone::nameOf(check.finding)}};
        for (const auto& [name, text] :
             {std::pair("television", &check.television), std::pair("package", &check.package),
              std::pair("detail", &check.detail)}) {
            if (!text->empty()) {
                entry[name] = *text;
            }
        }
        return entry;
    }

    /// A name on a stick need not be UTF-8, which JSON must be: other bytes are replaced.
    void write(const Json& line) {
        out_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
    }

    std::ostream& out_;
};

}  // namespace

std::unique_ptr<ProgressView> makeProgressView(ViewKind kind, Direction direction, std::ostream& out,
                                               std::ostream& err, bool coloured) {
    switch (kind) {
        case ViewKind::Terminal:
            return std::make_unique<TerminalView>(direction, out, err, coloured);
        case ViewKind::Plain:
            return std::make_unique<PlainView>(direction, out, err, coloured);
        case ViewKind::Json:
            break;
    }
    return std::make_unique<JsonView>(out);
}

}  // namespace vxclone
