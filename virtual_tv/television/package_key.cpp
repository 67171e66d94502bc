#include "virtual_tv/television/package_key.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "virtual_tv/base/private_file.h"

namespace vxtv {

namespace {

constexpr std::size_t kPackageKeySize = 32;
constexpr std::string_view kApplication = "VXCLONE-PACKAGE-KEY1";
constexpr std::int32_t kOwner = 1;

}  // namespace

Credential packageKeyCredential() {
    Credential credential;
    static_assert(kApplication.size() == std::tuple_size_v<decltype(credential.identifier)>);
    std::copy(kApplication.begin(), kApplication.end(), credential.identifier.begin());
    credential.owner = kOwner;
    return credential;
}

Result<std::string> readPackageKey(const std::filesystem::path& file) {
    const auto bytes = readPlainFile(file, kPackageKeySize + 1);
    if (bytes && bytes->size() == kPackageKeySize) {
        return *bytes;
    }
    return failure(
        ErrorCode::NoFleetSecret,
        fmt::format("{} is no package key: {}; give a plain file of {} random bytes", file.string(),
                    bytes ? "it has another length" : bytes.error().reason, kPackageKeySize));
}

}  // namespace vxtv
