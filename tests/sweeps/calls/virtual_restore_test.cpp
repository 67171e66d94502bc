// Each platform call of a vxclone restore fails in turn. The run must report it, the stick must not change,
// and the next restore must succeed.

#include "tests/sweeps/calls/virtual_calls_test.h"

namespace vxtest {
namespace {

/// An application without an outcome that runs afterwards is named, and is no failure. The library's list
/// sometimes loses an outcome, which looks the same.
bool saysThatAnApplicationDidNotAnswer(const Finished& broken) {
    return broken.output.find("\"result\":\"not-reported\",\"application\":") != std::string::npos;
}

class VirtualRestoreTest : public VirtualCallsTest {
 protected:
    Finished compare() const {
        return rooms_.vxtv({"compare", rooms_.folder(kFirst), rooms_.folder(kSecond)});
    }

    void tryPoint(const FaultPoint& point, const FileTree& stick) const {
        SCOPED_TRACE(point.name());
        const Finished broken = runWithFault(kSecond, point, restore_);
        if (broken.status == 0 && !saysThatAnApplicationDidNotAnswer(broken)) {
            const Finished compared = compare();
            EXPECT_EQ(compared.status, 0) << compared.output << broken.output;
        }
        EXPECT_THAT(differing(snapshot(rooms_.folder(kStick)), stick), testing::IsEmpty());
        EXPECT_THAT(rooms_.vxclone(kSecond, {"status"}).status, testing::AnyOf(0, 1));
        const Finished again = rooms_.vxclone(kSecond, restore_);
        EXPECT_EQ(again.status, 0) << again.output << again.errors;
        EXPECT_EQ(compare().status, 0);
    }

    const std::vector<std::string> restore_ = {"restore", kPackage, "--json"};
};

TEST_P(VirtualRestoreTest, callThatFailsIsNamedAndTheNextRestorePutsAllRight) {
    SweepPoints points("calls-virtual restore");
    const std::vector<FaultPoint> all = pointsOf(kSecond, restore_, points);
    EXPECT_EQ(compare().status, 0);
    const FileTree stick = snapshot(rooms_.folder(kStick));
    for (const FaultPoint& point : all) {
        points.tried();
        tryPoint(point, stick);
    }
}

INSTANTIATE_TEST_SUITE_P(Applications, VirtualRestoreTest, testing::Bool(), nameOfApplications);

}  // namespace
}  // namespace vxtest
