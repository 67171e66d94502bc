#include "cloning_app/run/follower.h"

#include <algorithm>
#include <chrono>

#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

constexpr std::chrono::milliseconds kPollInterval{50};
constexpr int kWholePercent = 100;

tl::unexpected<Error> refused(const char* key) {
    return failure(ErrorCode::TelevisionIo, std::string("the television's settings store refuses ") + key +
                                                ", so the run could not be followed; restart the television");
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

Follower::Follower(Direction direction, ProgressView& view, const StopFlag& stop)
    : direction_(direction), view_(view), stop_(stop), thread_([this] { follow(); }) {}

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
        view_.tick();
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
        }
    }
    const auto percent = direction_ == Direction::Restore ? store::readInt(kProgressKey) : std::nullopt;
    if (percent && std::min(*percent, kWholePercent) > percent_) {
        percent_ = std::min(*percent, kWholePercent);
        view_.percent(percent_);
    }
}

}  // namespace vxclone
