#pragma once

#include "tests/sweeps/calls/swept_run.h"

namespace vxtest {

/// What a call gives instead of an ordinary value.
enum class Given { Empty, Huge, Least, Most, WrongType };

/// Whether the call gives a value that can be of the kind.
bool canGive(Direction direction, const MadeCall& call, Given kind);

/// Lets the call find such a value, and tells the verdict what it means. Result: as SweptRun::Tamper.
std::optional<int> give(SweptRun& run, const MadeCall& call, Given kind);

}  // namespace vxtest
