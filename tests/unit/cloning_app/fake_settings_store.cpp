#include "tests/unit/cloning_app/fake_settings_store.h"

#include <cstring>

#include "platform/vconf.h"

FakeSettingsStore& FakeSettingsStore::instance() {
    static FakeSettingsStore store;
    return store;
}

void FakeSettingsStore::reset() {
    const std::lock_guard lock(mutex_);
    values_ = {{"db/hotel/clone_progress", Value(100)},
               {"db/hotel/clone_result", Value(std::string("VXCLONE_AV_SETTINGS-FAIL\n"))}};
    refused_.clear();
}

void FakeSettingsStore::set(const std::string& key, Value value) {
    const std::lock_guard lock(mutex_);
    values_[key] = std::move(value);
}

std::optional<FakeSettingsStore::Value> FakeSettingsStore::get(const std::string& key) {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FakeSettingsStore::refuseWriting(const std::string& key) {
    const std::lock_guard lock(mutex_);
    refused_.insert(key);
}

bool FakeSettingsStore::write(const std::string& key, Value value) {
    const std::lock_guard lock(mutex_);
    if (refused_.count(key) != 0) {
        return false;
    }
    values_[key] = std::move(value);
    return true;
}

namespace {

template <class Type>
std::optional<Type> typed(const char* key) {
    const auto value = FakeSettingsStore::instance().get(key);
    return value && std::holds_alternative<Type>(*value) ? std::optional(std::get<Type>(*value))
                                                         : std::nullopt;
}

int status(bool good) {
    return good ? 0 : -1;
}

}  // namespace

extern "C" {

int vconf_get_int(const char* key, int* value) {
    const auto held = typed<int>(key);
    *value = held.value_or(*value);
    return status(held.has_value());
}

int vconf_set_int(const char* key, int value) {
    return status(FakeSettingsStore::instance().write(key, value));
}

int vconf_get_bool(const char* key, int* value) {
    const auto held = typed<FakeSettingsStore::Bool>(key);
    *value = held ? static_cast<int>(held->value) : *value;
    return status(held.has_value());
}

int vconf_set_bool(const char* key, int value) {
    return status(FakeSettingsStore::instance().write(key, FakeSettingsStore::Bool{value != 0}));
}

char* vconf_get_str(const char* key) {
    const auto held = typed<std::string>(key);
    return held ? strdup(held->c_str()) : nullptr;
}

int vconf_set_str(const char* key, const char* value) {
    return status(FakeSettingsStore::instance().write(key, std::string(value)));
}
}
