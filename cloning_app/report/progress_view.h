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

/// What two states do not have alike, and what the two are called.
struct NamedDifferences {
    std::string first;
    std::string second;
    std::vector<Difference> list;
};

/// What a run that reached its end has to say.
struct Report {
    std::vector<Row> rows;  ///< none where no category was cloned
    int exitStatus;
    std::vector<std::string> closing;   ///< sentences for the end, one a line
    std::vector<Check> checks = {};     ///< what was judged of the package as a whole
    std::string digest = {};            ///< the package's manifest; empty where there is none
    NamedDifferences differences = {};  ///< between the package and the television
    bool brokenOff = false;             ///< what was loaded was to be read back, and a stop kept it from that
    std::vector<Lack> lacks = {};       ///< what the package lacks
    /// The keys of the settings that a backup lacks because they are no UTF-8 text, of a backup alone.
    std::vector<std::string> foreignTexts = {};
    /// The categories that were to be compared with the television and were not, of a dry run alone.
    std::optional<std::vector<std::string>> notCompared = {};
};

/// Where a run stands.
struct Progress {
    std::optional<ShownPhase> phase = {};  ///< what it works at now
    double part = 0;                       ///< how much of the phase is done, from 0 to 1
    std::size_t entry = 0;  ///< how many of the library's entries are done; in a backup, were reported
    std::size_t entries = 0;
    std::optional<VXClone> category = {};  ///< the one at work; in a backup the latest that was reported
    std::optional<int> percent = {};       ///< of the whole run, never falls: `RunProgress` works it out
};

/// Shows a run while it goes on and says how it ended. One thread at a time, unless it says otherwise.
class ProgressView {
 public:
    virtual ~ProgressView() = default;
    /// The run has come further.
    virtual void progress(const Progress& progress) = 0;
    /// A category's outcome, as soon as it is known.
    virtual void category(const Row& row) = 0;
    /// Some time has passed: something that moves may move.
    virtual void tick() = 0;
    /// Takes the live line away, where there is one, for what somebody else writes next.
    virtual void clear() = 0;
    /// A sentence that does not end the run.
    virtual void notice(const std::string& sentence) = 0;
    /// The end: exactly one of the two is called, last.
    virtual void done(const Report& report) = 0;
    virtual void failed(const Error& error) = 0;
};

enum class ViewKind {
    Terminal,  ///< one live line, rewritten in place
    Plain,     ///< a line for each step
    Json       ///< a JSON object for each step, on `out` alone
};

/// How a view writes.
struct ViewOptions {
    /// What is behind `out` now; nothing is wider.
    std::function<vxcommon::Screen()> screen = [] { return vxcommon::Screen{}; };
    /// How long the command has been at work.
    std::function<std::chrono::milliseconds()> elapsed = [] { return std::chrono::milliseconds(0); };
    /// What is behind `err` now.
    std::function<vxcommon::Screen()> errorScreen = [] { return vxcommon::Screen{}; };
};

/// `run` is what the command is called in JSON and on the live line, such as "undo". Sentences about failures
/// go to `err`.
std::unique_ptr<ProgressView> makeProgressView(ViewKind kind, std::string run, vxcommon::Writer out,
                                               vxcommon::Writer err, ViewOptions options = {});

/// Shows the result as the run's end. Result: the exit status.
int conclude(const Result<Report>& result, ProgressView& view);

/// Shows a backup that is a phase of another run: what it says of its progress is that phase's, and its
/// categories are not those of the run that the user asked for.
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
    /// The rest is for what is made of that which the library has saved.
    static constexpr double kPartOfTheSave = 0.8;

    ProgressView& view_;
    ShownPhase phase_;
};

}  // namespace vxclone
