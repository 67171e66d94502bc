#include "fuzz/target.h"

#include <cstdlib>
#include <ctime>
#include <iostream>

#include "common/character_width.h"
#include "common/printable.h"

namespace vxfuzz {
namespace {

std::vector<const Target*>& known() {
    static std::vector<const Target*> targets;
    return targets;
}

/// Processor time of all threads.
double secondsUsed() {
    timespec used{};
    require(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) == 0, "the time can be measured");
    constexpr double kNanosecondsInASecond = 1e9;
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / kNanosecondsInASecond;
}

}  // namespace

Target::Target(std::string_view name, void (*read)(std::string_view bytes)) : name_(name), read_(read) {
    known().push_back(this);
}

void Target::run(std::string_view bytes) const {
    requireTimely(bytes.size(), [this, bytes] { read_(bytes); });
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

void requireShowable(std::string_view text) {
    require(!text.empty(), "there is a text to be shown");
    for (std::size_t at = 0; at < text.size();) {
        const vxcommon::Character character = vxcommon::characterAt(text, at);
        require(character.valid, "what is shown is UTF-8");
        require(!vxcommon::isDeceptive(character.value), "what is shown deceives nobody");
        at += character.bytes;
    }
}

void requireTimely(std::size_t bytes, const std::function<void()>& work) {
#ifdef __SANITIZE_THREAD__
    constexpr double kSeconds = 20;  // the sanitizer looks at every access to memory
#else
    constexpr double kSeconds = 2;
#endif
    constexpr double kSecondsForAByte = 50e-6;
    const double begin = secondsUsed();
    work();
    require(bytes < kLargeInput ||
                secondsUsed() - begin < kSeconds + kSecondsForAByte * static_cast<double>(bytes),
            "the time grows no faster than the input");
}

}  // namespace vxfuzz
