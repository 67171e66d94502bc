#include "cloning_app/verbs/command.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/record/status.h"
#include "cloning_app/verbs/stop_signals.h"

namespace vxclone {

namespace {

ViewOptions optionsOfView() {
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [begin] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    };
    return {[] { return vxcommon::screenAt(STDOUT_FILENO); }, elapsed,
            [] { return vxcommon::screenAt(STDERR_FILENO); }};
}

/// Shows only the notices of a run.
class NoticesOnly final : public ProgressView {
 public:
    /// `view` must outlive this object.
    explicit NoticesOnly(ProgressView& view) : view_(view) {}

    void progress(const Progress& /*progress*/) override {}
    void category(const Row& /*row*/) override {}
    void tick() override {}
    void clear() override { view_.clear(); }
    void notice(const std::string& sentence) override { view_.notice(sentence); }
    void done(const Report& report) override { view_.done(report); }
    void failed(const Error& error) override { view_.failed(error); }

 private:
    ProgressView& view_;
};

Result<Output> namingUnfinishedRun(Result<Output> found) {
    if (found) {
        nameUnfinishedRun(*found, recordFolderOf(kCloneRoot));
    }
    return found;
}

}  // namespace

ViewKind viewKindOfRun(bool json) {
    if (json) {
        return ViewKind::Json;
    }
    const char* const terminal = std::getenv("TERM");
    const bool rewritable = terminal != nullptr && std::string_view(terminal) != "dumb";
    return rewritable && vxcommon::isTerminal(STDOUT_FILENO) ? ViewKind::Terminal : ViewKind::Plain;
}

std::unique_ptr<ProgressView> makeView(ViewKind kind, std::string run) {
    return makeProgressView(kind, std::move(run), vxcommon::standardOutput(), vxcommon::standardError(),
                            optionsOfView());
}

int say(const Result<Output>& found, bool json) {
    return sayOutput(found, json, {vxcommon::standardOutput(), vxcommon::screenAt(STDOUT_FILENO)},
                     {vxcommon::standardError(), vxcommon::screenAt(STDERR_FILENO)});
}

int lookAlone(bool json, const std::function<Result<Output>()>& look) {
    const auto found = [json, &look] {
        const EndingAtStopSignals ending(json);
        return namingUnfinishedRun(look());
    }();
    return say(found, json);
}

int runLook(CloneEngine& engine, std::string run, bool json,
            const std::function<Result<Output>(const CloneContext&)>& look) {
    const StopFlag& stop = heedStopSignals();
    const ViewKind kind = viewKindOfRun(json);
    const auto view = makeView(kind, std::move(run));
    NoticesOnly notices(*view);
    // Lines for single steps would disturb the output of a looking command.
    ProgressView& shown = kind == ViewKind::Plain ? static_cast<ProgressView&>(notices) : *view;
    auto found = look({.engine = engine, .view = shown, .stop = stop, .cloneRoot = kCloneRoot});
    view->clear();
    return say(namingUnfinishedRun(std::move(found)), json);
}

int runCommand(CloneEngine& engine, std::string run, ViewKind kind,
               const std::function<Result<Report>(const CloneContext&)>& work) {
    const StopFlag& stop = heedStopSignals();
    const auto view = makeView(kind, std::move(run));
    const CloneContext context{.engine = engine, .view = *view, .stop = stop, .cloneRoot = kCloneRoot};
    return conclude(work(context), *view);
}

}  // namespace vxclone
