#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "cloning_app/report/progress_view.h"

namespace vxclone {

/// Shows a whole run on another view: makes one percentage of what its phases tell of themselves, and lets
/// the view know every moment that time passes. Any thread may call it; the view is called by one at a time.
class RunProgress final : public ProgressView {
 public:
    /// Gets each phase and percentage that is shown, on the thread that brought it.
    using Told = std::function<void(ShownPhase phase, int percent)>;

    /// `phases` is what the run consists of; where that is nothing, no percentage is shown. `view` must
    /// outlive this object and belongs to it.
    RunProgress(ProgressView& view, ShownPhases phases, Told told = {});
    RunProgress(const RunProgress&) = delete;
    RunProgress& operator=(const RunProgress&) = delete;
    ~RunProgress() override;

    /// The run has come to its end: now all of it is done, which is never shown before.
    void complete();

    /// A phase that the run does not have, or has passed, leaves the percentage where it is.
    void progress(const Progress& progress) override;
    void category(const Row& row) override;
    void tick() override;
    void clear() override;
    void notice(const std::string& sentence) override;
    void done(const Report& report) override;
    void failed(const Error& error) override;

 private:
    void letTimePass();
    int percentAt(const Progress& progress) const;
    void show(const Progress& progress);

    ProgressView& view_;
    const ShownPhases phases_;
    const Told told_;
    std::mutex mutex_;  ///< of all below, and of `view_`
    Progress shown_;
    bool ended_ = false;
    std::condition_variable end_;
    std::thread clock_;
};

}  // namespace vxclone
