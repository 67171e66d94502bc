#include "tests/sweeps/calls/virtual_calls_test.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/machine/exit_status.h"

namespace vxtest {

namespace {

using nlohmann::json;

/// A pattern for texts that report a problem, or that something could not be checked.
constexpr const char* kNotGood =
    "\"(result|readBack)\":\"(failed|differs|not-applied|not-compared|unknown)\"|could not be read back";

/// The last line of a run with `--json`; not an object if there is none.
json lastLine(const Finished& run) {
    std::istringstream lines(run.output);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        last = line;
    }
    return json::parse(last, nullptr, false);
}

void expectDocumentedEnd(const Finished& broken) {
    EXPECT_FALSE(broken.timedOut);
    EXPECT_GE(broken.status, 0);
    EXPECT_LE(broken.status, ended::kHighest) << broken.errors;
    EXPECT_NE(broken.status, ended::kUsage) << broken.errors;
}

/// Expects that a failed run says so in its last line and, if it was completed, for the affected item.
void expectSaid(const Finished& broken) {
    const json last = lastLine(broken);
    ASSERT_TRUE(last.is_object()) << broken.output << broken.errors;
    EXPECT_EQ(last.value("exit", -1), broken.status) << broken.output;
    if (last.value("event", "") == "error") {
        EXPECT_THAT(last.value("message", ""), testing::HasSubstr(" ")) << broken.output;
    } else if (broken.status != 0) {
        EXPECT_THAT(broken.output, testing::ContainsRegex(kNotGood));
    }
}

}  // namespace

std::vector<FaultPoint> VirtualCallsTest::pointsOf(const std::string& room,
                                                   const std::vector<std::string>& command,
                                                   SweepPoints& points) const {
    rooms_.renew();
    const Finished unbroken = rooms_.vxclone(room, command);
    EXPECT_EQ(unbroken.status, 0) << unbroken.output << unbroken.errors;
    const std::vector<std::string> calls = rooms_.callsOf(room);
    points.note("of " + std::to_string(calls.size()) + " calls");
    std::vector<FaultPoint> all = faultPoints(calls, isLongForm(), GetParam());
    // A message that is not freed is an intended leak here, which the sanitizer would report.
    std::erase_if(all, [](const FaultPoint& point) { return VX_SANITIZED && point.call == "bundle_free"; });
    return all;
}

Finished VirtualCallsTest::runWithFault(const std::string& room, const FaultPoint& point,
                                        const std::vector<std::string>& command) const {
    rooms_.renew();
    rooms_.addFault(room, point);
    const Finished broken = rooms_.vxclone(room, command);
    EXPECT_EQ(rooms_.vxtv({"fault", rooms_.folder(room), "clear"}).status, 0);
    expectDocumentedEnd(broken);
    expectSaid(broken);
    EXPECT_EQ(rooms_.processes(), 0);
    return broken;
}

std::vector<std::string> differing(const FileTree& some, const FileTree& other) {
    std::vector<std::string> paths;
    for (const auto& [path, text] : some) {
        const auto found = other.find(path);
        if (found == other.end() || found->second != text) {
            paths.push_back(path);
        }
    }
    for (const auto& [path, text] : other) {
        if (some.count(path) == 0) {
            paths.push_back(path);
        }
    }
    return paths;
}

}  // namespace vxtest
