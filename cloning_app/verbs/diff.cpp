#include "cloning_app/verbs/diff.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/compared_state.h"
#include "cloning_app/check/package_look.h"
#include "cloning_app/check/package_parts.h"
#include "cloning_app/report/comparison.h"
#include "cloning_app/report/json_lines.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/safety_backup.h"
#include "cloning_app/run/television_comparison.h"
#include "cloning_app/storage/clone_root.h"
#include "cloning_app/television/category.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using vxcommon::printable;

constexpr const char* kTelevision = "this television";
constexpr const char* kNotChecked = "Not checked: manifest and seal; vxclone verify does that.";

/// A package on a stick, and its compared state.
struct NamedState {
    OpenPackage package;
    ComparedState state;
    std::vector<Lack> lacks;

    std::string path() const { return package.tree().path; }
};

/// The differences, with a heading for each part.
Output differencesAsOutput(const std::vector<Difference>& differences, const std::string& first,
                           const std::string& second) {
    Output output{{lineOf(vxcommon::printableFormat("{} -> {}", printable(first), printable(second)))}};
    std::string heading;
    for (const Difference& difference : differences) {
        const std::string part = nameOf(PackagePart{difference.category, difference.application});
        vxcommon::Printable text;
        if (part != heading) {
            text += printable(part) + "\n";
        }
        heading = part;
        text += printable(fmt::format("  {}  {}", difference.what, wordsOf(difference, first, second)));
        output.lines.push_back({Event::Result, jsonOf(difference), std::move(text)});
    }
    output.exitStatus = differences.empty() ? kExitOk : exitStatusOf(ErrorCode::CategoryFailed);
    return output;
}

std::string countSentence(const std::vector<Difference>& differences) {
    std::size_t settings = 0;
    for (const Difference& difference : differences) {
        settings += difference.isSetting ? 1U : 0U;
    }
    return fmt::format("{} and {} differ.", countText(settings, "setting"),
                       countText(differences.size() - settings, "file"));
}

/// The result of a comparison with the television, in one sentence.
std::string sentenceOf(const TelevisionComparison& comparison) {
    if (!comparison.differences.empty()) {
        return countSentence(comparison.differences);
    }
    if (comparison.compared.empty()) {
        return "Nothing was compared.";
    }
    if (!comparison.complete()) {
        return "No difference in what was compared.";
    }
    return comparison.notCompared.empty() ? "No difference." : "No difference in settings and pictures.";
}

/// The parts that the package does not hold and need not hold. What it lacks is listed separately.
std::string sentenceOfNotHeld(const std::vector<std::string>& notHeld, const std::vector<Lack>& lacks) {
    std::vector<std::string> names;
    std::copy_if(notHeld.begin(), notHeld.end(), std::back_inserter(names), [&lacks](const auto& name) {
        return std::none_of(lacks.begin(), lacks.end(), [&name](const Lack& lack) {
            return lack.what.empty() && categoryOf(lack.category).name == name;
        });
    });
    return names.empty() ? "" : fmt::format("The package holds nothing of: {}.", fmt::join(names, ", "));
}

Output differencesAsOutput(const TelevisionComparison& comparison, const NamedState& package) {
    Output output = differencesAsOutput(comparison.differences, kTelevision, package.path());
    for (nlohmann::ordered_json& members : linesOf(comparison)) {
        output.lines.push_back({Event::Result, std::move(members)});
    }
    output.summary = {{"notCompared", namesNotCompared(comparison)}, {"notHeld", comparison.notHeld}};
    if (!comparison.complete()) {
        output.exitStatus = exitStatusOf(ErrorCode::CategoryFailed);
    }
    output.closing.push_back(sentenceOf(comparison));
    for (std::string& sentence : sentencesOf(comparison)) {
        output.closing.push_back(std::move(sentence));
    }
    if (std::string sentence = sentenceOfNotHeld(comparison.notHeld, package.lacks); !sentence.empty()) {
        output.closing.push_back(std::move(sentence));
    }
    addLacks(output, package.lacks);
    output.closing.emplace_back(kNotChecked);
    return output;
}

Result<NamedState> stateIn(const std::filesystem::path& folder) {
    auto package = OpenPackage::open(folder);
    VX_RETURN_IF_FAILED(package);
    auto state = stateOfPackage(package->tree());
    VX_RETURN_IF_FAILED(state);
    auto look = lookAt(package->tree());
    VX_RETURN_IF_FAILED(look);
    return NamedState{std::move(*package), std::move(*state), std::move(look->lacks)};
}

Result<Output> compareWhole(const CloneContext& context, const NamedState& named) {
    const auto root = CloneRoot::open(context.cloneRoot);
    VX_RETURN_IF_FAILED(root);
    const auto look = lookForComparison(context, root->tree(), safetyReserve(named.package.tree()));
    VX_RETURN_IF_FAILED(look);
    return differencesAsOutput(compareWithTelevision(named.state, &*look), named);
}

struct DiffArguments {
    std::string folder;
    std::string other;
    bool compared = false;
    bool quick = false;
    bool json = false;
};

int tellDifferences(CloneEngine& engine, const DiffArguments& arguments) {
    if (arguments.compared) {
        return lookAlone(arguments.json,
                         [&arguments] { return diffPackages(arguments.folder, arguments.other); });
    }
    return runLook(engine, "diff", arguments.json, [&](const CloneContext& context) {
        return diffWithTelevision(context, arguments.folder, arguments.quick);
    });
}

}  // namespace

Result<Output> diffWithTelevision(const CloneContext& context, const std::filesystem::path& folder,
                                  bool quick) {
    const auto named = stateIn(folder);
    VX_RETURN_IF_FAILED(named);
    if (quick) {
        return differencesAsOutput(compareWithTelevision(named->state, nullptr), *named);
    }
    return unrecordedRun(context, phasesOfDiff(),
                         std::function<Result<Output>(const CloneContext&)>(
                             [&](const CloneContext& shown) { return compareWhole(shown, *named); }));
}

Result<Output> diffPackages(const std::filesystem::path& folder, const std::filesystem::path& other) {
    const auto first = stateIn(folder);
    VX_RETURN_IF_FAILED(first);
    const auto second = stateIn(other);
    VX_RETURN_IF_FAILED(second);
    std::vector<Difference> differences = differencesOf(first->state, second->state);
    nameParts(differences);
    Output output = differencesAsOutput(differences, first->path(), second->path());
    output.closing = {differences.empty() ? "No difference." : countSentence(differences)};
    addLacks(output, first->lacks, first->path());
    addLacks(output, second->lacks, second->path());
    output.closing.emplace_back(kNotChecked);
    return output;
}

void addDiffCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<DiffArguments>();
    CLI::App* const verb =
        app.add_subcommand("diff", "Show what a restore changes, or how two packages differ");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const other =
        verb->add_option("DIR2", arguments->other, "Another package, to compare the first one with");
    verb->add_flag("--quick", arguments->quick, "Compare only settings and pictures, at once")
        ->excludes("DIR2");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, other] {
        arguments->compared = other->count() != 0;
        chosen = [arguments](CloneEngine& engine) { return tellDifferences(engine, *arguments); };
    });
}

}  // namespace vxclone
