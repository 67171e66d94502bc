#include "platform/secure_storage.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/store/secure_storage.h"

using namespace vxtv;

namespace {

constexpr int kFlags = 33;

constexpr std::array kStorageStatuses = {
    StatusOf{ErrorCode::BadArgument, -2}, StatusOf{ErrorCode::UnknownEntry, -3},
    StatusOf{ErrorCode::WrongCredential, -4}, StatusOf{ErrorCode::BrokenSeal, -5},
    StatusOf{ErrorCode::NoDeviceKey, -6}};

Credential ownOf(const ss_credential& credential) {
    Credential own;
    std::copy(std::begin(credential.identifier), std::end(credential.identifier), own.identifier.begin());
    own.owner = credential.owner;
    own.group = credential.group;
    return own;
}

/// Copies the secret into a buffer for the caller. Result: 0, or a failure if there is not enough memory.
int handOut(const std::string& secret, char** data, size_t* length) {
    auto* const buffer = static_cast<char*>(std::malloc(std::max<std::size_t>(secret.size(), 1)));
    if (buffer == nullptr) {
        return kFailed;
    }
    std::memcpy(buffer, secret.data(), secret.size());
    *data = buffer;
    *length = secret.size();
    return 0;
}

}  // namespace

ss_credential ss_init_credential(const char* identifier, int owner, int group) {
    ss_credential credential{};
    if (identifier != nullptr) {
        std::memcpy(credential.identifier, identifier, sizeof credential.identifier);
    }
    credential.owner = owner;
    credential.group = group;
    return answer("ss_init_credential", {number("owner", owner), number("group", group)}, credential,
                  [&credential](Television&) { return credential; });
}

int ss_read(char** data, size_t* length, int reserved1, int reserved2, const char* name,
            ss_credential credential, int flags) {
    return answer("ss_read",
                  {number("reserved1", reserved1), number("reserved2", reserved2), named("name", name),
                   number("flags", flags)},
                  kFailed, [&](Television& television) {
                      const bool usable = data != nullptr && length != nullptr && name != nullptr &&
                                          reserved1 == 0 && reserved2 == 0 && flags == kFlags;
                      if (!usable) {
                          return statusOf(kStorageStatuses, ErrorCode::BadArgument, kFailed);
                      }
                      const auto secret = television.secureStorage().read(name, ownOf(credential));
                      return secret ? handOut(*secret, data, length)
                                    : statusOf(kStorageStatuses, secret.error().code, kFailed);
                  });
}

void ss_free_buffer(char* data) {
    std::free(data);
}
