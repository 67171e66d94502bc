#include "cloning_app/support/redactor.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <string_view>

#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

constexpr std::string_view kInPlace = "***";
constexpr std::size_t kFoundAnywhere = 4;

bool isPartOfAWord(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

bool standsAlone(const std::string& text, std::size_t begin, std::size_t end) {
    return (begin == 0 || !isPartOfAWord(text[begin - 1])) &&
           (end == text.size() || !isPartOfAWord(text[end]));
}

void replaceAll(std::string& text, const std::string& secret) {
    std::size_t at = text.find(secret);
    while (at != std::string::npos) {
        const bool hit = secret.size() >= kFoundAnywhere || standsAlone(text, at, at + secret.size());
        if (hit) {
            text.replace(at, secret.size(), kInPlace);
        }
        at = text.find(secret, at + (hit ? kInPlace.size() : 1));
    }
}

/// The text as it is written between the quotation marks of JSON.
std::string inJson(const std::string& text) {
    const std::string quoted =
        nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return quoted.substr(1, quoted.size() - 2);
}

/// The value as text, for any type. The store returns it only if the right type is requested.
std::string valueOf(const std::string& key) {
    if (auto text = store::readString(key)) {
        return *std::move(text);
    }
    const auto number = store::readInt(key);
    return number ? std::to_string(*number) : "";
}

}  // namespace

Redactor::Redactor(const std::vector<std::string>& secrets) {
    for (const std::string& secret : secrets) {
        if (!secret.empty()) {
            secrets_.push_back(secret);
            secrets_.push_back(inJson(secret));
        }
    }
    std::sort(secrets_.begin(), secrets_.end(),
              [](const std::string& one, const std::string& other) { return one.size() > other.size(); });
}

std::string Redactor::clean(std::string text) const {
    for (const std::string& secret : secrets_) {
        replaceAll(text, secret);
    }
    return text;
}

Redactor redactorOfTelevision() {
    std::vector<std::string> secrets;
    for (const std::string& key : keysOfKind(SettingKind::Secret)) {
        secrets.push_back(valueOf(key));
    }
    return Redactor(secrets);
}

}  // namespace vxclone
