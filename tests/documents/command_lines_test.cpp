// All command lines in the documents exist in the programs.

#include "tests/documents/command_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packaging/vxclone_manual.h"
#include "packaging/vxtv_manual.h"
#include "tests/documents/documents.h"

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vxpages::CliVerb;

const Block& blockThatBegins(const Markdown& document, const std::string& begin) {
    for (const Block& block : document.blocks) {
        if (!block.lines.empty() && block.lines.front().starts_with(begin)) return block;
    }
    throw std::runtime_error(document.name + " has no block that begins with " + begin);
}

TEST(CommandLinesTest, everyDocumentNamesCommandsAndOptionsThatThereAre) {
    const std::vector<CliVerb> programs = {vxpages::vxcloneManual().program, vxpages::vxtvManual().program};
    for (const std::string& name : documents()) {
        EXPECT_THAT(unknownCommandLines(readDocument(name), programs), IsEmpty());
    }
}

TEST(CommandLinesTest, synopsisOfVxcloneIsThatOfTheProgram) {
    const Markdown document = readDocument("docs/vxclone.md");
    EXPECT_THAT(synopsisDifferences(document.name, blockThatBegins(document, "vxclone backup"),
                                    vxpages::vxcloneManual().program),
                IsEmpty());
}

/// tool [--help] save DIR [--help] [--deep], tool plan DIR add [--nth N]
CliVerb tool() {
    const auto option = [](const char* name) { return vxpages::CliOption{"", name, "", "", false, {}}; };
    const CliVerb add{"add", "", "", {option("--nth")}, {}, {}};
    const CliVerb plan{"plan", "", "", {}, {option("DIR")}, {add}};
    const CliVerb save{"save", "", "", {option("--help"), option("--deep")}, {option("DIR")}, {}};
    return {"tool", "", "", {option("--help"), option("--version")}, {}, {save, plan}};
}

std::vector<std::string> unknownIn(const std::string& text) {
    return unknownCommandLines(readMarkdown("page.md", text), {tool()});
}

TEST(CommandLinesTest, whatThereIsIsKnown) {
    EXPECT_THAT(unknownIn("`tool`, `tool save`, `tool --help`, `tool save DIR --deep=2`, `tool plan DIR add\n"
                          "--nth -1`, `--nth`, `tool save DIR -- tool plan`, `other --odd`, `--`, `tool:`"),
                IsEmpty());
}

TEST(CommandLinesTest, whatThereIsNotIsNamed) {
    EXPECT_THAT(
        unknownIn("Say `tool load`.\nOr `tool save DIR --nth 2` or\n`tool save D -- tool\nmix`; `--odd`"),
        ElementsAre("page.md:1: \"tool\" has no command load", "page.md:2: \"save\" has no option --nth",
                    "page.md:3: \"tool\" has no command mix", "page.md:4: no program has an option --odd"));
}

std::vector<std::string> differencesOf(const std::vector<std::string>& lines) {
    return synopsisDifferences("page.md", {1, "", lines, {}}, tool());
}

TEST(SynopsisTest, sameCommandLinesHaveNoDifference) {
    EXPECT_THAT(
        differencesOf({"tool save DIR", "     [--deep | --help]", "tool plan DIR COMMAND", "tool --version"}),
        IsEmpty());
}

TEST(SynopsisTest, eachDifferenceIsNamed) {
    EXPECT_THAT(
        differencesOf({"tool save DIR [--flat]", "tool save DIR [--deep]", "tool load", "save"}),
        ElementsAre("page.md:2: \"save\" has --deep, too", "page.md:2: \"save\" has no option --flat",
                    "page.md:3: \"save\" is here twice", "page.md:4: \"load\" is no command",
                    "page.md:5: this is no command line of \"tool\"", "page.md:1: \"plan\" is missing"));
}

}  // namespace
}  // namespace vxtest
