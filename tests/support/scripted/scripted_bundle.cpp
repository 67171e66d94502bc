#include "tests/support/scripted/answering.h"
#include "tests/support/scripted/scripted_bundle_content.h"

using namespace vxtest;

namespace {

int add(const char* call, bundle* to, const char* key, const char* value) {
    return answered(call, fmt::format("{}, {}", quoted(key), quoted(value)), [&] {
        const bool isAddable = to != nullptr && key != nullptr && *key != '\0' && value != nullptr;
        if (!isAddable || findEntry(*to, key) != nullptr) {
            return -1;
        }
        to->entries.emplace_back(key, value);
        return 0;
    });
}

}  // namespace

bundle* bundle_create(void) {
    return answeredPointer("bundle_create", "", [] {
        platform().locked([](ScriptedPlatform::State& state) { ++state.bundlesHeld; });
        return new bundle();
    });
}

int bundle_add_str(bundle* b, const char* key, const char* value) {
    return add("bundle_add_str", b, key, value);
}

int bundle_add(bundle* b, const char* key, const char* value) {
    return add("bundle_add", b, key, value);
}

int bundle_get_str(bundle* b, const char* key, char** value) {
    return answered("bundle_get_str", quoted(key), [&] {
        std::string* const held = b != nullptr && key != nullptr ? findEntry(*b, key) : nullptr;
        if (held == nullptr || value == nullptr) {
            return -1;
        }
        *value = held->data();
        return 0;
    });
}

// Freed with every scripted status, because nobody else can free it.
int bundle_free(bundle* b) {
    if (b != nullptr) {
        platform().locked([](ScriptedPlatform::State& state) { --state.bundlesHeld; });
        delete b;
    }
    return answered("bundle_free", "", [&] { return b == nullptr ? -1 : 0; });
}
