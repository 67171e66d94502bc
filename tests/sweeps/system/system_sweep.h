#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/machine/temporary_directory.h"
#include "tests/sweeps/system/bench.h"

namespace vxtest {

/// What a command must have done if it reports success, and what it must not have damaged otherwise.
struct Subject {
    std::vector<std::string> command;
    std::filesystem::path begin;  ///< the television before the command
    std::filesystem::path end;    ///< the television after the unbroken command
};

/// Televisions and a stick to copy for each point, in the states of undisturbed runs. Skips the test if
/// programs cannot be traced.
class SystemSweep : public testing::Test {
 protected:
    SystemSweep();
    void SetUp() override;

    Subject backup() const { return {{"backup", kPackage}, source(), source()}; }
    Subject restore() const { return {{"restore", kPackage}, target(), restored()}; }
    Subject undo() const { return {{"undo"}, restored(), target()}; }
    /// For a television with a clone folder that is not empty, and with its own package.
    Subject diff() const { return {{"diff", kPackage}, backedUp(), backedUp()}; }

    enum class Among { AllFiles, FilesThatMatter };
    /// The calls of the undisturbed command, restricted to these names if there are any.
    std::vector<CountedCall> count(const Subject& subject, const std::string& calls, Among among) const;
    Bench benchOf(const Subject& subject) const { return {subject.begin, stick()}; }

    /// Expects no crash and no hang, and a message if something went wrong.
    static void expectTold(const Finished& finished);
    /// Expects exactly one complete package on the stick.
    static void expectPackageGood(const Bench& bench);
    /// Expects a complete package on the stick, a successful next backup, and no leftovers on stick or
    /// television.
    static void expectStickWhole(const Bench& bench, int verifyStatus = 0);
    /// Expects that the television is unchanged, or that undo brings it back.
    static void expectWayBack(const Bench& bench, const Subject& subject);
    /// Expects that repeating the command has the same result as an undisturbed one.
    void expectConverges(const Bench& bench, const Subject& subject) const;
    /// Expects that the television, its clone folder and its last results are unchanged, at the latest after
    /// the next command that only looks.
    static void expectNoTrace(const Bench& bench, const Subject& subject);

    std::filesystem::path source() const { return place_ / "source"; }
    std::filesystem::path target() const { return place_ / "target"; }
    std::filesystem::path restored() const { return place_ / "restored"; }
    std::filesystem::path backedUp() const { return place_ / "backed-up"; }
    std::filesystem::path stick() const { return place_ / "stick"; }

    static constexpr const char* kPackage = "/media/usb/clone";

 private:
    void keepAs(const Bench& bench, const std::filesystem::path& folder) const;

    TemporaryDirectory place_;
    std::vector<std::string> namesOfData_;
};

}  // namespace vxtest
