#pragma once

#include "platform/bundle.h"
#include "virtual_tv/ports/port.h"

/// The content of a bundle on this television.
struct _bundle_t {
    vxtv::PortEntries entries;
};
