#include <memory>
#include <vector>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/services/data_services.h"
#include "virtual_tv/services/source_list.h"
#include "virtual_tv/services/timer_store.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct ServicesOptions {
    std::string folder;
    std::string name;
    bool json = false;
};

/// The data of a service.
struct ServiceContent {
    std::string name;
    Texts carried;
    Texts kept;
};

ServiceContent contentOf(SQLite::Database& connection, const DataService& service) {
    return {std::string(service.name), service.texts(connection),
            service.keptTexts != nullptr ? service.keptTexts(connection) : Texts()};
}

Result<std::vector<ServiceContent>> contentsIn(const Television& television) {
    return television.database().read(
        [](SQLite::Database& connection) -> Result<std::vector<ServiceContent>> {
            std::vector<ServiceContent> contents;
            for (const DataService& service : dataServices()) {
                if (hasDataService(connection, service.name)) {
                    contents.push_back(contentOf(connection, service));
                }
            }
            return contents;
        });
}

Result<ServiceContent> contentIn(const Television& television, const std::string& name) {
    return television.database().read([&name](SQLite::Database& connection) {
        return requireDataService(connection, name).map([&] {
            return contentOf(connection, *findDataService(name));
        });
    });
}

int listServices(const Television& television, bool json) {
    const auto contents = contentsIn(television);
    if (!contents) {
        return complain(contents.error());
    }
    vxcommon::TerminalTable table({"SERVICE", "CLONED", "KEPT"});
    auto document = nlohmann::ordered_json::array();
    for (const ServiceContent& content : *contents) {
        table.addRow({{content.name},
                      {std::to_string(content.carried.size())},
                      {std::to_string(content.kept.size())}});
        document.push_back(
            {{"name", content.name}, {"cloned", content.carried.size()}, {"kept", content.kept.size()}});
    }
    json ? printJson(document) : print(table.render(outputScreen()));
    return finishOutput();
}

void printContent(const ServiceContent& content) {
    vxcommon::TerminalTable table({"NAME", "VALUE", "CLONED"});
    for (const auto& [name, value] : content.carried) {
        table.addRow({{name}, {value}, {"yes"}});
    }
    for (const auto& [name, value] : content.kept) {
        table.addRow({{name, vxcommon::Colour::Dim},
                      {value, vxcommon::Colour::Dim},
                      {"no, it stays", vxcommon::Colour::Dim}});
    }
    print(table.render(outputScreen()));
}

int showService(const Television& television, const ServicesOptions& options) {
    const Result<ServiceContent> content = contentIn(television, options.name);
    if (!content) {
        return complain(content.error());
    }
    if (options.json) {
        printJson({{"name", content->name}, {"cloned", content->carried}, {"kept", content->kept}});
    } else {
        printContent(*content);
    }
    return finishOutput();
}

int show(const ServicesOptions& options) {
    const Result<Television> television = Television::open(options.folder);
    if (!television) {
        return complain(television.error());
    }
    return options.name.empty() ? listServices(*television, options.json) : showService(*television, options);
}

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

struct TimersOptions {
    std::string folder;
    bool json = false;
};

void printTable(const std::vector<Timer>& timers) {
    vxcommon::TerminalTable table({"ID", "KIND", "START", "MINUTES", "REPEAT", "CHANNEL", "TITLE"});
    for (const Timer& timer : timers) {
        table.addRow({{std::to_string(timer.id)},
                      {timer.kind},
                      {timer.start},
                      {std::to_string(timer.minutes)},
                      {timer.repeat},
                      {timer.channel != 0 ? std::to_string(timer.channel) : "last"},
                      {timer.title}});
    }
    print(table.render(outputScreen()));
}

int list(const TimersOptions& options) {
    const auto timers = Television::open(options.folder).and_then([](const Television& television) {
        return TimerStore(television.database()).list();
    });
    if (!timers) {
        return complain(timers.error());
    }
    if (options.json) {
        printJson(timersToJson(*timers));
    } else {
        printTable(*timers);
    }
    return finishOutput();
}

}  // namespace

void addServicesCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("services", "List the services that own data, or the data of one");
    const auto options = std::make_shared<ServicesOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_option("NAME", options->name, "The service whose data is shown");
    verb->add_flag(
        "--json", options->json,
        "For programs: the names, and how many values a clone carries and how many stay; with NAME "
        "the values");
    verb->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

void addSourcesCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("sources", "List the sources and the icons that were set for them");
    const auto options = std::make_shared<SourcesOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs");
    verb->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
}

void addTimersCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("timers", "List recordings and wake-ups");
    const auto options = std::make_shared<TimersOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs: the timers as their backup file holds them");
    verb->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
}

}  // namespace vxtv
