// Tests the checker of the documents with small documents: correct ones pass, and planted mistakes are found.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/documents/execution.h"
#include "tests/documents/quotation.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Sentences = std::vector<std::string>;

Plan planOfText(const std::string& text) {
    return planOf(readMarkdown("page.md", text));
}

class CheckerTest : public testing::Test {
 protected:
    Sentences check(const std::string& text, std::chrono::seconds limit = std::chrono::minutes(1)) const {
        return problemsOf(planOfText(text), {place.path().string(), "/usr/local/bin:/usr/bin:/bin", limit});
    }

    TemporaryDirectory place;
};

TEST_F(CheckerTest, documentThatIsRightHasNoProblem) {
    EXPECT_THAT(check(R"(# A page

Make it:

```
mkdir -p a/b      # both
cd a
```

Look at it:

```sh
# the folder
ls \
    -d b
```

<!-- check: output -->
```
b
```

<!-- check: file deep/name's -->
```json
{"a": 1}
```

```console
$ cat "deep/name's"
{"a": 1}
$ cd ..
$ ls a
b
deep
```
)"),
                IsEmpty());
    EXPECT_EQ(readFile(place / "a/deep/name's"), "{\"a\": 1}\n");
}

TEST_F(CheckerTest, wrongCommandIsFound) {
    EXPECT_THAT(check("```\nls .\nls nowhere\nls .\n```\n"),
                ElementsAre("page.md:3: \"ls nowhere\" ended with 2 and not with 0. It printed:\n"
                            "    ls: cannot access 'nowhere': No such file or directory\n"));
}

TEST_F(CheckerTest, wrongSyntaxIsFoundAndTheNextCommandIsRun) {
    const Sentences found = check("```\nls 'open\nls nowhere\n```\n");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_THAT(found[0], testing::StartsWith("page.md:2: \"ls 'open\" ended with "));
    EXPECT_THAT(found[1], testing::StartsWith("page.md:3: \"ls nowhere\" ended with 2 "));
}

TEST_F(CheckerTest, wrongOutputIsFound) {
    EXPECT_THAT(check("```\n$ head -c 3 /dev/zero | cat -v\n^@^@\n```\n"),
                ElementsAre("page.md:3: \"head -c 3 /dev/zero | cat -v\" prints something else. The document "
                            "says:\n    ^@^@\nIt printed:\n    ^@^@^@\n"));
}

TEST_F(CheckerTest, outputWhereNoneIsQuotedIsFound) {
    EXPECT_THAT(check("```\n$ mkdir a\n$ ls\n$ ls\na\n```\n"),
                ElementsAre("page.md:4: \"ls\" prints something else. The document says:\n    (nothing)\n"
                            "It printed:\n    a\n"));
}

TEST_F(CheckerTest, quotedOutputThatIsNotPrintedIsFound) {
    EXPECT_THAT(check("```\nmkdir a\n```\n<!-- check: output -->\n```\nmade\n```\n"),
                ElementsAre("page.md:6: \"mkdir a\" prints something else. The document says:\n    made\n"
                            "It printed:\n    (nothing)\n"));
}

TEST_F(CheckerTest, outputOfACommandFurtherUpIsComparedWithIts) {
    const std::string commands = "```\nmkdir red blue\nls -d red\nls -d blue\n```\n";
    EXPECT_THAT(check(commands + "<!-- check: output of ls -d r -->\n```\nred\n```\n"), IsEmpty());
    EXPECT_THAT(check("```\nls -d red\nls -d blue\n```\n<!-- check: output of ls -d r -->\n```\nblue\n```\n"),
                ElementsAre("page.md:7: \"ls -d red\" prints something else. The document says:\n    blue\n"
                            "It printed:\n    red\n"));
}

TEST_F(CheckerTest, statusIsTheOneOfTheMark) {
    EXPECT_THAT(check("<!-- check: status 2 ls nowhere -->\n```\nls nowhere\nls\n```\n"), IsEmpty());
    EXPECT_THAT(check("<!-- check: status 2 ls -->\n```\nls\n```\n"),
                ElementsAre("page.md:3: \"ls\" ended with 0 and not with 2. It printed:\n    (nothing)\n"));
}

TEST_F(CheckerTest, commandThatIsStoppedHasToGoOnUntilThen) {
    EXPECT_THAT(check("<!-- check: stopped export -->\n```\nexport A=1; sleep 600\n```\n"), IsEmpty());
    EXPECT_THAT(check("<!-- check: stopped ls -->\n```\nls\n```\n"),
                ElementsAre("page.md:3: \"ls\" did not go on until it was stopped. It printed:\n"
                            "    (nothing)\n"));
}

TEST_F(CheckerTest, commandWithoutEndIsNamed) {
    EXPECT_THAT(
        check("```\nls\nexport A=1; sleep 600\nls nowhere\n```\n", std::chrono::seconds(1)),
        ElementsAre("page.md:3: \"export A=1; sleep 600\" was still running when the time was over. It "
                    "printed:\n    (nothing)\n"));
}

TEST_F(CheckerTest, commandThatEndsTheShellIsNamed) {
    EXPECT_THAT(check("```\nexport A=1; exit 0\nls nowhere\n```\n"),
                ElementsAre("page.md:2: \"export A=1; exit 0\" ended the shell, and no command after it was "
                            "run. It printed:\n    (nothing)\n"));
}

TEST_F(CheckerTest, commandHasNobodyToAsk) {
    EXPECT_THAT(check("```\n$ cat\n```\n"), IsEmpty());
}

TEST_F(CheckerTest, documentWithAMarkThatMakesNoSenseIsNotRun) {
    EXPECT_THAT(check("```\nmkdir a\n```\n<!-- check: maybe -->\n```\nls\n```\n"),
                ElementsAre("page.md:4: there is no mark \"maybe\" for a block of commands"));
    EXPECT_FALSE(std::filesystem::exists(place / "a"));
}

TEST(PlanTest, whatIsNotRunIsListedWithTheReason) {
    const Plan plan = planOfText(
        "<!-- check: not run: it takes hours -->\n```\nscripts/sweep\n```\n\n"
        "<!-- check: not run ls b: it asks: a person -->\n```\nls a\nls b\n```\n");
    EXPECT_THAT(plan.leftOut, ElementsAre("page.md:2: a block is not run: it takes hours",
                                          "page.md:9: \"ls b\" is not run: it asks: a person"));
    EXPECT_THAT(plan.problems, IsEmpty());
    ASSERT_EQ(plan.steps.size(), 1U);
    EXPECT_EQ(std::get<Command>(plan.steps[0]).text, "ls a");
}

struct Wrong {
    const char* name;
    const char* text;
    const char* sentence;
};

void PrintTo(const Wrong& wrong, std::ostream* stream) {
    *stream << wrong.name;
}

class WrongBlockTest : public testing::TestWithParam<Wrong> {};

TEST_P(WrongBlockTest, isNamed) {
    EXPECT_THAT(planOfText(GetParam().text).problems, ElementsAre(GetParam().sentence));
}

constexpr Wrong kWrong[] = {
    {"unknownMark", "<!-- check: perhaps -->\n```\nls\n```\n",
     "page.md:1: there is no mark \"perhaps\" for a block of commands"},
    {"otherComment", "<!-- chek: output -->\n```\nls\n```\n",
     "page.md:1: this comment is no mark that the check reads"},
    {"unknownCommand", "```\nls\nrm -rf /\n```\n", "page.md:3: how is \"rm -rf /\" run? Mark it"},
    {"unknownLanguage", "```cpp\nint main() {}\n```\n", "page.md:1: how is a block of \"cpp\" run? Mark it"},
    {"drawing", "```\n+--+\n```\n", "page.md:2: how is \"+--+\" run? Mark it"},
    {"emptyBlock", "```\n\n# nothing\n```\n", "page.md:1: this block holds no command"},
    {"blockWithoutEnd", "```\nls\n", "page.md:1: this block has no end"},
    {"markBeforeNoBlock", "<!-- check: output -->\n\n```\nls\n```\n",
     "page.md:1: this mark stands before no block"},
    {"markAtTheEnd", "<!-- check: output -->\n", "page.md:1: this mark stands before no block"},
    {"outputOfNothing", "<!-- check: output -->\n```\ndone\n```\n",
     "page.md:2: no command that is run before it prints this"},
    {"outputOfAnotherCommand", "```\nls\n```\n<!-- check: output of cat -->\n```\ndone\n```\n",
     "page.md:5: no command that is run before it prints this"},
    {"outputOfWhatIsNotRun",
     "<!-- check: not run: no -->\n```\nls\n```\n<!-- check: output -->\n```\na\n```\n",
     "page.md:6: no command that is run before it prints this"},
    {"outputThatIsAnything", "```\nls\n```\n<!-- check: output -->\n```\n...\n ... ...\n```\n",
     "page.md:5: this output fits whatever is printed"},
    {"statusOfNoCommand", "<!-- check: status 1 cat -->\n```\nls\n```\n",
     "page.md:1: no command of this block begins with \"cat\""},
    {"statusOfTwoCommands", "<!-- check: status 1 ls -->\n```\nls a\nls b\n```\n",
     "page.md:1: more than one command of this block begins with \"ls\""},
    {"statusThatIsNone", "<!-- check: status one ls -->\n```\nls\n```\n",
     "page.md:1: a status is a number from 1 to 255 and the begin of a command"},
    {"statusZero", "<!-- check: status 0 ls -->\n```\nls\n```\n",
     "page.md:1: a status is a number from 1 to 255 and the begin of a command"},
    {"statusWithoutCommand", "<!-- check: status 1 -->\n```\nls\n```\n",
     "page.md:1: a status is a number from 1 to 255 and the begin of a command"},
    {"noReason", "<!-- check: not run ls -->\n```\nls\n```\n", "page.md:1: this mark gives no reason"},
};

INSTANTIATE_TEST_SUITE_P(Each, WrongBlockTest, testing::ValuesIn(kWrong),
                         [](const auto& wrong) { return wrong.param.name; });

TEST(QuotationTest, sameTextIsQuoted) {
    EXPECT_TRUE(quotes({}, ""));
    EXPECT_TRUE(quotes({"one", "", "two  "}, "one  \n\ntwo"));
    EXPECT_FALSE(quotes({"one"}, ""));
    EXPECT_FALSE(quotes({}, "one\n"));
    EXPECT_FALSE(quotes({"one"}, "one\ntwo\n"));
    EXPECT_FALSE(quotes({"one", "two"}, "one\n"));
    EXPECT_FALSE(quotes({"one"}, " one\n"));
}

TEST(QuotationTest, dotsInALineStandForAnyTextOfIt) {
    EXPECT_TRUE(quotes({"made ... by ..."}, "made at 12:30 by vxclone\n"));
    EXPECT_TRUE(quotes({"...end"}, "the end\n"));
    EXPECT_TRUE(quotes({"a...a...a"}, "aaa\n"));
    EXPECT_FALSE(quotes({"a...a...a"}, "aa\n"));
    EXPECT_FALSE(quotes({"made ... by you"}, "made at 12:30 by vxclone\n"));
    EXPECT_FALSE(quotes({"made ... by vx"}, "made at 12:30 by vxclone\n"));
    EXPECT_FALSE(quotes({"made ... by"}, "made at\nby\n"));
}

TEST(QuotationTest, dotsAloneStandForAnyLines) {
    EXPECT_TRUE(quotes({"...", "last"}, "last\n"));
    EXPECT_TRUE(quotes({"...", "last"}, "last\nlast\n"));
    EXPECT_TRUE(quotes({"first", "...", "a", "b", "..."}, "first\na\nc\na\nb\n"));
    EXPECT_TRUE(quotes({"...", "..."}, ""));
    EXPECT_FALSE(quotes({"...", "last"}, "last\nmore\n"));
    EXPECT_FALSE(quotes({"first", "...", "a", "b", "..."}, "first\na\nc\nb\n"));
}

TEST(QuotationTest, dotsAloneSayNothing) {
    EXPECT_FALSE(saysSomething({}));
    EXPECT_FALSE(saysSomething({"...", "", "  ... ..."}));
    EXPECT_TRUE(saysSomething({"...", "a"}));
}

}  // namespace
}  // namespace vxtest
