#pragma once

#include "tests/sweeps/calls/swept_run.h"

namespace vxtest {

/// The special value that a call returns.
enum class Given { Empty, Huge, Least, Most, WrongType };

/// Whether the call returns a value that can be of this kind.
bool canGive(Direction direction, const MadeCall& call, Given kind);

/// Makes the call return such a value, and tells the verdict its meaning. Result: as SweptRun::Tamper.
std::optional<int> give(SweptRun& run, const MadeCall& call, Given kind);

}  // namespace vxtest
