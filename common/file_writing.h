#pragma once

#include <string_view>

namespace vxcommon {

/// Writes all the bytes, however many calls that takes, and waits until the disk has them. Result: 0, or the
/// system's reason (errno).
int writeAndFlush(int file, std::string_view bytes);

/// Whether the reason (errno) for which nothing could be written says that there is no room: the disk is
/// full, or the user's share of it.
bool meansNoRoom(int reason);

}  // namespace vxcommon
