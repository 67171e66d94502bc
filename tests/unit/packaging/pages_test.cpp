// The manual pages and completions are complete, and the programs that read them accept them.

#include "packaging/pages.h"

#include <gmock/gmock.h>

#include "cloning_app/base/error_catalogue.h"
#include "packaging/vxclone_manual.h"
#include "packaging/vxtv_manual.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/unit/packaging/shells.h"

namespace vxpages {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using vxtest::Finished;

const std::filesystem::path kShare = VX_SHARE;

std::string inTroff(std::string text) {
    for (std::size_t at = text.find('-'); at != std::string::npos; at = text.find('-', at + 2)) {
        text.insert(at, "\\");
    }
    return text;
}

class PagesTest : public testing::TestWithParam<Manual (*)()> {
 protected:
    std::string page() const { return vxtest::readFile(pagePath()); }
    std::string bash() const { return vxtest::readFile(bashPath()); }
    std::string zsh() const { return vxtest::readFile(zshPath()); }
    std::filesystem::path pagePath() const { return kShare / "man/man1" / (name_ + ".1"); }
    std::filesystem::path bashPath() const { return kShare / "bash-completion/completions" / name_; }
    std::filesystem::path zshPath() const { return kShare / "zsh/site-functions" / ("_" + name_); }

    void expectEverywhere(const CliVerb& verb) const {
        for (const CliVerb& below : verb.verbs) {
            EXPECT_THAT(page(), HasSubstr(" " + inTroff(below.name)));
            EXPECT_THAT(bash(), HasSubstr(" " + below.name + "\")\n"));
            EXPECT_THAT(zsh(), HasSubstr("'" + below.name + ":"));
            expectEverywhere(below);
        }
        for (const CliOption& option : verb.options) {
            EXPECT_THAT(page(), HasSubstr(inTroff(option.longName)));
            EXPECT_THAT(bash(), HasSubstr(option.longName));
            EXPECT_THAT(zsh(), HasSubstr(option.longName));
            EXPECT_THAT(option.description, Not(IsEmpty())) << verb.name << " " << option.longName;
        }
        for (const CliOption& operand : verb.operands) {
            EXPECT_THAT(page(), HasSubstr(inTroff(operand.longName)));
        }
    }

    Manual manual_ = GetParam()();
    std::string name_ = manual_.program.name;
};

TEST_P(PagesTest, everyVerbAndOptionIsInAllOfThem) {
    EXPECT_GT(manual_.program.verbs.size(), 5U);
    expectEverywhere(manual_.program);
}

TEST_P(PagesTest, pageIsTakenByManWithoutAWarning) {
    bool read = false;
    for (const std::vector<std::string>& tool :
         {std::vector<std::string>{"groff", "-man", "-ww", "-Tutf8", "-z", pagePath().string()},
          {"mandoc", "-T", "lint", "-W", "warning", pagePath().string()}}) {
        if (isInstalled(tool.front())) {
            const Finished lint = vxtest::run({tool, {}, {}, {}});
            EXPECT_EQ(lint.output + lint.errors, "") << tool.front();
            EXPECT_EQ(lint.status, 0);
            read = true;
        }
    }
    if (!read) {
        GTEST_SKIP() << "neither groff nor mandoc is here";
    }
}

TEST_P(PagesTest, completionsAreTakenByTheirShells) {
    EXPECT_EQ(vxtest::run({{"bash", "-n", bashPath()}, {}, {}, {}}).status, 0);
    if (!isInstalled("zsh")) {
        GTEST_SKIP() << "zsh is not here";
    }
    const Finished zsh = vxtest::run({{"zsh", "-f", "-n", zshPath()}, {}, {}, {}});
    EXPECT_EQ(zsh.status, 0) << zsh.errors;
}

TEST_P(PagesTest, zshLoadsTheCompletion) {
    if (!isInstalled("zsh")) {
        GTEST_SKIP() << "zsh is not here";
    }
    const std::string script = "fpath=(" + zshPath().parent_path().string() +
                               " $fpath); autoload -Uz compinit; compinit -u -D; print -- ${_comps[" + name_ +
                               "]}; autoload +X _" + name_;
    const Finished zsh = vxtest::run({{"zsh", "-f", "-c", script}, {}, {}, {}});
    EXPECT_EQ(zsh.output, "_" + name_ + "\n") << zsh.errors;
    EXPECT_EQ(zsh.status, 0);
}

INSTANTIATE_TEST_SUITE_P(Programs, PagesTest, testing::Values(vxcloneManual, vxtvManual),
                         [](const auto& program) { return program.index == 0 ? "vxclone" : "vxtv"; });

TEST(VxtvManual, synopsisNamesArgumentsAndOptionsInTheOrderInWhichTheyAreTyped) {
    const std::string page = manPage(vxtvManual());
    EXPECT_THAT(page,
                HasSubstr("\n\\fBvxtv create\\fR \\fIDIR\\fR \\fB\\-\\-profile\\fR \\fINAME|FILE\\fR\n"));
    EXPECT_THAT(page, HasSubstr("\n\\fBvxtv fault DIR add\\fR \\fICALL\\fR ["));
    EXPECT_THAT(page, HasSubstr("[\\fB\\-\\-quiet\\fR] \\fB\\-\\-\\fR \\fICOMMAND\\fR ...\n"));
    EXPECT_THAT(page, HasSubstr("\n.SS vxtv fault DIR add\n"));
}

TEST(VxcloneManual, pageHoldsEveryErrorWithCauseAndNextStep) {
    const std::string page = manPage(vxcloneManual());
    for (const vxclone::ErrorFact& fact : vxclone::errorCatalogue()) {
        EXPECT_THAT(page,
                    HasSubstr(inTroff(std::string(fact.name)) + " (" + std::to_string(fact.exitStatus)));
        EXPECT_THAT(page, HasSubstr(inTroff(std::string(fact.nextStep))));
    }
}

TEST(VxcloneManual, tableOfExitStatusesInTheDocumentIsTheCatalogues) {
    std::string table = "| Status | Meaning |\n|---|---|\n";
    for (const vxclone::StatusFact& fact : vxclone::exitStatuses()) {
        table += "| " + std::to_string(fact.status) + " | " + std::string(fact.meaning) + " |\n";
    }
    EXPECT_THAT(vxtest::readFile(VX_DOCUMENT), HasSubstr(table));
}

TEST(VxcloneManual, tableOfErrorsInTheDocumentIsTheCatalogues) {
    std::string table = "| Code | Status | Cause | Next step |\n|---|---|---|---|\n";
    for (const vxclone::ErrorFact& fact : vxclone::errorCatalogue()) {
        table += "| `" + std::string(fact.name) + "` | " + std::to_string(fact.exitStatus) + " | " +
                 std::string(fact.cause) + " | " + std::string(fact.nextStep) + " |\n";
    }
    EXPECT_THAT(vxtest::readFile(VX_DOCUMENT), HasSubstr(table));
}

}  // namespace
}  // namespace vxpages
