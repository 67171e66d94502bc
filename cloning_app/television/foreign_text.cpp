#include "cloning_app/television/foreign_text.h"

#include <algorithm>
#include <string_view>

#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"
#include "common/character_width.h"

namespace vxclone {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char each) { return static_cast<unsigned char>(each) < 0x80U; });
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const vxcommon::Character character = vxcommon::characterAt(bytes, at);
        if (!character.valid) {
            return false;
        }
        at += character.bytes;
    }
    return true;
}

std::vector<std::string> textsThatCannotTravel(const std::vector<Setting>& settings) {
    // What the library puts in place of other bytes is never ASCII: those that are need no question.
    std::vector<std::string> keys;
    for (const Setting& setting : settings) {
        const auto* const text = std::get_if<std::string>(&setting.value);
        if (text != nullptr && clonedSetting(setting.key) != nullptr && !isAscii(*text)) {
            keys.push_back(setting.key);
        }
    }
    const OwnSettings own = ownSettings(keys);
    std::vector<std::string> wrong;
    for (const Setting& setting : own.values) {
        const auto* const text = std::get_if<std::string>(&setting.value);
        if (text != nullptr && !isUtf8(*text)) {
            wrong.push_back(setting.key);
        }
    }
    return wrong;
}

LongText longestText() {
    LongText longest;
    for (const SettingFacts& facts : clonedSettings()) {
        const std::string key(facts.key);
        const auto text = facts.type == SettingType::Text ? store::readString(key) : std::nullopt;
        if (text && text->size() > longest.bytes) {
            longest = {key, text->size()};
        }
    }
    return longest;
}

}  // namespace vxclone
