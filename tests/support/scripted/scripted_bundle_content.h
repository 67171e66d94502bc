#pragma once

#include <deque>
#include <map>
#include <string>
#include <utility>

#include "platform/bundle.h"

/// The entries, in the order in which they were added. A value stays at its place while others are added.
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

}  // namespace vxtest
