#include <memory>

#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/store/setting_text.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

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

}  // namespace

void addGetCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("get", "Show the value of one setting");
    const auto options = std::make_shared<GetOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_option("KEY", options->key, "The setting, such as db/hotel/dooreye")->required();
    verb->add_flag("--json", options->json, "For programs: key, type and value");
    verb->callback([options, &chosen] { chosen = [options] { return get(*options); }; });
}

}  // namespace vxtv
