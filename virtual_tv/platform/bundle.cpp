#include "platform/bundle.h"

#include <algorithm>
#include <memory>

#include "virtual_tv/platform/bundle_content.h"
#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

// virtual_tv/README.md contains the same table of statuses.
constexpr int kBadArgument = -2;
constexpr int kKeyIsThere = -3;
constexpr int kNoSuchKey = -4;

bool isEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

std::string* find(bundle& in, const std::string& key) {
    const auto entry = std::find_if(in.entries.begin(), in.entries.end(),
                                    [&key](const auto& candidate) { return candidate.first == key; });
    return entry != in.entries.end() ? &entry->second : nullptr;
}

int add(bundle* to, const char* key, const char* value) {
    if (to == nullptr || isEmpty(key) || value == nullptr) return kBadArgument;
    if (find(*to, key) != nullptr) return kKeyIsThere;
    to->entries.emplace_back(key, value);
    return 0;
}

}  // namespace

bundle* bundle_create() {
    bundle* const none = nullptr;
    return answer("bundle_create", {}, none,
                  [](Television&) { return std::make_unique<bundle>().release(); });
}

int bundle_add_str(bundle* b, const char* key, const char* value) {
    return answer("bundle_add_str", {named("key", key), secret("value", value)}, kFailed,
                  [=](Television&) { return add(b, key, value); });
}

int bundle_add(bundle* b, const char* key, const char* value) {
    return answer("bundle_add", {named("key", key), secret("value", value)}, kFailed,
                  [=](Television&) { return add(b, key, value); });
}

int bundle_get_str(bundle* b, const char* key, char** value) {
    return answer("bundle_get_str", {named("key", key)}, kFailed, [=](Television&) {
        if (b == nullptr || isEmpty(key) || value == nullptr) return kBadArgument;
        std::string* const held = find(*b, key);
        if (held == nullptr) return kNoSuchKey;
        *value = held->data();
        return 0;
    });
}

int bundle_free(bundle* b) {
    return answer("bundle_free", {}, kFailed, [=](Television&) {
        const std::unique_ptr<bundle> ours(b);
        return ours ? 0 : kBadArgument;
    });
}
