// What the documents name is there: links, and what is to be complete.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

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

/// The links of a page of the folder that lead nowhere: a sentence each.
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

}  // namespace
}  // namespace vxtest
