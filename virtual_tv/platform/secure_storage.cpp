#include "platform/secure_storage.h"

#include <cstdlib>
#include <cstring>

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

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

int ss_read(char** /*data*/, size_t* /*length*/, int reserved1, int reserved2, const char* name,
            ss_credential /*credential*/, int flags) {
    return absent("ss_read",
                  {number("reserved1", reserved1), number("reserved2", reserved2), named("name", name),
                   number("flags", flags)},
                  kFailed);
}

void ss_free_buffer(char* data) {
    std::free(data);
}
