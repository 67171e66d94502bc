#include "VXCloneLog.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

namespace {

/// The part of the tag that is constant for a thread: "tID:", its id and "|TICK:". The id has at most 20
/// digits, so a tag with its tick always fits.
struct ThreadPrefix {
    std::array<char, 40> text{};
    std::size_t length = 0;
};

ThreadPrefix makeThreadPrefix() {
    std::ostringstream stream;
    stream << "tID:" << std::this_thread::get_id() << "|TICK:";
    const std::string text = stream.str();
    ThreadPrefix prefix;
    prefix.length = text.copy(prefix.text.data(), prefix.text.size());
    return prefix;
}

}  // namespace

VXCloneLogTag::VXCloneLogTag() {
    thread_local const ThreadPrefix prefix = makeThreadPrefix();
    const auto sinceBoot = std::chrono::steady_clock::now().time_since_epoch();
    const auto ticks = std::chrono::duration_cast<std::chrono::milliseconds>(sinceBoot).count();

    char* const tick = std::copy_n(prefix.text.data(), prefix.length, m_text.data());
    const auto end = std::to_chars(tick, m_text.data() + m_text.size() - 1, ticks);
    *end.ptr = '\0';
}
