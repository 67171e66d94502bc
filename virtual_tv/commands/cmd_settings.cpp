#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/store/setting_text.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct SettingsOptions {
    std::string folder;
    bool json = false;
};

void printTable(const std::vector<Setting>& settings) {
    vxcommon::TerminalTable table({"KEY", "TYPE", "VALUE"});
    for (const Setting& setting : settings) {
        const auto colour = setting.isStatus ? vxcommon::Colour::Dim : vxcommon::Colour::Plain;
        table.addRow({{setting.key, colour},
                      {nameOf(typeOf(setting.value)), colour},
                      {quotedText(setting.value), colour}});
    }
    print(table.render(outputScreen()));
}

int list(const SettingsOptions& options) {
    const auto settings = Television::open(options.folder).and_then([](const Television& television) {
        return television.settings().list();
    });
    if (!settings) {
        return complain(settings.error());
    }
    if (options.json) {
        auto document = nlohmann::ordered_json::array();
        for (const Setting& setting : *settings) {
            document.push_back({{"key", setting.key},
                                {"type", nameOf(typeOf(setting.value))},
                                {"value", toJson(setting.value)},
                                {"status", setting.isStatus}});
        }
        printJson(document);
    } else {
        printTable(*settings);
    }
    return finishOutput();
}

}  // namespace

void addSettingsCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("settings", "List all settings");
    const auto options = std::make_shared<SettingsOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json,
                   "For programs: key, type, value and whether it is a run's status");
    verb->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
}

}  // namespace vxtv
