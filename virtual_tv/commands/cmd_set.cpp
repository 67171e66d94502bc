#include <memory>
#include <optional>

#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/store/setting_text.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct SetOptions {
    std::string folder;
    std::string key;
    std::optional<std::string> value;
};

/// The value as it was typed. One that begins with a dash is what the parser leaves over.
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
