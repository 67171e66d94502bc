#include "tests/unit/cloning_app/fake_secure_storage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/secure_storage.h"

FakeSecureStorage& FakeSecureStorage::instance() {
    static FakeSecureStorage storage;
    return storage;
}

extern "C" {

ss_credential ss_init_credential(const char* identifier, int owner, int group) {
    ss_credential credential{};
    std::memcpy(credential.identifier, identifier, sizeof credential.identifier);
    credential.owner = owner;
    credential.group = group;
    return credential;
}

int ss_read(char** data, size_t* length, int reserved1, int reserved2, const char* name,
            ss_credential credential, int flags) {
    const auto& key = FakeSecureStorage::instance().packageKey;
    const std::string_view identifier(credential.identifier, sizeof credential.identifier);
    const bool allowed = identifier == "VXCLONE-PACKAGE-KEY1" && credential.owner == 1 &&
                         credential.group == 0 && reserved1 == 0 && reserved2 == 0 && flags == 33;
    if (!key || !allowed || std::string_view(name) != "VXCLONE_PACKAGE_KEY") {
        return -3;
    }
    *data = static_cast<char*>(std::malloc(key->size() + 1));
    std::memcpy(*data, key->data(), key->size());
    *length = key->size();
    return 0;
}

void ss_free_buffer(char* data) {
    FakeSecureStorage& storage = FakeSecureStorage::instance();
    const std::size_t size = storage.packageKey.value_or("").size();
    storage.givenBackWiped = std::all_of(data, data + size, [](char byte) { return byte == 0; });
    std::free(data);
}
}
