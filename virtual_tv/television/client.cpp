#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "virtual_tv/television/key_file.h"
#include "virtual_tv/television/private_file.h"

namespace vxtv {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kLargestClient = 4096;

std::optional<std::int32_t> intIn(const Json& value) {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool fits = value.is_number_integer() && value >= Limits::min() && value <= Limits::max();
    return fits ? std::optional<std::int32_t>(value.get<std::int32_t>()) : std::nullopt;
}

tl::unexpected<Error> badClient(const std::filesystem::path& file, const std::string& why) {
    return failure(ErrorCode::BadArgument,
                   fmt::format("{} does not say whom the clone key belongs to: {}; give a JSON object with "
                               "\"identifier\" (20 bytes), \"owner\" and \"group\"",
                               file.string(), why));
}

}  // namespace

Result<Credential> readClient(const std::filesystem::path& file) {
    const auto text = readPlainFile(file, kLargestClient);
    if (!text) {
        return badClient(file, text.error().reason);
    }
    const Json document = Json::parse(*text, nullptr, false);
    if (!document.is_object()) {
        return badClient(file, "it holds no JSON object");
    }
    Credential credential;
    const Json identifier = document.value("identifier", Json());
    if (!identifier.is_string() ||
        identifier.get_ref<const std::string&>().size() != credential.identifier.size()) {
        return badClient(file, "\"identifier\" is no string of 20 bytes");
    }
    const std::optional<std::int32_t> owner = intIn(document.value("owner", Json()));
    const std::optional<std::int32_t> group = intIn(document.value("group", Json()));
    if (!owner || !group) {
        return badClient(file, "\"owner\" and \"group\" are no ints");
    }
    const auto& bytes = identifier.get_ref<const std::string&>();
    std::copy(bytes.begin(), bytes.end(), credential.identifier.begin());
    credential.owner = *owner;
    credential.group = *group;
    return credential;
}

}  // namespace vxtv
