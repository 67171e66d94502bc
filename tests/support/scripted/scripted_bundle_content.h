#pragma once

#include <deque>
#include <map>
#include <string>
#include <utility>

#include "platform/bundle.h"
#include "tests/support/scripted/answering.h"

/// The entries in the order in which they were added. Adding an entry does not move the others in memory.
struct _bundle_t {
    std::deque<std::pair<std::string, std::string>> entries;
};

namespace vxtest {

inline std::string* findEntry(bundle& in, const std::string& key) {
    for (auto& [name, value] : in.entries) {
        if (name == key) {
            return &value;
        }
    }
    return nullptr;
}

inline bundle bundleOf(const std::map<std::string, std::string>& message) {
    return {{message.begin(), message.end()}};
}

/// A bundle as it appears in the record of a call.
inline std::string written(const bundle* content) {
    if (content == nullptr) {
        return "null";
    }
    std::string entries;
    for (const auto& [key, value] : content->entries) {
        entries += (entries.empty() ? "" : ", ") + quoted(key) + ": " + quoted(value);
    }
    return "{" + entries + "}";
}

}  // namespace vxtest
