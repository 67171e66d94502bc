#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/factory/comparison.h"

namespace vxtv {

namespace {

using vxcommon::Colour;
using vxcommon::Printable;
using vxcommon::PrintableView;
using Json = nlohmann::ordered_json;

struct CompareOptions {
    std::string first;
    std::string second;
    bool summary = false;
    bool everything = false;
    bool json = false;
};

struct Compared {
    Identity first;
    Identity second;
    std::vector<AreaComparison> areas;
    bool everything = false;

    bool judges(const AreaComparison& area) const { return everything || area.fate == Fate::Carried; }
    bool same() const {
        return std::all_of(areas.begin(), areas.end(), [this](const AreaComparison& area) {
            return !judges(area) || area.differences.empty();
        });
    }
};

Result<Compared> compare(const CompareOptions& options) {
    const Result<Television> first = Television::open(options.first);
    const Result<Television> second =
        first ? Television::open(options.second) : tl::make_unexpected(first.error());
    VX_RETURN_IF_FAILED(second);
    auto areas = compareTelevisions(*first, *second);
    const auto mine = areas ? first->systemInformation().identity() : tl::make_unexpected(areas.error());
    const auto theirs = mine ? second->systemInformation().identity() : mine;
    VX_RETURN_IF_FAILED(theirs);
    if (!options.everything) {
        std::erase_if(*areas, [](const AreaComparison& area) { return area.fate == Fate::Kept; });
    }
    return Compared{
        .first = *mine, .second = *theirs, .areas = std::move(*areas), .everything = options.everything};
}

Json identityJson(const Identity& identity) {
    return {
        {"model", identity.model}, {"productTag", identity.productTag}, {"tunerType", identity.tunerType}};
}

void printOutcomeJson(const Compared& outcome) {
    Json areas = Json::array();
    for (const AreaComparison& area : outcome.areas) {
        Json differences = Json::array();
        for (const Difference& difference : area.differences) {
            differences.push_back(
                {{"name", difference.name}, {"first", difference.first}, {"second", difference.second}});
        }
        areas.push_back({{"area", area.area},
                         {"judged", outcome.judges(area)},
                         {"same", area.differences.empty()},
                         {"differences", differences}});
    }
    printJson({{"same", outcome.same()},
               {"first", identityJson(outcome.first)},
               {"second", identityJson(outcome.second)},
               {"areas", areas}});
}

Printable identityLine(const std::string& folder, const Identity& identity) {
    const std::string line = fmt::format("{}: {}, {}, tuner type {}", folder, identity.model,
                                         identity.productTag, identity.tunerType);
    return vxcommon::sentenceFor(outputScreen(), line) + "\n";
}

/// "AREA: same", or the number of differences.
Printable verdictLine(const Compared& outcome, const AreaComparison& area, bool coloured) {
    const std::size_t count = area.differences.size();
    if (count == 0) {
        return vxcommon::printable(area.area) + ": " + vxcommon::paint("same", Colour::Good, coloured) + "\n";
    }
    const bool isJudged = outcome.judges(area);
    const Printable verdict =
        vxcommon::printableFormat("{} differ{}", count, count == 1 ? PrintableView("s") : PrintableView(""));
    return vxcommon::printable(area.area) + ": " +
           vxcommon::paint(verdict, isJudged ? Colour::Bad : Colour::Doubt, coloured) +
           (isJudged ? PrintableView("") : PrintableView(" (not judged)")) + "\n";
}

void printSummary(const Compared& outcome) {
    for (const AreaComparison& area : outcome.areas) {
        print(verdictLine(outcome, area, outputScreen().coloured));
    }
}

void printOutcomeText(const CompareOptions& options, const Compared& outcome) {
    const vxcommon::Screen screen = outputScreen();
    print(identityLine(options.first, outcome.first) + identityLine(options.second, outcome.second));
    for (const AreaComparison& area : outcome.areas) {
        print("\n" + verdictLine(outcome, area, screen.coloured));
        if (!area.differences.empty()) {
            vxcommon::TerminalTable table({"NAME", options.first, options.second});
            for (const Difference& difference : area.differences) {
                table.addRow({{difference.name}, {difference.first}, {difference.second}});
            }
            print(table.render(screen));
        }
    }
}

int show(const CompareOptions& options) {
    const Result<Compared> outcome = compare(options);
    if (!outcome) {
        return complain(outcome.error());
    }
    if (options.json) {
        printOutcomeJson(*outcome);
    } else if (options.summary) {
        printSummary(*outcome);
    } else {
        printOutcomeText(options, *outcome);
    }
    const int written = finishOutput();
    return written != kExitOk || outcome->same() ? written : kExitDiffers;
}

}  // namespace

void addCompareCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("compare", "Show the differences of two televisions");
    const auto options = std::make_shared<CompareOptions>();
    verb->add_option("DIR1", options->first, "A television")->required();
    verb->add_option("DIR2", options->second, "Another one")->required();
    auto* const summary = verb->add_flag("--summary", options->summary,
                                         "One line for each area: same, or the number of differences");
    verb->add_flag("--everything", options->everything,
                   "Compare also what is not cloned: navigation lists, serial numbers and "
                   "everything else that a television keeps");
    verb->add_flag("--json", options->json, "For programs")->excludes(summary);
    verb->footer(
        "Only cloned data counts. Differences in the identity and the navigation lists are shown only: a "
        "restore of channels removes navigation lists.\n"
        "Exit status: 0 same, 1 different, 2 error.");
    verb->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

}  // namespace vxtv
