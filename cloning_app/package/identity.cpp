#include "cloning_app/package/identity.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/system_info.h"

namespace vxclone {

namespace {

constexpr const char* kRegionalTunerFeature =
    "com.kestrel/featureconf/vx_hotel_cloning.product_clone_info.tuner_support";
constexpr int kRegionalTuner = 0x80;

/// The library's check reads lines of 255 characters with the line end, and tags below 128.
constexpr std::size_t kLongestModel = 254;
constexpr std::size_t kLongestProductTag = 127;

struct Free {
    void operator()(char* text) const { std::free(text); }
};

std::optional<std::string> systemText(system_info_key_e key) {
    char* text = nullptr;
    const int status = system_info_get_value_string(key, &text);
    const std::unique_ptr<char, Free> owned(text);
    return status == 0 && owned ? std::optional<std::string>(owned.get()) : std::nullopt;
}

std::optional<int> systemTuner() {
    int tuner = 0;
    bool regional = false;
    if (system_info_get_value_int(SYSTEM_INFO_KEY_TUNER_TYPE, &tuner) != 0 ||
        system_info_get_custom_bool(kRegionalTunerFeature, &regional) != 0) {
        return std::nullopt;
    }
    return regional ? tuner | kRegionalTuner : tuner;
}

tl::unexpected<Error> unusable(std::string_view part, std::string_view why) {
    return failure(ErrorCode::IdentityUnusable,
                   fmt::format("this television's {} {}, so no package can be made of it; restart the "
                               "television, and have its service data checked if that does not help",
                               part, why));
}

Result<void> checkText(std::string_view part, const std::optional<std::string>& text, std::size_t longest) {
    if (!text) {
        return unusable(part, "cannot be read");
    }
    if (text->size() > longest) {
        return unusable(part, fmt::format("is longer than {} characters", longest));
    }
    if (text->find_first_of("\r\n") != std::string::npos) {
        return unusable(part, "has a line end in it");
    }
    return {};
}

std::optional<int> numberIn(const std::string& line) {
    int number = 0;
    const char* const end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

Identity televisionIdentity() {
    return {systemText(SYSTEM_INFO_KEY_MODEL), systemText(SYSTEM_INFO_KEY_PRODUCT_TAG), systemTuner()};
}

Result<std::string> identityText(const Identity& identity) {
    VX_RETURN_IF_FAILED(checkText("model", identity.model, kLongestModel));
    VX_RETURN_IF_FAILED(checkText("product tag", identity.productTag, kLongestProductTag));
    if (!identity.tuner) {
        return unusable("tuner type", "cannot be read");
    }
    return fmt::format("{}\n{}\n{}\n", *identity.productTag, *identity.model, *identity.tuner);
}

Identity parseIdentity(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size() && lines.size() < 3;) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    const auto line = [&lines](std::size_t index) {
        return index < lines.size() ? std::optional(lines[index]) : std::nullopt;
    };
    return {line(1), line(0), line(2) ? numberIn(*line(2)) : std::nullopt};
}

}  // namespace vxclone
