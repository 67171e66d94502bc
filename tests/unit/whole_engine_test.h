#pragma once

#include "engine_test.h"

namespace vxtest {

/// How a run asks whether the television has network support.
inline constexpr const char* kReadNetworkSupport =
    "system_info_get_custom_int(\"com.kestrel/featureconf/network.network_support\")";

/// An engine for whole runs, on a television with directories of its own. No application cooperates unless a
/// test says so: what the calling thread does is then everything that is reported.
class WholeEngineTest : public EngineTest {
 protected:
    WholeEngineTest() {
        tv.setDirectories("/tmp/area/boot", "/tmp/area/mbr", "/tmp/area/home");
        tv.answer("aul_launch_app", -1);
    }
};

}  // namespace vxtest
