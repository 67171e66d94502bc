#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "cloning_app/storage/mounts.h"

/// A kernel for which every folder in or below `stick` is on a stick at /media/usb, and every other one on
/// the television itself.
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
