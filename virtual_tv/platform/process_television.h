#pragma once

#include "virtual_tv/television/television.h"

namespace vxtv {

/// The television in which this process runs. The environment variable `kTelevisionVariable` names it when
/// the first platform call is made. Result: null if there is none; one line on standard error says so once.
/// Ownership: the process owns it until its end. Threads: any.
Television* processTelevision() noexcept;

}  // namespace vxtv
