#include "cloning_app/run/follower.h"

#include <algorithm>
#include <chrono>

#include "cloning_app/television/settings_store.h"

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

}  // namespace vxclone
