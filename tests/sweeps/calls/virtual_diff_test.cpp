// Each platform call of a comparison fails in turn. A difference is never called the same, and afterwards the
// television is unchanged.

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/machine/database_rows.h"
#include "tests/sweeps/calls/virtual_calls_test.h"

namespace vxtest {
namespace {

/// The rooms differ in every category of a package. The package holds everything, except applications if
/// there are none.
class VirtualDiffTest : public VirtualCallsTest {
 protected:
    FileTree files() const { return snapshot(rooms_.folder(kSecond) / "opt"); }
    FileTree rows() const { return databaseRows(rooms_.folder(kSecond)); }

    /// Whether the result is true for its part of the package.
    static bool isTrue(const nlohmann::json& said) {
        const std::string result = said.value("result", "");
        const bool held = GetParam() || said.value("category", "") != "apps";
        return held ? result == "differs" || result == "not-compared" : result == "not-held";
    }

    static void expectNothingCalledTheSame(const Finished& diff) {
        EXPECT_NE(diff.status, 0) << diff.output;
        EXPECT_THAT(diff.output, testing::Not(testing::HasSubstr("No difference.")));
        std::istringstream lines(diff.output);
        for (std::string line; std::getline(lines, line);) {
            const auto said = nlohmann::json::parse(line);
            EXPECT_TRUE(said.value("kind", "") != "category" || isTrue(said)) << line;
        }
    }

    void tryPoint(const FaultPoint& point, const FileTree& files, const FileTree& rows) const {
        SCOPED_TRACE(point.name());
        const Finished broken = runWithFault(kSecond, point, diff_);
        expectNothingCalledTheSame(broken);
        // The next command restores what could not be put back.
        if (broken.status > 1) {
            EXPECT_EQ(rooms_.vxclone(kSecond, {"verify", kPackage}).status, verified_);
        }
        EXPECT_THAT(differing(this->files(), files), testing::IsEmpty());
        EXPECT_THAT(differing(this->rows(), rows), testing::IsEmpty());
    }

    const std::vector<std::string> diff_ = {"diff", kPackage, "--json"};
    const int verified_ = rooms_.vxclone(kSecond, {"verify", kPackage}).status;
};

TEST_P(VirtualDiffTest, callThatFailsMakesNothingTheSameAndLeavesTheTelevisionAsItWas) {
    SweepPoints points("calls-virtual diff");
    const std::vector<FaultPoint> all = pointsOf(kFirst, diff_, points);
    rooms_.renew();
    const FileTree files = this->files();
    const FileTree rows = this->rows();
    for (const FaultPoint& point : all) {
        points.tried();
        tryPoint(point, files, rows);
    }
}

INSTANTIATE_TEST_SUITE_P(Applications, VirtualDiffTest, testing::Bool(), nameOfApplications);

}  // namespace
}  // namespace vxtest
