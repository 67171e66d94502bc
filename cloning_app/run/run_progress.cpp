#include "cloning_app/run/run_progress.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <system_error>
#include <tuple>
#include <utility>

namespace vxclone {

namespace {

/// Several times a second, so that a clock of whole seconds is never late by much.
constexpr std::chrono::milliseconds kTick{200};

bool looksLike(const Progress& one, const Progress& other) {
    const auto shown = [](const Progress& progress) {
        return std::tie(progress.phase, progress.entry, progress.entries, progress.category,
                        progress.percent);
    };
    return shown(one) == shown(other);
}

int weightOfAll(ShownPhases::const_iterator begin, ShownPhases::const_iterator end) {
    int sum = 0;
    std::for_each(begin, end, [&sum](ShownPhase phase) { sum += weightOf(phase); });
    return sum;
}

}  // namespace

RunProgress::RunProgress(ProgressView& view, ShownPhases phases, Told told)
    : view_(view), phases_(std::move(phases)), told_(std::move(told)) {
    try {
        clock_ = std::thread([this] { letTimePass(); });
    } catch (const std::system_error&) {
        // Without a thread the clock moves with the progress alone.
    }
}

RunProgress::~RunProgress() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    end_.notify_all();
    if (clock_.joinable()) {
        clock_.join();
    }
}

void RunProgress::letTimePass() {
    std::unique_lock lock(mutex_);
    while (!end_.wait_for(lock, kTick, [this] { return ended_; })) {
        try {
            view_.tick();
        } catch (const std::exception&) {
            // Memory is too short to draw now; the run need not end for that.
        }
    }
}

int RunProgress::percentAt(const Progress& progress) const {
    const int before = shown_.percent.value_or(0);
    const auto phase =
        progress.phase ? std::find(phases_.begin(), phases_.end(), *progress.phase) : phases_.end();
    if (phase == phases_.end()) {
        return before;
    }
    const int whole = weightOfAll(phases_.begin(), phases_.end());
    const double done =
        weightOfAll(phases_.begin(), phase) + weightOf(*phase) * std::clamp(progress.part, 0.0, 1.0);
    return std::clamp(static_cast<int>(done * kWholePercent / whole), before, kWholePercent - 1);
}

void RunProgress::show(const Progress& progress) {
    if (looksLike(progress, shown_)) {
        return;
    }
    shown_ = progress;
    view_.progress(shown_);
    if (told_ && shown_.phase && shown_.percent) {
        told_(*shown_.phase, *shown_.percent);
    }
}

void RunProgress::progress(const Progress& progress) {
    const std::lock_guard lock(mutex_);
    Progress next = progress;
    next.percent = phases_.empty() ? std::nullopt : std::optional(percentAt(progress));
    show(next);
}

void RunProgress::complete() {
    const std::lock_guard lock(mutex_);
    if (!phases_.empty()) {
        show({phases_.back(), 1, 0, 0, std::nullopt, kWholePercent});
    }
}

void RunProgress::category(const Row& row) {
    const std::lock_guard lock(mutex_);
    view_.category(row);
}

void RunProgress::tick() {
    const std::lock_guard lock(mutex_);
    view_.tick();
}

void RunProgress::clear() {
    const std::lock_guard lock(mutex_);
    view_.clear();
}

void RunProgress::notice(const std::string& sentence) {
    const std::lock_guard lock(mutex_);
    view_.notice(sentence);
}

void RunProgress::done(const Report& report) {
    const std::lock_guard lock(mutex_);
    view_.done(report);
}

void RunProgress::failed(const Error& error) {
    const std::lock_guard lock(mutex_);
    view_.failed(error);
}

}  // namespace vxclone
