#include "cloning_app/run/library_run.h"

#include <fcntl.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>

#include "cloning_app/base/tree_walk.h"
#include "cloning_app/television/settings_store.h"
#include "cloning_app/television/television_folders.h"

namespace vxclone {

namespace {

constexpr std::chrono::milliseconds kPollInterval{50};

tl::unexpected<Error> refused(const char* key) {
    return failure(ErrorCode::SettingsRefused,
                   std::string("the television's settings store refuses ") + key +
                       ", so the run could not be followed; restart the television");
}

/// Whether a run that saves the category puts it on the result list.
bool isReported(Handling handling) {
    return handling == Handling::Reported || handling == Handling::NotEvaluated;
}

double shareOf(std::size_t done, std::size_t all) {
    return all == 0 ? 0 : static_cast<double>(done) / static_cast<double>(all);
}

constexpr const char* kOrvelApplication = "org.vorta.orvel-app";
constexpr const char* kFirstScreenKey = "db/first_screen/type";
constexpr const char* kNotAsked = "not installed, or it did not start";
constexpr const char* kOutcomeLost = "it runs; its outcome may be lost";
constexpr const char* kMayBeAnothers = "the one outcome that came may be another application's";

/// Whether the row tells of an application, be it that the library said nothing of any.
bool tellsOfApplication(const Row& row) {
    return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA &&
           (row.verdict == Verdict::Done || row.verdict == Verdict::Failed ||
            row.verdict == Verdict::NotReported);
}

std::string firstScreenName(const std::string& identifier) {
    return identifier.empty() ? "first screen, without a name" : identifier;
}

/// Whether the row's category or application left something in the package.
bool hasSaved(const Tree& root, const Row& row) {
    const std::string entry = row.subject.empty() ? std::string(categoryOf(row.category).entry) : row.subject;
    return !entry.empty() && hasEntry(root, entry).value_or(false);
}

/// Whether something was saved of which the library's list does not tell: two outcomes that are appended at
/// the same moment can lose one, and so does a list that cannot be read or written once.
bool lostAnyOutcome(const Tree& root, const ResultList& results) {
    std::vector<Row> rows = tableRows(Direction::Backup, allCategories(), results.outcomes(), {});
    nameApplications(rows);
    return std::any_of(rows.begin(), rows.end(), [&root](const Row& row) {
        return row.verdict == Verdict::NotReported &&
               handlingOf(categoryOf(row.category), Direction::Backup) == Handling::Reported &&
               hasSaved(root, row);
    });
}

Result<ResultList> saveOnce(const CloneContext& context) {
    VX_RETURN_IF_FAILED(resetRunKeys(Direction::Backup));
    return runAndFollow(context, Direction::Backup, allCategories(), [&] { return context.engine.backUp(); });
}

}  // namespace

Result<void> resetRunKeys(Direction direction) {
    if (!store::writeString(kResultKey, "")) {
        return refused(kResultKey);
    }
    if (direction == Direction::Restore && !store::writeInt(kProgressKey, 0)) {
        return refused(kProgressKey);
    }
    return {};
}

Follower::Follower(Direction direction, const std::vector<VXClone>& list, ProgressView& view,
                   const StopFlag& stop)
    : direction_(direction), view_(view), stop_(stop) {
    for (const VXClone category : list) {
        if (direction == Direction::Restore || isReported(handlingOf(categoryOf(category), direction))) {
            list_.push_back(category);
        }
    }
    shown_ = progressNow();
    view_.progress(shown_);
    thread_ = std::thread([this] { follow(); });
}

Follower::~Follower() {
    join();
}

void Follower::join() {
    {
        const std::lock_guard lock(mutex_);
        end_ = true;
    }
    ended_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

ResultList Follower::finish() {
    join();
    look();
    return std::move(results_);
}

void Follower::follow() {
    std::unique_lock lock(mutex_);
    while (!ended_.wait_for(lock, kPollInterval, [this] { return end_; })) {
        lock.unlock();
        look();
        lock.lock();
    }
}

void Follower::look() {
    if (stop_.raised() && !stopSaid_) {
        stopSaid_ = true;
        view_.notice("The television cannot be interrupted now: vxclone stops when this run has ended.");
    }
    if (const auto reading = store::readString(kResultKey)) {
        for (const Outcome& outcome : results_.update(*reading)) {
            view_.category(rowOf(outcome, direction_));
            reported_.insert(outcome.category);
            latest_ = outcome.category;
        }
    }
    if (direction_ == Direction::Restore) {
        percent_ = std::clamp(store::readInt(kProgressKey).value_or(0), percent_, kWholePercent);
    }
    const Progress progress = progressNow();
    if (progress.entry > shown_.entry) {
        shown_ = progress;
        view_.progress(progress);
    }
}

Progress Follower::progressNow() const {
    if (direction_ == Direction::Backup) {
        const std::size_t reported = std::min(reported_.size(), list_.size());
        return {ShownPhase::Saving, shareOf(reported, list_.size()), reported, list_.size(), latest_};
    }
    // The library writes the percentage of its entries that are done, rounded down, after each of them.
    const std::size_t handled =
        (static_cast<std::size_t>(percent_) * list_.size() + kWholePercent - 1) / kWholePercent;
    const auto atWork = handled < list_.size() ? std::optional(list_[handled]) : std::nullopt;
    return {ShownPhase::Load, shareOf(handled, list_.size()), handled, list_.size(), atWork};
}

void nameApplications(std::vector<Row>& rows) {
    const auto first = std::find_if(rows.begin(), rows.end(), tellsOfApplication);
    if (first == rows.end()) {
        return;
    }
    const auto firstScreen = store::readString(kFirstScreenKey);
    const bool hasOrvel = !firstScreen || std::count_if(rows.begin(), rows.end(), tellsOfApplication) > 1;
    if (firstScreen) {
        const auto last = hasOrvel ? first + 1 : first;
        last->subject = firstScreenName(*firstScreen);
    }
    if (hasOrvel) {
        first->subject = kOrvelApplication;
        first->detail = first->verdict == Verdict::NotReported ? kNotAsked : first->detail;
    } else {
        rows.insert(first,
                    {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::NotReported, kNotAsked, kOrvelApplication});
    }
}

bool lostAnOutcome(const std::vector<Row>& rows, const std::function<bool(const Row&)>& hasRun) {
    return std::any_of(rows.begin(), rows.end(), [&hasRun](const Row& row) {
        return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && row.verdict == Verdict::NotReported &&
               hasRun(row);
    });
}

void sayThatItRuns(Row& row) {
    if (row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && row.verdict == Verdict::NotReported &&
        !row.subject.empty()) {
        row.detail = kOutcomeLost;
    }
}

void doubt(Row& row) {
    if (row.verdict == Verdict::NotReported) {
        return;
    }
    row.verdict = row.verdict == Verdict::Done ? Verdict::NotReported : row.verdict;
    addDetail(row, kMayBeAnothers);
}

Result<ResultList> runAndFollow(const CloneContext& context, Direction direction,
                                const std::vector<VXClone>& list, const std::function<Result<void>()>& run) {
    Follower follower(direction, list, context.view, context.stop);
    const auto ended = run();
    ResultList results = follower.finish();
    VX_RETURN_IF_FAILED(ended);
    return results;
}

Result<ResultList> saveTelevision(const CloneContext& context) {
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    auto results = saveOnce(context);
    // The caller holds the folder's lock.
    const Descriptor root(open(context.cloneRoot.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!results || context.stop.raised() ||
        !lostAnyOutcome({root.get(), context.cloneRoot.string(), Place::Television}, *results)) {
        return results;
    }
    return saveOnce(context);
}

}  // namespace vxclone
