#include "cloning_app/verbs/list.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <utility>

#include "cloning_app/base/tree_walk.h"
#include "cloning_app/check/package_look.h"
#include "cloning_app/storage/mounts.h"
#include "cloning_app/television/category.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using vxcommon::Colour;

constexpr std::size_t kLevels = 2;
/// The number of folders that are searched on sticks.
constexpr std::size_t kMostFolders = 2000;
/// The number of folders without access that are named; the others are only counted.
constexpr std::size_t kMostUnseenNamed = 5;

/// The state of a package in one word, and the reason.
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

/// Searches the folders and collects the packages.
class Search {
 public:
    Search() : table_({"package", "name", "made", "model", "here"}) {}

    Result<void> folder(const Tree& tree, std::size_t level) {
        const auto names = namesIn(tree, TreeLimits{}.entries);
        VX_RETURN_IF_FAILED(names);
        if (std::any_of(names->begin(), names->end(),
                        [](const std::string& name) { return isKnownEntry(name); })) {
            add(tree);
            return {};
        }
        for (const std::string& name : *names) {
            if (level < kLevels && name.front() != '.') {
                below(tree, name, level + 1);
            }
        }
        return {};
    }

    Output output(const std::string& path) && {
        const bool sawAll = folders_ <= kMostFolders && unseen_ == 0;
        if (output_.lines.empty()) {
            output_.closing.push_back(
                sawAll ? fmt::format("There is no package in {}.", path)
                       : fmt::format("No package was found in the part of {} that was looked into.", path));
        } else {
            output_.lines.push_back(lineOf(std::move(table_)));
            output_.closing.emplace_back("Not checked: the files and the seals; vxclone verify does that.");
        }
        if (folders_ > kMostFolders) {
            output_.closing.push_back(
                fmt::format("Only {} folders were looked into; name a folder of the stick.", kMostFolders));
        }
        for (std::string& sentence : unseenSentences_) {
            output_.closing.push_back(std::move(sentence));
        }
        if (unseen_ > kMostUnseenNamed) {
            output_.closing.push_back(
                fmt::format("{} more folders could not be looked into.", unseen_ - kMostUnseenNamed));
        }
        return std::move(output_);
    }

 private:
    /// A folder that cannot be read must not hide the others.
    void below(const Tree& tree, const std::string& name, std::size_t level) {
        const std::string path = tree.path + "/" + name;
        const Descriptor opened(openat(tree.descriptor, name.c_str(), kOpenFolder));
        if (!opened.valid()) {
            if (errno != ENOTDIR && errno != ELOOP && errno != ENOENT) {
                notSeen(readError(Place::Stick, path, errno));
            }
        } else if (++folders_ <= kMostFolders) {
            if (const auto searched = folder({opened.get(), path, Place::Stick}, level); !searched) {
                notSeen(searched.error());
            }
        }
    }

    void notSeen(const Error& why) {
        if (++unseen_ <= kMostUnseenNamed) {
            unseenSentences_.push_back("Not looked into: " + why.sentence + ".");
        }
    }

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
    std::size_t unseen_ = 0;  ///< folders that could not be searched
    std::vector<std::string> unseenSentences_;
};

struct ListArguments {
    std::string folder{kSticks};
    bool json = false;
};

}  // namespace

Result<Output> listPackages(const std::filesystem::path& folder) {
    if (folder.empty()) {
        return failure(ErrorCode::BadArguments,
                       "the folder's name is empty; name a folder, or leave it out to look in /media");
    }
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

void addListCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<ListArguments>();
    CLI::App* const verb = app.add_subcommand("list", "Find the packages on the sticks, and say which fit");
    verb->add_option("DIR", arguments->folder, "Look here, and two levels below; else in /media");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& /*engine*/) {
            return lookAlone(arguments->json, [&] { return listPackages(arguments->folder); });
        };
    });
}

}  // namespace vxclone
