#include "virtual_tv/ports/port.h"

#include <gtest/gtest.h>

namespace vxtv {
namespace {

TEST(PortName, ofAnApplicationWithDotsAndDashesNamesBoth) {
    EXPECT_EQ(portBusName("org.vorta.orvel-app", "VxCloneMessagePort").value(),
              "vxtv.org.vorta.orvel-app.VxCloneMessagePort");
}

TEST(PortName, ofTextThatIsNoNameIsRefused) {
    for (const auto& [application, port] : {std::pair{"", "port"},
                                            {"app", ""},
                                            {".app", "port"},
                                            {"app.", "port"},
                                            {"a..b", "port"},
                                            {"a b", "port"},
                                            {"a.1b", "port"},
                                            {"app", "1port"},
                                            {"app", "po/rt"},
                                            {"\xc3\xa4pp", "port"}}) {
        const auto name = portBusName(application, port);
        ASSERT_FALSE(name) << application << " " << port;
        EXPECT_EQ(name.error(), PortError::BadArgument) << application << " " << port;
    }
}

TEST(PortName, ofAPortWithADotIsRefusedSinceItCouldBeAnotherApplications) {
    EXPECT_EQ(portBusName("org.example", "app.port").error(), PortError::BadArgument);
}

TEST(PortName, longerThanABusAllowsIsRefused) {
    const std::string longest(255 - 5 - 5, 'a');
    EXPECT_TRUE(portBusName(longest, "port"));
    EXPECT_EQ(portBusName(longest + "a", "port").error(), PortError::NameTooLong);
    EXPECT_EQ(portBusName("app", std::string(100000, 'a')).error(), PortError::NameTooLong);
}

}  // namespace
}  // namespace vxtv
