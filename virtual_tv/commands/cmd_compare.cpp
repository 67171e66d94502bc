#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/comparison.h"

namespace vxtv {

namespace {

using vxcommon::Colour;
using Json = nlohmann::ordered_json;

struct CompareOptions {
    std::string first;
    std::string second;
    bool json = false;
};

struct Outcome {
    Identity first;
    Identity second;
    std::vector<AreaComparison> areas;

    bool same() const {
        return std::all_of(areas.begin(), areas.end(),
                           [](const auto& area) { return area.differences.empty(); });
    }
};

Result<Outcome> compare(const CompareOptions& options) {
    const Result<Television> first = Television::open(options.first);
    const Result<Television> second =
        first ? Television::open(options.second) : tl::make_unexpected(first.error());
    if (!second) {
        return tl::make_unexpected(second.error());
    }
    auto areas = compareTelevisions(*first, *second);
    const auto mine = areas ? first->systemInformation().identity() : tl::make_unexpected(areas.error());
    const auto theirs = mine ? second->systemInformation().identity() : mine;
    if (!theirs) {
        return tl::make_unexpected(theirs.error());
    }
    return Outcome{*mine, *theirs, std::move(*areas)};
}

Json identityJson(const Identity& identity) {
    return {
        {"model", identity.model}, {"productTag", identity.productTag}, {"tunerType", identity.tunerType}};
}

void printOutcomeJson(const Outcome& outcome) {
    Json areas = Json::array();
    for (const AreaComparison& area : outcome.areas) {
        Json differences = Json::array();
        for (const Difference& difference : area.differences) {
            differences.push_back(
                {{"name", difference.name}, {"first", difference.first}, {"second", difference.second}});
        }
        areas.push_back(
            {{"area", area.area}, {"same", area.differences.empty()}, {"differences", differences}});
    }
    printJson({{"same", outcome.same()},
               {"first", identityJson(outcome.first)},
               {"second", identityJson(outcome.second)},
               {"areas", areas}});
}

std::string identityLine(const std::string& folder, const Identity& identity) {
    return vxcommon::printable(fmt::format("{}: {}, {}, tuner type {}", folder, identity.model,
                                           identity.productTag, identity.tunerType)) +
           "\n";
}

void printOutcomeText(const CompareOptions& options, const Outcome& outcome) {
    const bool coloured = vxcommon::wantsColour(STDOUT_FILENO);
    print(identityLine(options.first, outcome.first) + identityLine(options.second, outcome.second));
    for (const AreaComparison& area : outcome.areas) {
        const std::size_t count = area.differences.size();
        const std::string verdict =
            count == 0 ? vxcommon::paint("same", Colour::Good, coloured)
                       : vxcommon::paint(fmt::format("{} differ{}", count, count == 1 ? "s" : ""),
                                         Colour::Bad, coloured);
        print(fmt::format("\n{}: {}\n", area.area, verdict));
        if (count != 0) {
            vxcommon::TerminalTable table({"NAME", options.first, options.second});
            for (const Difference& difference : area.differences) {
                table.addRow({{difference.name}, {difference.first}, {difference.second}});
            }
            print(table.render(coloured));
        }
    }
}

int show(const CompareOptions& options) {
    const Result<Outcome> outcome = compare(options);
    if (!outcome) {
        return complain(outcome.error());
    }
    if (options.json) {
        printOutcomeJson(*outcome);
    } else {
        printOutcomeText(options, *outcome);
    }
    const int written = finishOutput();
    return written != kExitOk || outcome->same() ? written : kExitDiffers;
}

}  // namespace

void addCompareCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("compare", "Say in what two televisions differ");
    const auto options = std::make_shared<CompareOptions>();
    verb->add_option("DIR1", options->first, "A television")->required();
    verb->add_option("DIR2", options->second, "Another one")->required();
    verb->add_flag("--json", options->json, "For programs");
    verb->footer(
        "Compared is what a clone carries; the identity is shown and not judged.\n"
        "Exit status: 0 same, 1 different, 2 trouble.");
    verb->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

}  // namespace vxtv
