#include "virtual_tv/base/credential.h"

#include <algorithm>

#include "virtual_tv/base/sealing.h"

namespace vxtv {

std::string toBytes(const Credential& credential) {
    return std::string(credential.identifier.data(), credential.identifier.size()) +
           toBigEndian(static_cast<std::uint32_t>(credential.owner)) +
           toBigEndian(static_cast<std::uint32_t>(credential.group));
}

Credential credentialIn(std::string_view bytes) {
    Credential credential;
    const std::size_t length = credential.identifier.size();
    std::copy_n(bytes.begin(), length, credential.identifier.begin());
    credential.owner = static_cast<std::int32_t>(fromBigEndian(bytes.substr(length)));
    credential.group = static_cast<std::int32_t>(fromBigEndian(bytes.substr(length + kNumberSize)));
    return credential;
}

}  // namespace vxtv
