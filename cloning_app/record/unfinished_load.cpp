#include "cloning_app/record/unfinished_load.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <sstream>

#include "cloning_app/base/small_file.h"

namespace vxclone {

namespace {

constexpr const char* kMarkFile = "Safety.needed";
constexpr std::size_t kMostMarkBytes = 4096;
constexpr std::string_view kWayBackLine = "way-back";
constexpr std::string_view kNoWayBackLine = "no-way-back";

bool holds(const std::vector<VXClone>& list, VXClone category) {
    return std::find(list.begin(), list.end(), category) != list.end();
}

/// The first line says whether undo is possible; each other line is the name of a category.
std::string markText(const UnfinishedLoad& load) {
    std::string text = std::string(load.wayBack ? kWayBackLine : kNoWayBackLine) + "\n";
    for (const VXClone category : load.categories) {
        text += std::string(categoryOf(category).name) + "\n";
    }
    return text;
}

std::optional<UnfinishedLoad> parseMark(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    if (!std::getline(lines, line) || (line != kWayBackLine && line != kNoWayBackLine)) {
        return std::nullopt;
    }
    UnfinishedLoad load{{}, line == kWayBackLine};
    while (std::getline(lines, line)) {
        const auto category = categoryCalled(line);
        if (!category) {
            return std::nullopt;
        }
        load.categories.push_back(*category);
    }
    return load.categories.empty() ? std::nullopt : std::optional(std::move(load));
}

}  // namespace

UnfinishedLoad UnfinishedLoad::without(const std::vector<VXClone>& loaded) const {
    UnfinishedLoad left{{}, wayBack};
    std::copy_if(categories.begin(), categories.end(), std::back_inserter(left.categories),
                 [&loaded](VXClone category) { return !holds(loaded, category); });
    return left;
}

UnfinishedLoad UnfinishedLoad::with(const std::vector<VXClone>& begun) const {
    UnfinishedLoad all = *this;
    std::copy_if(begun.begin(), begun.end(), std::back_inserter(all.categories),
                 [&all](VXClone category) { return !holds(all.categories, category); });
    return all;
}

std::optional<UnfinishedLoad> unfinishedLoadIn(const Tree& folder) {
    const auto text = readSmallFile(folder, kMarkFile, kMostMarkBytes);
    if (text && !*text) {
        return std::nullopt;
    }
    auto load = text ? parseMark(**text) : std::nullopt;
    return load ? *std::move(load) : UnfinishedLoad{allCategories(), false};
}

Result<void> keepUnfinishedLoad(const Tree& folder, const UnfinishedLoad& load) {
    if (load.categories.empty()) {
        const bool gone = unlinkat(folder.descriptor, kMarkFile, 0) == 0 || errno == ENOENT;
        return gone && fsync(folder.descriptor) == 0
                   ? Result<void>()
                   : tl::make_unexpected(writeError(folder.place, folder.path + "/" + kMarkFile, errno));
    }
    return replaceSmallFile(folder, kMarkFile, markText(load), Flushed::ContentAndName);
}

}  // namespace vxclone
