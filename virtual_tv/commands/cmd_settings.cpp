#include <memory>
#include <optional>

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

struct GetOptions {
    std::string folder;
    std::string key;
    bool json = false;
};

int get(const GetOptions& options) {
    const Result<Setting> setting =
        Television::open(options.folder).and_then([&options](const Television& television) {
            return lookUpSetting(television, options.key);
        });
    if (!setting) {
        return complain(setting.error());
    }
    if (options.json) {
        printJson({{"key", setting->key},
                   {"type", nameOf(typeOf(setting->value))},
                   {"value", toJson(setting->value)}});
    } else {
        vxcommon::writeContent(plainText(setting->value) + "\n");
    }
    return finishOutput();
}

struct SetOptions {
    std::string folder;
    std::string key;
    std::optional<std::string> value;
};

/// The value as it was typed. The parser does not assign a value that begins with a dash, so it is among the
/// words that are left over.
Result<std::string> valueOf(const SetOptions& options, std::vector<std::string> rest) {
    if (!rest.empty() && rest.front() == "--") {
        rest.erase(rest.begin());
    }
    if (options.value) {
        rest.insert(rest.begin(), *options.value);
    }
    if (rest.size() == 1) {
        return rest.front();
    }
    return failure(ErrorCode::BadArgument,
                   rest.empty() ? "a value is missing; type it after the key"
                                : "there is more than one value; put quotes around one that holds blanks");
}

Result<void> set(const SetOptions& options, const std::string& text) {
    const Result<Television> television = Television::open(options.folder);
    VX_RETURN_IF_FAILED(television);
    const Result<Setting> setting = lookUpSetting(*television, options.key);
    VX_RETURN_IF_FAILED(setting);
    const Result<SettingValue> value = parseValue(options.key, typeOf(setting->value), text);
    return value ? television->settings().set(options.key, *value) : tl::make_unexpected(value.error());
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

void addGetCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("get", "Show the value of one setting");
    const auto options = std::make_shared<GetOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_option("KEY", options->key, "The setting, such as db/hotel/dooreye")->required();
    verb->add_flag("--json", options->json, "For programs: key, type and value");
    verb->callback([options, &chosen] { chosen = [options] { return get(*options); }; });
}

void addSetCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("set", "Change one setting");
    const auto options = std::make_shared<SetOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_option("KEY", options->key, "The setting; its type is fixed")->required();
    verb->add_option("VALUE", options->value, "A number, a switch (0 1 true false on off) or a text");
    verb->allow_extras();
    verb->callback([verb, options, &chosen] {
        chosen = [verb, options] {
            const Result<std::string> text = valueOf(*options, verb->remaining());
            const Result<void> done = text ? set(*options, *text) : tl::make_unexpected(text.error());
            return done ? kExitOk : complain(done.error());
        };
    });
}

}  // namespace vxtv
