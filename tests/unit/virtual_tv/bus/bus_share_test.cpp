#include "virtual_tv/bus/bus_share.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>

#include "tests/support/machine/file_tree.h"
#include "tests/unit/virtual_tv/bus_television.h"
#include "virtual_tv/bus/bus_keeper.h"
#include "virtual_tv/television/announcement.h"

namespace vxtv {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(BusConfig, newAddressesDiffer) {
    EXPECT_NE(newBusAddress(), newBusAddress());
}

TEST(BusConfig, namesTheAddressAndNothingOfTheMachine) {
    const auto config = busConfig("unix:abstract=here");
    EXPECT_THAT(config, HasSubstr("<listen>unix:abstract=here</listen>"));
    EXPECT_THAT(config, Not(HasSubstr("<include")));
    EXPECT_THAT(config, Not(HasSubstr("<servicedir")));
    EXPECT_THAT(config, Not(HasSubstr("<standard_session_servicedirs")));
}

TEST(BusShare, takeBringsUpABusThatProgramsCanReach) {
    BusTelevision television;
    const auto address = busAddress(television.folder);
    ASSERT_TRUE(address);
    EXPECT_TRUE(connectToBus(*address));
}

TEST(BusShare, secondShareIsOfTheSameBus) {
    BusTelevision television;
    const auto address = busAddress(television.folder);
    BusShare second(television.folder);
    ASSERT_TRUE(second.take());
    EXPECT_EQ(busAddress(television.folder), address);
    EXPECT_TRUE(connectToBus(*address));
}

TEST(BusShare, busLivesUntilTheLastShareIsGivenBack) {
    BusTelevision television;
    const std::string address = busAddress(television.folder).value();
    {
        BusShare second(television.folder);
        ASSERT_TRUE(second.take());
        television.share = BusShare(television.folder);
        EXPECT_TRUE(connectToBus(address));
        second.endBus();
    }
    EXPECT_EQ(connectToBus(address).error(), PortError::NoBus);
    EXPECT_TRUE(std::filesystem::is_empty(television.folder.run()));
}

TEST(BusShare, twoTelevisionsHaveTwoBuses) {
    BusTelevision first;
    BusTelevision second;
    EXPECT_NE(busAddress(first.folder), busAddress(second.folder));
    PortInbox inbox;
    MessagePorts ports(first.folder, "org.example.app");
    ASSERT_TRUE(ports.open("Port", inbox.receiver()));
    EXPECT_EQ(MessagePorts(first.folder, "org.example.other").exists("org.example.app", "Port"), true);
    EXPECT_EQ(MessagePorts(second.folder, "org.example.other").exists("org.example.app", "Port"), false);
}

TEST(BusShare, addressOfABusThatIsGoneIsNotBelieved) {
    vxtest::TemporaryDirectory place;
    const Folder folder(place / "tv");
    std::filesystem::create_directories(folder.run());
    vxtest::writeFile(folder.busAddress(), "unix:abstract=gone\n");
    EXPECT_EQ(busAddress(folder), std::nullopt);
}

TEST(BusShare, takeWithoutTheDaemonSaysWhatToInstall) {
    const std::string path = std::getenv("PATH");
    vxtest::TemporaryDirectory place;
    const Folder folder(place / "tv");
    std::filesystem::create_directories(folder.root());
    BusShare share(folder);
    setenv("PATH", place.path().c_str(), 1);
    const auto taken = share.take();
    setenv("PATH", path.c_str(), 1);
    ASSERT_FALSE(taken);
    EXPECT_EQ(taken.error().code, ErrorCode::CannotRun);
    EXPECT_THAT(taken.error().sentence, HasSubstr("dbus-daemon"));
    share.endBus();
    EXPECT_TRUE(std::filesystem::is_empty(folder.run()));
}

TEST(BusShare, takeOfADaemonThatEndsSaysSo) {
    const std::string path = std::getenv("PATH");
    vxtest::TemporaryDirectory place;
    const Folder folder(place / "tv");
    std::filesystem::create_directories(folder.root());
    std::filesystem::create_symlink("/bin/false", place / "dbus-daemon");
    BusShare share(folder);
    setenv("PATH", place.path().c_str(), 1);
    const auto taken = share.take();
    setenv("PATH", path.c_str(), 1);
    ASSERT_FALSE(taken);
    EXPECT_THAT(taken.error().sentence, HasSubstr("dbus-daemon ended"));
    share.endBus();
    EXPECT_TRUE(std::filesystem::is_empty(folder.run()));
}

}  // namespace
}  // namespace vxtv
