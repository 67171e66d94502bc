#pragma once

#include "virtual_tv/television/television.h"

namespace vxtv {

/// The television in which this process runs, named by the environment variable `kTelevisionVariable` when
/// the first platform call is made. Result: null when there is none, which one line on standard error tells
/// once. Ownership: the process's, to its end. Threads: any.
Television* processTelevision() noexcept;

}  // namespace vxtv
