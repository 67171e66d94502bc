// Each platform call of a vxclone backup fails in turn. The run must report it, the stick must hold a
// complete package, and the next backup must be undisturbed.

#include <algorithm>
#include <iterator>

#include "tests/sweeps/calls/virtual_calls_test.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

/// A failure that the library does not see or report: the backup ends well without this data.
struct Unseen {
    const char* call;  ///< how its name begins
    const char* lost;  ///< how the names of what may be missing begin
    const char* said;  ///< what the run has to say of it; empty where nobody can know
};
constexpr Unseen kUnseen[] = {
    {"factory_clone_tv_to_usb", "factory.backup", "\"category\":\"factory\",\"result\":\"not-evaluated\""},
    {"system_info_get_custom_int", "org.vorta.homedatacontrol-service",
     "\"category\":\"home-data\",\"result\":\"not-reported\""},
    {"system_info_get_custom_int", "web-applications.backup",
     "\"category\":\"was\",\"result\":\"not-reported\""},
    {"vconf_get_", "vconf/Vconf.json",
     "\"category\":\"settings-keys\",\"result\":\"success\",\"detail\":\"saved, "},
    {"aul_launch_app", "org.vorta.orvel-app",
     "\"result\":\"not-reported\",\"application\":\"org.vorta.orvel-app\""},
    // A television need not have a hotel channel list.
    {"TVServiceAPI::CreateB2BControl", "tvs-chms/hotel-channels.backup", ""},
    {"IB2BControl::ExportChannelMap", "tvs-chms/hotel-channels.backup", ""},
};
constexpr const char* kAllSettings = "saved, 54 settings";

/// A file of a package that differs between two backups, because it depends on the time.
bool isOfTheMoment(const std::string& path) {
    return path == "manifest.json" || path == "validate.txt";
}

FileTree content(const fs::path& package) {
    FileTree tree = snapshot(package);
    std::erase_if(tree, [](const auto& file) { return isOfTheMoment(file.first); });
    return tree;
}

class VirtualBackupTest : public VirtualCallsTest {
 protected:
    fs::path package() const { return rooms_.folder(kStick) / "clone"; }

    /// Expects that a package is complete, or that the run says what it lacks.
    void expectWholeOrSaid(const FaultPoint& point, const Finished& broken, const FileTree& whole) const {
        for (const std::string& path : differing(content(package()), whole)) {
            const auto* const unseen =
                std::find_if(std::begin(kUnseen), std::end(kUnseen), [&](const Unseen& row) {
                    return beginsWith(point.call, row.call) && beginsWith(path, row.lost);
                });
            ASSERT_NE(unseen, std::end(kUnseen)) << path << " is not as it should be\n" << broken.output;
            EXPECT_THAT(broken.output, testing::HasSubstr(unseen->said));
            if (path == "vconf/Vconf.json") {
                EXPECT_THAT(broken.output, testing::Not(testing::HasSubstr(kAllSettings)));
            }
        }
    }

    void tryPoint(const FaultPoint& point, const FileTree& whole) const {
        SCOPED_TRACE(point.name());
        const Finished broken = runWithFault(kFirst, point, backup_);
        if (broken.status == 0) {
            expectWholeOrSaid(point, broken, whole);
        }
        // Nothing unfinished is beside the package or replaces it.
        EXPECT_THAT(snapshot(rooms_.folder(kStick)),
                    testing::Each(testing::Key(testing::StartsWith("clone/"))));
        const Finished verify = rooms_.vxclone(kSecond, {"verify", kPackage});
        // The package itself says that it is not complete.
        EXPECT_EQ(verify.status, broken.status == 1 ? 1 : 0) << broken.output << verify.output;
        EXPECT_THAT(rooms_.vxclone(kFirst, {"status"}).status, testing::AnyOf(0, 1));
        const Finished again = rooms_.vxclone(kFirst, backup_);
        EXPECT_EQ(again.status, 0) << again.output;
        EXPECT_THAT(differing(content(package()), whole), testing::IsEmpty());
    }

    const std::vector<std::string> backup_ = withDeclared({"backup", kPackage, "--json"}, GetParam());
};

TEST_P(VirtualBackupTest, callThatFailsLeavesAWholePackageAndIsNamed) {
    SweepPoints points("calls-virtual backup");
    const std::vector<FaultPoint> all = pointsOf(kFirst, backup_, points);
    const FileTree whole = content(package());
    for (const FaultPoint& point : all) {
        points.tried();
        tryPoint(point, whole);
    }
}

INSTANTIATE_TEST_SUITE_P(Applications, VirtualBackupTest, testing::Bool(), nameOfApplications);

}  // namespace
}  // namespace vxtest
