#pragma once

#include "platform/bundle.h"
#include "virtual_tv/ports/port.h"

/// What a bundle is on this television.
struct _bundle_t {
    vxtv::PortEntries entries;
};
