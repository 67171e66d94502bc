#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/services/source_list.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct SourcesOptions {
    std::string folder;
    bool json = false;
};

nlohmann::ordered_json iconsToJson(const std::optional<SourceIcons>& icons) {
    if (!icons) {
        return nullptr;
    }
    return {{"icon", icons->icon},
            {"firstAppIcon", icons->firstAppIcon},
            {"secondAppIcon", icons->secondAppIcon},
            {"iconType", icons->iconType}};
}

void printAsJson(const std::vector<Source>& sources) {
    auto document = nlohmann::ordered_json::array();
    for (const Source& source : sources) {
        document.push_back({{"key", source.key},
                            {"id", source.id},
                            {"name", source.name},
                            {"iconType", source.iconType},
                            {"icons", iconsToJson(source.icons)}});
    }
    printJson(document);
}

void printTable(const std::vector<Source>& sources) {
    vxcommon::TerminalTable table({"KEY", "ID", "NAME", "ICON TYPE", "ICON", "APP ICONS"});
    for (const Source& source : sources) {
        std::string appIcons;
        if (source.icons) {
            const SourceIcons& icons = *source.icons;
            appIcons = icons.firstAppIcon;
            appIcons += icons.secondAppIcon != icons.firstAppIcon ? " " + icons.secondAppIcon : "";
        }
        table.addRow({{std::to_string(source.key)},
                      {std::to_string(source.id)},
                      {source.name},
                      {std::to_string(source.iconType)},
                      {source.icons ? source.icons->icon : "-"},
                      {source.icons ? appIcons : "-"}});
    }
    print(table.render(outputScreen()));
}

int list(const SourcesOptions& options) {
    const auto sources = Television::open(options.folder).and_then([](const Television& television) {
        return SourceList(television.database()).list();
    });
    if (!sources) {
        return complain(sources.error());
    }
    options.json ? printAsJson(*sources) : printTable(*sources);
    return finishOutput();
}

}  // namespace

void addSourcesCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("sources", "List the sources and the icons that were set for them");
    const auto options = std::make_shared<SourcesOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs");
    verb->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
}

}  // namespace vxtv
