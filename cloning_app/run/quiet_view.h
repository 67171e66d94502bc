#pragma once

#include "cloning_app/run/progress_view.h"

namespace vxclone {

/// Shows of a run within a run only that time passes and what must be said: its categories and its progress
/// are not those of the run that the user asked for.
class QuietView final : public ProgressView {
 public:
    /// `view` must outlive this object.
    explicit QuietView(ProgressView& view) : view_(view) {}

    void progress(const Progress& /*progress*/) override {}
    void category(const Row& /*row*/) override {}
    void tick() override { view_.tick(); }
    void clear() override { view_.clear(); }
    void notice(const std::string& sentence) override { view_.notice(sentence); }
    void done(const Report& report) override { view_.done(report); }
    void failed(const Error& error) override { view_.failed(error); }

 private:
    ProgressView& view_;
};

}  // namespace vxclone
