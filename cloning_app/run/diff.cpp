#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cloning_app/package/disk_space.h"
#include "cloning_app/run/category.h"
#include "cloning_app/run/compared_state.h"
#include "cloning_app/run/difference_text.h"
#include "cloning_app/run/looking.h"
#include "cloning_app/run/package_look.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using vxcommon::printable;

constexpr const char* kTelevision = "this television";

Output outputOf(const std::vector<Difference>& differences, const std::string& first,
                const std::string& second) {
    Output output{{lineOf(fmt::format("{} -> {}", printable(first), printable(second)))}};
    std::string category;
    std::size_t settings = 0;
    for (const Difference& difference : differences) {
        std::string text;
        if (difference.category != category) {
            category = difference.category;
            text = category + "\n";
        }
        text += printable(fmt::format("  {}  {}", difference.what, wordsOf(difference, first, second)));
        settings += difference.isSetting ? 1U : 0U;
        output.lines.push_back({Event::Result, jsonOf(difference), std::move(text)});
    }
    output.exitStatus = differences.empty() ? kExitOk : exitStatusOf(ErrorCode::CategoryFailed);
    output.closing.push_back(differences.empty()
                                 ? "No difference."
                                 : fmt::format("{} and {} differ.", countText(settings, "setting"),
                                               countText(differences.size() - settings, "file")));
    return output;
}

std::string notCompared(const ComparedState& package) {
    const std::vector<std::string> seen = categoriesSeen(package);
    std::string names;
    for (const Category& category : categories()) {
        if (std::find(seen.begin(), seen.end(), category.name) == seen.end()) {
            names += (names.empty() ? "" : ", ") + std::string(category.name);
        }
    }
    return fmt::format("Not compared, because only a run shows them or the package holds none: {}.", names);
}

Result<Output> diffWithTelevision(ComparedState package, const std::string& path) {
    const auto live = stateOfTelevision(package);
    if (!live) {
        return tl::make_unexpected(live.error());
    }
    Output output = outputOf(differencesOf(*live, package), kTelevision, path);
    output.closing.push_back(notCompared(package));
    return output;
}

struct NamedState {
    std::string path;
    ComparedState state;
};

Result<NamedState> stateIn(const std::filesystem::path& folder) {
    const auto package = OpenPackage::open(folder);
    if (!package) {
        return tl::make_unexpected(package.error());
    }
    auto state = stateOfPackage(package->tree());
    if (!state) {
        return tl::make_unexpected(state.error());
    }
    return NamedState{package->tree().path, std::move(*state)};
}

}  // namespace

Result<Output> diffPackage(const std::filesystem::path& folder,
                           const std::optional<std::filesystem::path>& other) {
    auto first = stateIn(folder);
    if (!first) {
        return tl::make_unexpected(first.error());
    }
    auto output = Result<Output>();
    if (other) {
        const auto second = stateIn(*other);
        if (!second) {
            return tl::make_unexpected(second.error());
        }
        output = outputOf(differencesOf(first->state, second->state), first->path, second->path);
    } else {
        output = diffWithTelevision(std::move(first->state), first->path);
    }
    if (output) {
        output->closing.emplace_back("Not checked: manifest and seal; vxclone verify does that.");
    }
    return output;
}

}  // namespace vxclone
