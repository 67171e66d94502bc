#include "fuzz/target.h"

#include <cstdlib>
#include <iostream>

namespace vxfuzz {
namespace {

std::vector<const Target*>& known() {
    static std::vector<const Target*> targets;
    return targets;
}

}  // namespace

Target::Target(std::string_view name, void (*read)(std::string_view bytes)) : name_(name), read_(read) {
    known().push_back(this);
}

const std::vector<const Target*>& Target::all() {
    return known();
}

void require(bool holds, std::string_view what) {
    if (!holds) {
        std::cerr << "fuzz: does not hold: " << what << std::endl;
        std::abort();
    }
}

}  // namespace vxfuzz
