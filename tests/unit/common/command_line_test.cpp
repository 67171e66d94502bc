#include "common/command_line.h"

#include <gmock/gmock.h>

namespace vxcommon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A program with every kind of command that our programs have.
class CommandLineTest : public testing::Test {
 protected:
    CommandLineTest() {
        program.formatter(std::make_shared<HelpFormatter>());
        program.set_version_flag("--version", "prog 1.0.0", "Print the version and end");
        program.require_subcommand(0, 1);
        addCopy();
        addPlan();
        addRun();
        finishCommandLine(program, "For programs");
    }

    void addCopy() {
        CLI::App* const copy = program.add_subcommand("copy", "Copy");
        copy->add_option("FROM", from, "From here")->required();
        copy->add_option("TO", to, "To there")->required();
        copy->add_option("--mode", mode, "How")->option_text("NAME|FILE")->required();
        copy->add_option("--only", only, "These alone")->type_name("PART,...");
        copy->add_option("--except", except, "All but these")->type_name("PART,...")->excludes("--only");
        copy->add_option("--times", times, "How often")->option_text("N");
        copy->add_flag("--json", json, "For programs");
    }

    void addPlan() {
        CLI::App* const plan = program.add_subcommand("plan", "Plan");
        plan->add_option("DIR", from, "Where")->required();
        plan->require_subcommand(1);
        CLI::App* const add = plan->add_subcommand("add", "Add");
        add->add_option("CALL", to, "What")->required();
        add->add_option("--nth", times, "Which")->option_text("N");
        CLI::App* const list = plan->add_subcommand("list", "List");
        list->add_flag("--json", json, "For programs");
        list->add_flag("--clear", clear, "Forget")->excludes("--json");
    }

    void addRun() {
        CLI::App* const running = program.add_subcommand("run", "Run");
        running->add_option("DIR", from, "Where")->required();
        running->add_option("--stick", only, "A stick")->type_name("HOSTDIR");
        running->add_option("COMMAND", to, "What")->required();
        running->prefix_command();
    }

    std::string refusalOf(const std::vector<std::string>& words) {
        const auto parsed = parseCommandLine(program, words);
        return parsed ? "parsed" : parsed.error();
    }
    bool isParsed(const std::vector<std::string>& words) {
        json = false;
        const auto parsed = parseCommandLine(program, words);
        EXPECT_TRUE(parsed) << parsed.error();
        return parsed.value_or(false);
    }
    std::string usageOf(const std::vector<std::string>& words) {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(isParsed(words));
        const std::string help = testing::internal::GetCapturedStdout();
        const std::size_t begin = help.find("Usage: ");
        return begin == std::string::npos ? help : help.substr(begin, help.find('\n', begin) - begin);
    }

    CLI::App program{"A program", "prog"};
    std::string from;
    std::string to;
    std::string mode;
    std::string only;
    std::string except;
    int times = 0;
    bool json = false;
    bool clear = false;
};

TEST_F(CommandLineTest, goodLineIsParsed) {
    EXPECT_TRUE(isParsed({"copy", "a", "b", "--mode", "m", "--times=3"}));
    EXPECT_EQ(from + to + mode, "abm");
    EXPECT_EQ(times, 3);
    EXPECT_TRUE(isParsed({"plan", "tv", "add", "x"}));
    EXPECT_TRUE(isParsed({}));
}

TEST_F(CommandLineTest, unknownCommandIsNamedWithTheOneThatIsMeant) {
    EXPECT_EQ(refusalOf({"coyp", "a", "b"}), "there is no command \"coyp\"; did you mean copy?");
    EXPECT_EQ(refusalOf({"COPY"}), "there is no command \"COPY\"; did you mean copy?");
    EXPECT_EQ(refusalOf({"frobnicate"}), "there is no command \"frobnicate\"; see prog --help");
    EXPECT_EQ(refusalOf({""}), "there is no command \"\"; see prog --help");
    EXPECT_EQ(refusalOf({"a\x1b[2J"}), "there is no command \"a\\x1b[2J\"; see prog --help");
}

TEST_F(CommandLineTest, unknownCommandIsNamedWhateverStandsBehindIt) {
    EXPECT_EQ(refusalOf({"rnu", "copy"}), "there is no command \"rnu\"; did you mean run?");
    EXPECT_EQ(refusalOf({"--json", "rnu", "--help"}), "there is no command \"rnu\"; did you mean run?");
    EXPECT_EQ(refusalOf({"rnu", "tv", "--", "ls"}), "there is no command \"rnu\"; did you mean run?");
}

TEST_F(CommandLineTest, unknownCommandBelowAnotherIsNamedWithThatOne) {
    EXPECT_EQ(refusalOf({"plan", "tv", "ad"}), "plan has no command \"ad\"; did you mean add?");
    EXPECT_EQ(refusalOf({"plan", "tv", "destroy"}), "plan has no command \"destroy\"; see prog plan --help");
}

TEST_F(CommandLineTest, unknownOptionIsNamedWithTheOneThatIsMeant) {
    EXPECT_EQ(refusalOf({"copy", "--onyl", "x"}), "copy has no option --onyl; did you mean --only?");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mdoe=secret"}),
              "copy has no option --mdoe; did you mean --mode?");
    EXPECT_EQ(refusalOf({"--jsn", "copy", "a"}), "there is no option --jsn; did you mean --json?");
    EXPECT_EQ(refusalOf({"plan", "tv", "add", "x", "--nht", "2"}),
              "plan add has no option --nht; did you mean --nth?");
    EXPECT_EQ(refusalOf({"copy", "-q"}), "copy has no option -q; see prog copy --help");
}

TEST_F(CommandLineTest, optionBeforeTheCommandThatIsRunIsNotThatOnes) {
    EXPECT_EQ(refusalOf({"run", "tv", "--stik", "x", "--", "ls"}),
              "run has no option --stik; did you mean --stick?");
    EXPECT_EQ(refusalOf({"run", "tv", "ls", "--", "x"}),
              "the following argument was not expected: x; see prog run --help");
    EXPECT_TRUE(isParsed({"run", "tv", "--", "ls", "--stik"}));
}

TEST_F(CommandLineTest, argumentsThatAreNotExpectedAreNamedInTheirOrder) {
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "one", "two", "three"}),
              "the following arguments were not expected: one two three; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "one"}),
              "the following argument was not expected: one; see prog copy --help");
}

TEST_F(CommandLineTest, firstMissingArgumentInTheOrderOfTheLineIsNamed) {
    EXPECT_EQ(refusalOf({"copy"}), "FROM is required; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "--mode", "m"}), "FROM is required; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a"}), "TO is required; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b"}), "--mode NAME|FILE is required; see prog copy --help");
    EXPECT_EQ(refusalOf({"plan"}), "DIR is required; see prog plan --help");
    EXPECT_EQ(refusalOf({"plan", "tv", "add"}), "CALL is required; see prog plan DIR add --help");
    EXPECT_EQ(refusalOf({"run", "tv"}), "COMMAND is required; see prog run --help");
}

TEST_F(CommandLineTest, argumentIsMissingWhereTheNameOfACommandWasTakenForIt) {
    EXPECT_EQ(refusalOf({"plan", "list"}), "DIR is required before list; see prog plan --help");
    EXPECT_EQ(refusalOf({"plan", "add", "x", "--nth", "1"}),
              "DIR is required before add; see prog plan --help");
    EXPECT_TRUE(isParsed({"plan", "list", "list"}));
}

TEST_F(CommandLineTest, missingCommandIsAskedForWithAllThatThereAre) {
    EXPECT_EQ(refusalOf({"plan", "tv"}),
              "a command is missing after plan: add or list; see prog plan --help");
}

TEST_F(CommandLineTest, valueThatIsMissingOrDoesNotFitIsNamed) {
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode"}),
              "--mode needs a value: --mode NAME|FILE; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode="}),
              "--mode needs a value: --mode NAME|FILE; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "--only", "x", "--only", "y"}),
              "--only is given more than once; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "--times", "often"}),
              "\"often\" does not fit --times N; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "--json=maybe"}),
              "--json takes no value; see prog copy --help");
    EXPECT_EQ(refusalOf({"copy", "a", "b", "--mode", "m", "--only", "x", "--except", "y"}),
              "--only excludes --except; see prog copy --help");
}

TEST_F(CommandLineTest, jsonBeforeTheCommandIsTheSameAsBehindIt) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--json", "copy", "a", "b", "--mode", "m"},
          {"copy", "a", "b", "--mode", "m", "--json"},
          {"--json", "copy", "--json", "a", "b", "--mode", "m"},
          {"--json", "plan", "tv", "list"},
          {"plan", "--json", "tv", "list"},
          {"plan", "tv", "--json", "list"}}) {
        EXPECT_TRUE(isParsed(words));
        EXPECT_TRUE(json) << testing::PrintToString(words);
    }
    EXPECT_TRUE(isParsed({"plan", "tv", "list"}));
    EXPECT_FALSE(json);
}

TEST_F(CommandLineTest, jsonBeforeTheCommandExcludesWhatItExcludesBehindIt) {
    EXPECT_EQ(refusalOf({"--json", "plan", "tv", "list", "--clear"}),
              "--json excludes --clear; see prog plan DIR list --help");
}

TEST_F(CommandLineTest, jsonBeforeACommandWithoutItIsRefused) {
    EXPECT_EQ(refusalOf({"--json", "run", "tv", "ls"}), "run has no option --json; see prog run --help");
    EXPECT_EQ(refusalOf({"plan", "tv", "--json", "add", "x"}),
              "plan add has no option --json; see prog plan DIR add --help");
}

TEST_F(CommandLineTest, jsonIsAskedForAnywhereButBehindADoubleDash) {
    EXPECT_TRUE(asksForJson({"copy", "--onyl", "--json"}));
    EXPECT_TRUE(asksForJson({"--json"}));
    EXPECT_FALSE(asksForJson({"run", "tv", "--", "prog", "--json"}));
    EXPECT_FALSE(asksForJson({}));
}

TEST_F(CommandLineTest, usageNamesTheArgumentsInTheirOrder) {
    EXPECT_EQ(usageOf({"--help"}), "Usage: prog [OPTIONS] COMMAND");
    EXPECT_EQ(usageOf({"copy", "--help"}), "Usage: prog copy FROM TO --mode NAME|FILE [OPTIONS]");
    EXPECT_EQ(usageOf({"plan", "tv", "add", "--help"}), "Usage: prog plan DIR add CALL [OPTIONS]");
    EXPECT_EQ(usageOf({"run", "--help"}), "Usage: prog run DIR [OPTIONS] -- COMMAND ...");
    EXPECT_EQ(usageOf({"--version"}), "prog 1.0.0\n");
}

TEST_F(CommandLineTest, helpIsGivenAlsoWhereTheRestOfTheLineIsWrong) {
    EXPECT_EQ(usageOf({"--help", "frobnicate"}), "Usage: prog [OPTIONS] COMMAND");
    EXPECT_EQ(usageOf({"--json", "run", "--help"}), "Usage: prog run DIR [OPTIONS] -- COMMAND ...");
}

TEST(WordsOf, areThoseBehindTheProgramsName) {
    std::string program = "prog";
    std::string word = "copy";
    char* arguments[] = {program.data(), word.data(), nullptr};
    EXPECT_THAT(wordsOf(2, arguments), ElementsAre("copy"));
    EXPECT_THAT(wordsOf(1, arguments), IsEmpty());
    EXPECT_THAT(wordsOf(0, arguments), IsEmpty());
}

}  // namespace
}  // namespace vxcommon
