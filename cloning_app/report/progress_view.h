#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/report/comparison.h"
#include "cloning_app/report/lack.h"
#include "cloning_app/report/result_table.h"
#include "cloning_app/report/shown_phase.h"
#include "common/writer.h"

namespace vxclone {

/// The differences between two states, and the names of the two.
struct NamedDifferences {
    std::string first;
    std::string second;
    std::vector<Difference> list;
};

/// The result of a run that reached its end.
struct Report {
    std::vector<Row> rows;  ///< empty if no category was cloned
    int exitStatus;
    std::vector<std::string> closing;   ///< sentences for the end, one on each line
    std::vector<Check> checks = {};     ///< the checks of the whole package
    std::string digest = {};            ///< of the package's manifest; empty if there is none
    NamedDifferences differences = {};  ///< between the package and the television
    bool brokenOff = false;             ///< a stop prevented the read-back
    std::vector<Lack> lacks = {};       ///< what the package lacks
    /// Only for a backup: the keys of settings that it lacks because their texts are not UTF-8.
    std::vector<std::string> foreignTexts = {};
    /// Only for a dry run: the categories that could not be compared with the television.
    std::optional<std::vector<std::string>> notCompared = {};
};

/// The progress of a run.
struct Progress {
    std::optional<ShownPhase> phase = {};  ///< the current phase
    double part = 0;                       ///< the finished part of the phase, from 0 to 1
    std::size_t entry = 0;  ///< the number of the library's entries that are done; in a backup, reported
    std::size_t entries = 0;
    std::optional<VXClone> category = {};  ///< the current one; in a backup the last one that was reported
    std::optional<int> percent = {};       ///< of the whole run; never falls; computed by `RunProgress`
};

/// Shows a run and its result. Threads: one at a time, unless a function says otherwise.
class ProgressView {
 public:
    virtual ~ProgressView() = default;
    /// The run has made progress.
    virtual void progress(const Progress& progress) = 0;
    /// The result of a category is known.
    virtual void category(const Row& row) = 0;
    /// Some time has passed, so the live line may be updated.
    virtual void tick() = 0;
    /// Removes the live line, if there is one, because something else will be written.
    virtual void clear() = 0;
    /// A message that does not end the run.
    virtual void notice(const std::string& sentence) = 0;
    /// The end. Exactly one of the two is called, as the last call.
    virtual void done(const Report& report) = 0;
    virtual void failed(const Error& error) = 0;
};

enum class ViewKind {
    Terminal,  ///< one live line, rewritten in place
    Plain,     ///< a line for each step
    Json       ///< a JSON object for each step, only on `out`
};

/// The options of a view.
struct ViewOptions {
    /// The current screen at `out`; no line is wider.
    std::function<vxcommon::Screen()> screen = [] { return vxcommon::Screen{}; };
    /// The time since the command began.
    std::function<std::chrono::milliseconds()> elapsed = [] { return std::chrono::milliseconds(0); };
    /// The current screen at `err`.
    std::function<vxcommon::Screen()> errorScreen = [] { return vxcommon::Screen{}; };
};

/// `run` is the name of the command in JSON and on the live line, such as "undo". Sentences about failures go
/// to `err`.
std::unique_ptr<ProgressView> makeProgressView(ViewKind kind, std::string run, vxcommon::Writer out,
                                               vxcommon::Writer err, ViewOptions options = {});

/// Shows the result at the end of a run. Result: the exit status.
int conclude(const Result<Report>& result, ProgressView& view);

/// Shows a backup that is a phase of another run. Its progress is that of the phase. Its categories are not
/// shown, because they are not those of the run that the user asked for.
class QuietView final : public ProgressView {
 public:
    /// `view` must outlive this object.
    QuietView(ProgressView& view, ShownPhase phase) : view_(view), phase_(phase) {}

    void progress(const Progress& progress) override {
        Progress outer = progress;
        outer.phase = phase_;
        outer.part = progress.phase == ShownPhase::Saving ? progress.part * kPartOfTheSave : kPartOfTheSave;
        view_.progress(outer);
    }
    void category(const Row& /*row*/) override {}
    void tick() override { view_.tick(); }
    void clear() override { view_.clear(); }
    void notice(const std::string& sentence) override { view_.notice(sentence); }
    void done(const Report& report) override { view_.done(report); }
    void failed(const Error& error) override { view_.failed(error); }

 private:
    /// The part of the progress for the library's work. The rest is for completing what the library has
    /// saved.
    static constexpr double kPartOfTheSave = 0.8;

    ProgressView& view_;
    ShownPhase phase_;
};

}  // namespace vxclone
