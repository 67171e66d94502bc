#include "cloning_app/package/settings_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "cloning_app/base/small_file.h"
#include "cloning_app/package/layout.h"
#include "common/strict_json.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using Json = nlohmann::json;

/// The file has two layers. With some more, one setting is of a wrong shape and the others are good.
constexpr std::size_t kDeepest = 8;
/// Each setting has its key, its type, its value, and the object of both.
constexpr vxcommon::JsonLimits kSettingsLimits{kDeepest, 4 * kMostSettings + 1};
constexpr int kNoFollow = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

std::string settingsPath(const Tree& package) {
    return package.path + "/" + std::string(kSettingsFile);
}

tl::unexpected<Error> settingsDamaged(const Tree& package, const std::string& why) {
    return failure(ErrorCode::SettingsDamaged, vxcommon::printable(settingsPath(package)) + " " + why +
                                                   "; make the package again with vxclone backup");
}

/// The descriptor is invalid when there is no such file.
Result<Descriptor> openSettings(const Tree& package) {
    const Descriptor folder(openat(package.descriptor, kSettingsFolder, kNoFollow | O_DIRECTORY));
    if (!folder.valid() && errno == ENOENT) {
        return Descriptor();
    }
    Descriptor file(folder.valid() ? openat(folder.get(), kSettingsFileName, kNoFollow) : -1);
    if (!file.valid() && errno != ENOENT) {
        return tl::make_unexpected(readError(package.place, settingsPath(package), errno));
    }
    return file;
}

Result<std::string> readWhole(const Tree& package, int file) {
    struct stat facts {};
    if (fstat(file, &facts) != 0) {
        return tl::make_unexpected(readError(package.place, settingsPath(package), errno));
    }
    if (!S_ISREG(facts.st_mode)) {
        return settingsDamaged(package, "is not a file");
    }
    const auto wanted =
        std::min<std::uintmax_t>(kMostSettingsBytes, static_cast<std::uintmax_t>(facts.st_size)) + 1;
    std::string text(static_cast<std::size_t>(wanted), '\0');
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t got = read(file, text.data() + size, text.size() - size);
        if (got < 0 && errno != EINTR) {
            return tl::make_unexpected(readError(package.place, settingsPath(package), errno));
        }
        if (got == 0) {
            break;
        }
        size += got < 0 ? 0 : static_cast<std::size_t>(got);
    }
    if (size > kMostSettingsBytes) {
        return settingsDamaged(package, "is larger than 16 MiB");
    }
    text.resize(size);
    return text;
}

/// The number that the library takes the value for; none where it would take none.
std::optional<int> numberIn(const Json& value) {
    if (value.is_null()) {
        return 0;
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? 1 : 0;
    }
    const bool inRange = value.is_number() && value.get<double>() >= std::numeric_limits<int>::min() &&
                         value.get<double>() <= std::numeric_limits<int>::max();
    return inRange ? std::optional<int>(value.get<int>()) : std::nullopt;
}

Setting settingFrom(const std::string& key, const Json& typed) {
    Setting setting{key, {}};
    if (!typed.is_object() || typed.size() != 1) {
        return setting;
    }
    const std::string& type = typed.begin().key();
    const Json& value = typed.begin().value();
    const auto number = numberIn(value);
    if (type == "int" && number) {
        setting.value = Setting::Int{*number};
    } else if (type == "bool" && (number == 0 || number == 1)) {
        setting.value = Setting::Bool{*number != 0};
    } else if (type == "string" && value.is_null()) {
        setting.value = std::string();
    } else if (type == "string" && value.is_string()) {
        // The store takes a string up to its first NUL.
        const auto& text = value.get_ref<const std::string&>();
        setting.value = text.substr(0, text.find('\0'));
    }
    return setting;
}

/// What is refused here, the library would take in part, or in another way.
Result<Json> parsed(const Tree& package, const std::string& text, const StopFlag* stop) {
    try {
        Json document = vxcommon::parseStrictly(text, kSettingsLimits,
                                                [stop] { return stop != nullptr && stop->raised(); });
        if (document.is_object()) {
            return document;
        }
    } catch (const vxcommon::WrongMember& wrong) {
        return settingsDamaged(package,
                               "is damaged: " + vxcommon::printable(wrong.member) + " " + wrong.reason);
    } catch (const vxcommon::ParsingStopped&) {
        return tl::make_unexpected(stopError(stop->signal()));
    } catch (const Json::parse_error&) {
        return settingsDamaged(package, "is damaged: it is no JSON");
    }
    return settingsDamaged(package, "is damaged: it is no list of settings");
}

/// The document of the package's settings file; none where there is no such file.
Result<std::optional<Json>> readDocument(const Tree& package, const StopFlag* stop) {
    const auto file = openSettings(package);
    VX_RETURN_IF_FAILED(file);
    if (!file->valid()) {
        return std::optional<Json>();
    }
    const auto text = readWhole(package, file->get());
    VX_RETURN_IF_FAILED(text);
    auto document = parsed(package, *text, stop);
    VX_RETURN_IF_FAILED(document);
    return std::optional(*std::move(document));
}

std::string plainText(const Json& value) {
    return value.dump(-1, ' ', true);
}

/// One setting to a block of lines, indented by tabs, other than ASCII characters by their numbers.
std::string textOfLibrary(const Json& document) {
    std::string text;
    for (const auto& [key, typed] : document.items()) {
        text += (text.empty() ? "\n\t" : ",\n\t") + plainText(key) + " : ";
        if (!typed.is_object() || typed.size() != 1) {
            text += plainText(typed);
            continue;
        }
        text += "\n\t{\n\t\t" + plainText(typed.begin().key()) + " : " + plainText(typed.begin().value()) +
                "\n\t}";
    }
    return "{" + text + "\n}";
}

}  // namespace

Result<std::optional<std::vector<Setting>>> readSettings(const Tree& package, const StopFlag* stop) {
    const auto document = readDocument(package, stop);
    VX_RETURN_IF_FAILED(document);
    if (!*document) {
        return std::optional<std::vector<Setting>>();
    }
    std::vector<Setting> settings;
    for (const auto& [key, typed] : (*document)->items()) {
        settings.push_back(settingFrom(key, typed));
    }
    return std::optional(std::move(settings));
}

Result<void> takeOutSettings(const Tree& package, const std::vector<std::string>& keys) {
    auto document = readDocument(package, nullptr);
    VX_RETURN_IF_FAILED(document);
    if (!*document) {
        return tl::make_unexpected(readError(package.place, settingsPath(package), ENOENT));
    }
    for (const std::string& key : keys) {
        (*document)->erase(key);
    }
    const Descriptor folder(openat(package.descriptor, kSettingsFolder, kNoFollow | O_DIRECTORY));
    if (!folder.valid()) {
        return tl::make_unexpected(readError(package.place, settingsPath(package), errno));
    }
    return writeSmallFile({folder.get(), package.path + "/" + kSettingsFolder, package.place},
                          kSettingsFileName, textOfLibrary(**document));
}

}  // namespace vxclone
