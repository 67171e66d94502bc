#pragma once

#include "cloning_app/run/progress_view.h"

namespace vxclone {

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
