#include <fmt/format.h>

#include <memory>
#include <optional>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/announcement.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct InfoOptions {
    std::string folder;
    bool json = false;
};

struct Info {
    std::string folder;
    Identity identity;
    std::vector<Feature> features;
    std::optional<std::string> bus;
};

Result<Info> infoOf(const Television& television) {
    const Result<Identity> identity = television.systemInformation().identity();
    const auto features =
        identity ? television.systemInformation().features() : tl::make_unexpected(identity.error());
    VX_RETURN_IF_FAILED(features);
    return Info{.folder = television.folder().root().string(),
                .identity = *identity,
                .features = *features,
                .bus = busAddress(television.folder())};
}

void printInfoJson(const Info& info) {
    auto features = nlohmann::ordered_json::object();
    for (const Feature& feature : info.features) {
        std::visit([&](auto value) { features[feature.name] = value; }, feature.value);
    }
    printJson({{"folder", info.folder},
               {"model", info.identity.model},
               {"productTag", info.identity.productTag},
               {"tunerType", info.identity.tunerType},
               {"messageBus", info.bus ? nlohmann::ordered_json(*info.bus) : nullptr},
               {"features", features}});
}

void printInfoTable(const Info& info) {
    vxcommon::TerminalTable table({"WHAT", "VALUE"});
    table.addRow({{"folder"}, {info.folder}});
    table.addRow({{"model"}, {info.identity.model}});
    table.addRow({{"product tag"}, {info.identity.productTag}});
    table.addRow({{"tuner type"}, {std::to_string(info.identity.tunerType)}});
    table.addRow({{"message bus"}, {info.bus.value_or("none: nothing runs in it")}});
    for (const Feature& feature : info.features) {
        table.addRow({{feature.name},
                      {std::visit([](auto value) { return fmt::format("{}", value); }, feature.value)}});
    }
    print(table.render(outputScreen()));
}

int show(const InfoOptions& options) {
    const Result<Info> info = Television::open(options.folder).and_then(infoOf);
    if (!info) {
        return complain(info.error());
    }
    options.json ? printInfoJson(*info) : printInfoTable(*info);
    return finishOutput();
}

}  // namespace

void addInfoCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("info", "Show model and identity of a television");
    const auto options = std::make_shared<InfoOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs");
    verb->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

}  // namespace vxtv
