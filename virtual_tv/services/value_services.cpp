#include "virtual_tv/services/value_services.h"

#include <fmt/format.h>

#include <system_error>
#include <utility>

#include "virtual_tv/base/service_files.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

using Rules = std::vector<ValueRule>;

Rules joined(std::initializer_list<Rules> groups) {
    Rules all;
    for (const Rules& group : groups) {
        all.insert(all.end(), group.begin(), group.end());
    }
    return all;
}

Rules pictureRules() {
    return {numberFrom("backlight", 0, 50),
            numberFrom("contrast", 0, 50),
            numberFrom("brightness", -5, 5),
            numberFrom("sharpness", 0, 20),
            numberFrom("colour", 0, 50),
            numberFrom("tint", -15, 15),
            oneOf("colourTone", {"cool", "standard", "warm-1", "warm-2"}),
            numberFrom("whiteBalance/red", -50, 50),
            numberFrom("whiteBalance/green", -50, 50),
            numberFrom("whiteBalance/blue", -50, 50)};
}

Rules soundRules() {
    return {oneOf("mode", {"standard", "music", "speech", "night"}), numberFrom("balance", -10, 10),
            numberFrom("bass", -10, 10), numberFrom("treble", -10, 10), onOff("surround")};
}

std::vector<std::string_view> languages() {
    return {"de", "en", "es", "fr", "it", "ko", "nl", "pl", "pt"};
}

/// A link or a file in place of the folder shows that no television made the package.
Result<void> expectFolder(const fs::path& folder) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(folder, error);
    if (fs::exists(status) && !fs::is_directory(status)) {
        return failure(ErrorCode::NotABackupFile,
                       fmt::format("{} is no folder of home data; make the backup anew", folder.string()));
    }
    return {};
}

}  // namespace

const ValueService& factoryService() {
    static const ValueService service = {
        "factory",
        vxport::kFactoryFiles.front(),
        1,
        {{oneOf("tuner/standard", {"dvb-t2c", "dvb-t2cs2", "atsc", "isdb-t"}),
          oneOf("region/code", {"eu", "uk", "us", "au"}), onOff("panel/overscan"),
          numberFrom("panel/gamma", -3, 3), numberFrom("panel/pixelShiftMinutes", 0, 60),
          oneOf("panel/orientation", {"landscape", "portrait"}), onOff("options/localDimming"),
          onOff("options/externalSpeaker"), onOff("options/serialControl"),
          numberFrom("options/powerOnSource", 0, 99), as(Part::Kept, textOf("identity/serialNumber", 1, 32)),
          as(Part::Kept, textOf("identity/panelNumber", 1, 32)),
          as(Part::Kept, textOf("identity/ethernetAddress", 17, 17)),
          as(Part::Kept, numberFrom("identity/operatingHours", 0, 1000000))}}};
    return service;
}

const ValueService& avService() {
    static const ValueService service = {
        "av",
        vxport::kPictureAndSoundFiles.front(),
        1,
        {joined({{oneOf("picture/mode", {"standard", "dynamic", "natural", "movie"}),
                  oneOf("picture/size", {"16-9", "4-3", "fit", "zoom"})},
                 below({"picture/standard", "picture/dynamic", "picture/natural", "picture/movie"},
                       pictureRules()),
                 {numberFrom("sound/startVolume", 0, 100), numberFrom("sound/highestVolume", 1, 100)},
                 below({"sound/tv", "sound/hdmi-1", "sound/hdmi-2", "sound/hdmi-3", "sound/usb"},
                       soundRules())})}};
    return service;
}

const ValueService& settingsService() {
    static const ValueService service = {
        "settings",
        vxport::kSettingsDataFiles.front(),
        1,
        {{as(Part::Early, oneOf("region/language", languages())),
          as(Part::Early, textOf("region/country", 2, 2)),
          as(Part::Early, oneOf("region/keyboard", {"qwerty", "qwertz", "azerty"})), onOff("subtitles/on"),
          oneOf("subtitles/language", languages()), oneOf("audio/language", languages()),
          onOff("audio/description"), numberFrom("menu/secondsOnScreen", 5, 120), onOff("menu/spoken"),
          oneOf("power/saving", {"off", "low", "high", "automatic"}),
          numberFrom("power/offAfterHours", 0, 24), onOff("power/instantOn"), onOff("lock/buttons"),
          numberFrom("lock/highestAge", 0, 18)}}};
    return service;
}

const ValueService& homeDataService() {
    static const ValueService service = {
        "home-data",
        "home-data.backup",
        1,
        {{numberFrom("layout/columns", 2, 8), oneOf("layout/theme", {"light", "dark", "hotel"}),
          onOff("layout/recentFirst")},
         {{"tiles",
           "application",
           true,
           64,
           {textOf("application", 1, 128), textOf("title", 1, 128), onOff("pinned"),
            oneOf("size", {"small", "wide", "large"})}}}}};
    return service;
}

const ValueService& webApplicationService() {
    static const ValueService service = {
        "was",
        vxport::kWebApplicationFiles.front(),
        1,
        {{onOff("updateAtNight")},
         {{"applications",
           "id",
           false,
           128,
           {textOf("id", 1, 128), textOf("name", 1, 128), textOf("url", 1, 2048), textOf("version", 1, 32),
            onOff("startsWithTelevision")}}}}};
    return service;
}

Result<void> backUpHomeData(Database& database, const fs::path& folder) {
    return expectFolder(folder).and_then([&] {
        // If this fails, writing the file fails, too, and gives the reason.
        std::error_code ignored;
        fs::create_directory(folder, ignored);
        return ServiceValues(database, homeDataService()).backUp(folder);
    });
}

Result<void> restoreHomeData(Database& database, const fs::path& folder) {
    return expectFolder(folder).and_then(
        [&] { return ServiceValues(database, homeDataService()).restore(folder); });
}

}  // namespace vxtv
