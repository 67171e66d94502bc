#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/machine/temporary_directory.h"
#include "tests/sweeps/system/bench.h"

namespace vxtest {

/// What a command must have done when it says that all went well, and what it must not have spoilt else.
struct Subject {
    std::vector<std::string> command;
    std::filesystem::path begin;  ///< the television before the command
    std::filesystem::path end;    ///< the television after the unbroken command
};

/// Televisions and a stick to copy for each point, as unbroken runs leave them. Skips the test where no
/// program can be traced.
class SystemSweep : public testing::Test {
 protected:
    SystemSweep();
    void SetUp() override;

    Subject backup() const { return {{"backup", kPackage}, source(), source()}; }
    Subject restore() const { return {{"restore", kPackage}, target(), restored()}; }
    Subject undo() const { return {{"undo"}, restored(), target()}; }
    /// Of a television whose clone folder is not empty, with the package that is its own.
    Subject diff() const { return {{"diff", kPackage}, backedUp(), backedUp()}; }

    enum class Among { AllFiles, FilesThatMatter };
    /// The calls of the unbroken command, those of these names alone where there are any.
    std::vector<CountedCall> count(const Subject& subject, const std::string& calls, Among among) const;
    Bench benchOf(const Subject& subject) const { return {subject.begin, stick()}; }

    /// A run that is no crash, did not hang, and says what went wrong where something did.
    static void expectTold(const Finished& finished);
    /// The stick holds a whole package and nothing else.
    static void expectPackageGood(const Bench& bench);
    /// The stick holds a whole package, the next backup works, and nothing else is left on stick or
    /// television.
    static void expectStickWhole(const Bench& bench, int verifyStatus = 0);
    /// The television is as the subject found it, or undo brings it back to that.
    static void expectWayBack(const Bench& bench, const Subject& subject);
    /// The command, done again, comes to the same end as one that was never broken.
    void expectConverges(const Bench& bench, const Subject& subject) const;
    /// The television is as the subject found it, its clone folder and its last results too, at the latest
    /// after the next command that only looks.
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
