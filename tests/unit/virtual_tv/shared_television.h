#pragma once

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv::test {

/// The television that the platform of this process finds, of the small profile. A process has one for its
/// whole life, so all tests of the executable share it and clean up what they change.
const Television& sharedTelevision();

}  // namespace vxtv::test
