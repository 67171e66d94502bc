#include <cstring>

#include "platform/secure_storage.h"
#include "platform/wqd.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

ss_credential ss_init_credential(const char* identifier, int owner, int group) {
    ss_credential credential{};
    std::memcpy(credential.identifier, identifier, sizeof(credential.identifier));
    credential.owner = owner;
    credential.group = group;
    platform().decide(
        "ss_init_credential",
        fmt::format("{}, {}, {}", quoted(std::string(identifier, sizeof(credential.identifier))), owner,
                    group));
    return credential;
}

int ss_read(char** data, size_t* length, int reserved1, int reserved2, const char* name,
            ss_credential credential, int flags) {
    const std::string arguments = fmt::format("{}, {}, {}, {}/{}, {}", reserved1, reserved2, quoted(name),
                                              credential.owner, credential.group, flags);
    return answered("ss_read", arguments, [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            const auto found = state.secrets.find(name);
            if (found == state.secrets.end()) {
                return -1;
            }
            const std::string& content = found->second;
            if (!content.empty()) {
                *data = new char[content.size()];
                std::memcpy(*data, content.data(), content.size());
                ++state.secretsHeld;
            }
            *length = content.size();
            return 0;
        });
    });
}

void ss_free_buffer(char* data) {
    platform().decide("ss_free_buffer", "");
    platform().locked([](ScriptedPlatform::State& state) { --state.secretsHeld; });
    delete[] data;
}

int wqd_install_from_file(const char* path, int target, int option) {
    return answered("wqd_install_from_file", fmt::format("{}, {}, {}", quoted(path), target, option), [] {
        return platform().locked([](ScriptedPlatform::State& state) {
            state.secrets.insert(state.installedSecrets.begin(), state.installedSecrets.end());
            return 0;
        });
    });
}
