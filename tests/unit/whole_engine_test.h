#pragma once

#include "engine_test.h"

namespace vxtest {

/// The calls by which a run asks for network support.
inline constexpr const char* kReadNetworkSupport =
    "system_info_get_custom_int(\"com.kestrel/featureconf/network.network_support\")";

/// An engine for whole runs, on a television with its own directories. By default no application cooperates,
/// so everything that is reported comes from the calling thread.
class WholeEngineTest : public EngineTest {
 protected:
    WholeEngineTest() {
        tv.setDirectories("/tmp/area/boot", "/tmp/area/mbr", "/tmp/area/home");
        tv.answer("aul_launch_app", -1);
    }
};

}  // namespace vxtest
