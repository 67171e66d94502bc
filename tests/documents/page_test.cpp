// Whether the things that documents name exist, such as links, and whether lists are complete.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "tests/documents/documents.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The broken links of a page, a sentence for each.
std::vector<std::string> brokenLinks(const fs::path& folder, const std::string& name) {
    std::vector<std::string> broken;
    const Markdown page = readMarkdown(name, readFile(folder / name));
    for (const Link& link : page.links) {
        if (link.target.find("://") != std::string::npos) continue;
        const std::size_t hash = std::min(link.target.find('#'), link.target.size());
        const std::string file = link.target.substr(0, hash);
        const fs::path target = file.empty() ? fs::path(name) : (fs::path(name).parent_path() / file);
        bool leads = fs::exists(folder / target);
        if (leads && hash < link.target.size()) {
            const auto anchors = readMarkdown(target, readFile(folder / target)).anchors;
            leads = std::find(anchors.begin(), anchors.end(), link.target.substr(hash + 1)) != anchors.end();
        }
        if (!leads) broken.push_back(at(name, link.line, link.target + " leads nowhere"));
    }
    return broken;
}

TEST(PageTest, everyLinkOfEveryPageLeadsSomewhere) {
    for (const std::string& name : documents()) EXPECT_THAT(brokenLinks(sourceFolder(), name), IsEmpty());
}

TEST(PageTest, linkThatLeadsNowhereIsNamed) {
    const TemporaryDirectory place;
    writeFile(
        place / "docs/page.md",
        "# How it *works*: all\n[a](#how-it-works-all) [b](../other.md#second) [c](https://x.example/y)\n"
        "[d](#nowhere) [e](other.md) and [f](../other.md#third)\n");
    writeFile(place / "other.md", "## Second\n");
    EXPECT_THAT(
        brokenLinks(place.path(), "docs/page.md"),
        ElementsAre("docs/page.md:3: #nowhere leads nowhere", "docs/page.md:3: other.md leads nowhere",
                    "docs/page.md:3: ../other.md#third leads nowhere"));
}

TEST(PageTest, architectureNamesEverySourceOfTheLibrary) {
    const std::string architecture = readFile(sourceFolder() / "docs/architecture.md");
    for (const auto& entry : fs::directory_iterator(sourceFolder() / "src")) {
        if (entry.path().extension() != ".cpp") continue;
        EXPECT_THAT(architecture, testing::HasSubstr("| `" + entry.path().filename().string() + "` |"));
    }
}

TEST(PageTest, readmeLeadsToEveryPageOfTheDocumentation) {
    const Markdown readme = readDocument("README.md");
    std::vector<std::string> targets;
    for (const Link& link : readme.links) targets.push_back(link.target);
    for (const auto& entry : fs::directory_iterator(sourceFolder() / "docs")) {
        if (entry.path().extension() != ".md") continue;
        EXPECT_THAT(targets, Contains("docs/" + entry.path().filename().string()));
    }
}

TEST(PageTest, testingTellsWhatEveryPresetIsFor) {
    const std::string presets = readFile(sourceFolder() / "CMakePresets.json");
    const std::string page = readFile(sourceFolder() / "docs/testing.md");
    static const std::regex shown("\"name\": \"([a-z]+)\"[^\n]*\"displayName\"");
    std::size_t count = 0;
    for (std::sregex_iterator match(presets.begin(), presets.end(), shown); match != std::sregex_iterator();
         ++match) {
        EXPECT_THAT(page, testing::HasSubstr("\n| `" + (*match)[1].str() + "` |"));
        ++count;
    }
    EXPECT_GT(count, 5U);
}

/// The sources of a folder, with split string literals joined and escaped quotation marks resolved.
std::string textsOf(const std::string& room) {
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(sourceFolder() / room)) {
        if (entry.path().extension() == ".cpp") all += readFile(entry.path());
    }
    return std::regex_replace(std::regex_replace(all, std::regex("\"\\s*\""), ""), std::regex("\\\\\""),
                              "\"");
}

/// The fixed parts of a quoted sentence: without `NAME` and `...`.
std::vector<std::string> fixedPartsOf(const std::string& sentence) {
    static const std::regex differs("[A-Z]{2,}|\\.\\.\\.");
    std::vector<std::string> parts(std::sregex_token_iterator(sentence.begin(), sentence.end(), differs, -1),
                                   {});
    std::erase(parts, "");
    return parts;
}

TEST(PageTest, sentencesOfTheTroubleshootingTableAreThoseOfVxtv) {
    const std::string texts = textsOf("virtual_tv");
    const std::string page = readFile(sourceFolder() / "docs/virtual-television.md");
    const std::size_t begin = page.find("| It says | Do |");
    ASSERT_NE(begin, std::string::npos);
    const std::string table = page.substr(begin, page.find("\n\n", begin) - begin);
    static const std::regex row("\n\\| `([^`]+)` \\|");
    std::size_t rows = 0;
    for (std::sregex_iterator match(table.begin(), table.end(), row); match != std::sregex_iterator();
         ++match) {
        for (const std::string& part : fixedPartsOf((*match)[1])) {
            EXPECT_NE(texts.find(part), std::string::npos) << (*match)[1] << "\nvxtv never says: " << part;
        }
        ++rows;
    }
    EXPECT_GT(rows, 20U);
}

}  // namespace
}  // namespace vxtest
