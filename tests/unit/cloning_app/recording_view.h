#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/report/progress_view.h"

/// Records everything that a run shows.
struct RecordingView : vxclone::ProgressView {
    void progress(const vxclone::Progress& progress) override {
        steps.push_back(progress);
        atProgress(progress);
        if (progress.percent) {
            percents.push_back(*progress.percent);
        }
    }
    void category(const vxclone::Row& row) override { rows.push_back(row); }
    void tick() override { ++ticks; }
    void clear() override {}
    void notice(const std::string& sentence) override { notices.push_back(sentence); }
    void done(const vxclone::Report& report) override { ended = report; }
    void failed(const vxclone::Error& error) override { failure = error; }

    std::function<void(const vxclone::Progress&)> atProgress = [](const vxclone::Progress&) {};
    std::vector<vxclone::Progress> steps;
    std::vector<int> percents;
    std::vector<vxclone::Row> rows;
    int ticks = 0;
    std::vector<std::string> notices;
    std::optional<vxclone::Report> ended;
    std::optional<vxclone::Error> failure;
};
