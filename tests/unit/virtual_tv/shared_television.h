#pragma once

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv::test {

/// The television of this process's platform, with the small profile. A process has only one, so all tests of
/// the program share it and undo their changes.
const Television& sharedTelevision();

}  // namespace vxtv::test
