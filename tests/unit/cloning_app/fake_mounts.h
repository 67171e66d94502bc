#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "cloning_app/storage/mounts.h"

/// A kernel that takes every folder in or below `stick` for one on a stick, plugged in at /media/usb, and
/// every other one for the television's own.
inline vxclone::MountQuestions stickAt(std::filesystem::path stick) {
    vxclone::MountQuestions questions;
    questions.placeOf = [stick = std::move(stick)](int folder) -> std::optional<vxclone::FolderPlace> {
        const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(folder)).string();
        const bool onStick = (path + "/").rfind(stick.string() + "/", 0) == 0;
        return onStick ? vxclone::FolderPlace{2, 2} : vxclone::FolderPlace{1, 1};
    };
    questions.mounts = [] { return std::string("1 0 0:1 / / rw\n2 1 0:2 / /media/usb rw\n"); };
    return questions;
}
