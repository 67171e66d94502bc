#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cloning_app/package/descriptor.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/looking.h"
#include "cloning_app/run/package_facts.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using vxcommon::Colour;

constexpr std::size_t kLevels = 2;
/// More folders than this on sticks are not looked into.
constexpr std::size_t kMostFolders = 2000;

/// What is to be said of a package in one word, and why.
struct State {
    std::string_view name;
    std::string_view words;
    Colour colour;
    std::string detail;
};

State stateOf(const PackageLook& look) {
    std::string damage;
    std::string misfit;
    for (const Check& check : look.checks) {
        const auto problem = problemOf(check);
        std::string& why = problem == ErrorCode::DoesNotFit ? misfit : damage;
        if (problem && problem != ErrorCode::NoKey) {
            why += (why.empty() ? "" : "; ") + std::string(nameOf(check.subject)) + " " + textOf(check);
        }
    }
    if (!damage.empty()) {
        return {"damaged", "damaged", Colour::Bad, damage};
    }
    if (!misfit.empty()) {
        return {"does-not-fit", "does not fit", Colour::Bad, misfit};
    }
    const std::string lacking = lackingText(look.lacks, false);
    return lacking.empty() ? State{"fits", "fits", Colour::Good, ""}
                           : State{"incomplete", "fits, is not complete", Colour::Bad, "it lacks " + lacking};
}

/// Goes through the folders and collects the packages.
class Search {
 public:
    Search() : table_({"package", "name", "made", "model", "here"}) {}

    Result<void> folder(const Tree& tree, std::size_t level) {
        const auto names = namesIn(tree, TreeLimits{}.entries);
        if (!names) {
            return tl::make_unexpected(names.error());
        }
        if (std::any_of(names->begin(), names->end(),
                        [](const std::string& name) { return isKnownEntry(name); })) {
            add(tree);
            return {};
        }
        for (const std::string& name : *names) {
            const Descriptor below(level < kLevels && name.front() != '.'
                                       ? openat(tree.descriptor, name.c_str(), kOpenFolder)
                                       : -1);
            if (below.valid() && ++folders_ <= kMostFolders) {
                // A folder that cannot be read is no reason to say nothing of the others.
                static_cast<void>(folder({below.get(), tree.path + "/" + name, Place::Stick}, level + 1));
            }
        }
        return {};
    }

    Output output(const std::string& path) && {
        if (output_.lines.empty()) {
            output_.closing.push_back(fmt::format("There is no package in {}.", vxcommon::printable(path)));
        } else {
            output_.lines.push_back(lineOf(std::move(table_)));
            output_.closing.emplace_back("Not checked: the files and the seals; vxclone verify does that.");
        }
        if (folders_ > kMostFolders) {
            output_.closing.push_back(
                fmt::format("Only {} folders were looked into; name a folder of the stick.", kMostFolders));
        }
        return std::move(output_);
    }

 private:
    void add(const Tree& tree) {
        const auto look = lookAt(tree);
        const PackageLook seen = look ? *look : PackageLook{};
        const State state =
            look ? stateOf(*look) : State{"unreadable", "unreadable", Colour::Doubt, look.error().sentence};
        auto members = factsOf(tree.path, seen);
        members["result"] = state.name;
        if (!state.detail.empty()) {
            members["detail"] = state.detail;
        }
        output_.lines.push_back({Event::Result, std::move(members)});
        const PackageOrigin origin = seen.manifest ? seen.manifest->manifest.origin : PackageOrigin{};
        const auto model = seen.identity ? seen.identity->model : std::nullopt;
        table_.addRow(
            {{tree.path, Colour::Plain},
             {orDash(origin.name), Colour::Plain},
             {orDash(dayAndMinute(origin.madeAt)), Colour::Plain},
             {orDash(model), Colour::Plain},
             {std::string(state.words) + (state.detail.empty() ? "" : ": " + state.detail), state.colour}});
    }

    Output output_;
    vxcommon::TerminalTable table_;
    std::size_t folders_ = 0;
};

}  // namespace

Result<Output> listPackages(const std::filesystem::path& folder) {
    std::string path = folder.string();
    path.erase(path.find_last_not_of('/') + 1);
    const Descriptor opened(open((path + "/").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid() && (errno == ENOENT || errno == ENOTDIR)) {
        return failure(ErrorCode::StickMissing,
                       fmt::format("there is no folder {}; is the stick plugged in? Check the path",
                                   vxcommon::printable(folder.string())));
    }
    if (!opened.valid()) {
        return tl::make_unexpected(readError(Place::Stick, folder.string(), errno));
    }
    Search search;
    if (const auto searched = search.folder({opened.get(), path, Place::Stick}, 0); !searched) {
        return tl::make_unexpected(searched.error());
    }
    return std::move(search).output(folder.string());
}

}  // namespace vxclone
