// The verbs of vxtv as a person types them: their answers, their JSON, and what they refuse.

#include <set>
#include <sstream>

#include "tests/integration/clone_fixture.h"
#include "virtual_tv/calls/contract_calls.h"
#include "virtual_tv/television/television.h"

namespace vxtest {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class CommandsTest : public CloneTest {
 protected:
    json jsonOf(std::vector<std::string> arguments, int expected = 0) const {
        arguments.emplace_back("--json");
        return json::parse(vxtv(std::move(arguments), expected).output);
    }

    /// Expects that a command is refused: status 2, nothing on standard output, and a sentence that contains
    /// the text.
    void refused(std::vector<std::string> arguments, const std::string& text) const {
        const Finished finished = vxtv(std::move(arguments), 2);
        EXPECT_THAT(finished.output, IsEmpty());
        EXPECT_THAT(finished.errors, AllOf(testing::StartsWith("vxtv: "), HasSubstr(text)));
    }
};

TEST_F(CommandsTest, infoNamesIdentityAndFeatures) {
    EXPECT_THAT(vxtv({"info", first}).output, AllOf(HasSubstr("VX55H7"), HasSubstr("VX-H7-EU")));
    const json info = jsonOf({"info", first});
    EXPECT_EQ(info.at("model"), "VX55H7");
    EXPECT_EQ(info.at("tunerType"), 3);
    EXPECT_EQ(info.at("features").at("com.kestrel/featureconf/network.network_support"), 1);
}

TEST_F(CommandsTest, settingsListsAllKeysWithTypeAndValue) {
    const json settings = jsonOf({"settings", first});
    EXPECT_GE(settings.size(), 56U);
    EXPECT_THAT(vxtv({"settings", first}).output, HasSubstr(kWelcome));
}

TEST_F(CommandsTest, getAfterSetIsTheValueAlsoInJson) {
    vxtv({"set", first, kWelcome, "hello"});
    EXPECT_EQ(get(first, kWelcome), "hello");
    EXPECT_EQ(jsonOf({"get", first, kWelcome}).at("value"), "hello");
}

TEST_F(CommandsTest, setThatDoesNotFitIsRefusedAndChangesNothing) {
    const std::string before = vxtv({"settings", first}).output;
    refused({"set", first, "db/no/such/key", "1"}, "db/no/such/key");
    refused({"set", first, "db/sdk/develop/mode", "99999999999"}, "db/sdk/develop/mode");
    refused({"set", first, "db/sdk/develop/mode", "5x"}, "db/sdk/develop/mode");
    refused({"set", first, "db/hotel/dooreye", "7"}, "db/hotel/dooreye");
    EXPECT_EQ(vxtv({"settings", first}).output, before);
}

TEST_F(CommandsTest, folderThatIsNoTelevisionIsRefusedByEveryVerb) {
    for (const std::vector<std::string>& verb : {std::vector<std::string>{"settings", stick},
                                                 {"info", stick},
                                                 {"get", stick, kWelcome},
                                                 {"calls", stick},
                                                 {"log", stick},
                                                 {"fault", stick, "list"},
                                                 {"compare", stick, first},
                                                 {"destroy", stick}}) {
        refused(verb, stick);
    }
}

TEST_F(CommandsTest, compareInJsonNamesEachDifference) {
    vxtv({"set", first, kWelcome, "one"});
    vxtv({"set", second, kWelcome, "two"});
    const json comparison = jsonOf({"compare", first, second}, 1);
    EXPECT_THAT(comparison.dump(), AllOf(HasSubstr(kWelcome), HasSubstr("one"), HasSubstr("two")));
    EXPECT_THAT(vxtv({"compare", first, first}).output, HasSubstr("settings-keys: same"));
}

TEST_F(CommandsTest, compareSummaryIsOneLineAnAreaWithTheSameVerdict) {
    const json whole = jsonOf({"compare", first, second}, 1);
    std::istringstream lines(vxtv({"compare", first, second, "--summary"}, 1).output);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const json& area = whole.at("areas").at(count);
        const std::size_t differing = area.at("differences").size();
        const std::string verdict = differing == 0   ? "same"
                                    : differing == 1 ? "1 differs"
                                                     : std::to_string(differing) + " differ";
        const std::string rest = differing == 0 || area.at("judged") ? "" : " (not judged)";
        EXPECT_EQ(line, area.at("area").get<std::string>() + ": " + verdict + rest);
    }
    EXPECT_EQ(count, whole.at("areas").size());
    EXPECT_THAT(vxtv({"compare", first, first, "--summary"}).output,
                AllOf(HasSubstr("settings-keys: same\n"), testing::Not(HasSubstr("differ"))));
    EXPECT_THAT(vxtv({"compare", first, second, "--summary", "--json"}, 2).output,
                HasSubstr(R"("message":"--summary excludes --json; see vxtv compare --help")"));
}

TEST_F(CommandsTest, compareJudgesWhatNoCloneCarriesOnlyWhenEverythingIsAskedFor) {
    const std::string copy = (place / "copy").string();
    std::filesystem::copy(first, copy, std::filesystem::copy_options::recursive);
    ASSERT_TRUE(vxtv::Television::open(copy).and_then([](const vxtv::Television& television) {
        return television.database().write([](SQLite::Database& connection) -> vxtv::Result<void> {
            connection.exec("DELETE FROM navigation_entries WHERE mode = 10");
            connection.exec("UPDATE sources SET name = 'other'");
            return {};
        });
    }));
    const std::string usual = vxtv({"compare", first, copy, "--summary"}).output;
    EXPECT_THAT(usual, testing::ContainsRegex("\nnavigation-lists: [0-9]+ differ \\(not judged\\)\n"));
    EXPECT_THAT(usual, testing::Not(HasSubstr("sources-kept")));
    const std::string everything = vxtv({"compare", first, copy, "--summary", "--everything"}, 1).output;
    EXPECT_THAT(everything, testing::ContainsRegex("\nnavigation-lists: [0-9]+ differ\n"));
    EXPECT_THAT(everything, testing::ContainsRegex("\nsources-kept: [0-9]+ differ\n"));
    vxtv({"compare", first, first, "--everything"});
}

TEST_F(CommandsTest, faultIsAddedListedAndCleared) {
    vxtv({"fault", first, "add", "vconf_set_int", "--nth", "2", "--from-then-on", "--status", "-4"});
    vxtv({"fault", first, "add", "tvtimer_init", "--delay", "5"});
    EXPECT_THAT(vxtv({"fault", first, "list"}).output,
                AllOf(HasSubstr("vconf_set_int"), HasSubstr("tvtimer_init")));
    const json faults = jsonOf({"fault", first, "list"});
    ASSERT_EQ(faults.size(), 2U);
    EXPECT_EQ(faults[0].at("nth"), 2);
    EXPECT_EQ(faults[0].at("fromThenOn"), true);
    EXPECT_EQ(faults[0].at("status"), -4);
    EXPECT_EQ(faults[1].at("delayMs"), 5);
    vxtv({"fault", first, "clear"});
    EXPECT_EQ(jsonOf({"fault", first, "list"}).size(), 0U);
}

TEST_F(CommandsTest, faultThatMakesNoSenseIsRefused) {
    refused({"fault", first, "add", "no_such_call", "--status", "1"}, "no_such_call");
    refused({"fault", first, "add", "tvtimer_init", "--nth", "0", "--status", "1"}, "0");
    refused({"fault", first, "add", "tvtimer_init"}, "status or a delay");
}

TEST_F(CommandsTest, faultWithAKeyIsListedAndHitsThatSettingAlone) {
    EXPECT_EQ(vxtv({"fault", first, "add", "vconf_get_str", "--key", kWelcome, "--status", "-1"}).output,
              "added fault 1 on vconf_get_str of db/vxhotel/hotelmenu/welcomemessage\n");
    vxtv({"fault", first, "add", "tvtimer_init", "--delay", "5"});
    EXPECT_THAT(vxtv({"fault", first, "list"}).output, HasSubstr(kWelcome));
    const json faults = jsonOf({"fault", first, "list"});
    EXPECT_EQ(faults.at(0).at("key"), kWelcome);
    EXPECT_EQ(faults.at(1).at("key"), nullptr);
    vxclone(first, {"backup", "/media/usb/clone"});
    const json settings = json::parse(package().at("vconf/Vconf.json"));
    EXPECT_EQ(settings.size(), 53U);
    EXPECT_FALSE(settings.contains(kWelcome));
}

TEST_F(CommandsTest, faultWithAKeyThatCannotBeIsRefused) {
    refused({"fault", first, "add", "tvtimer_init", "--key", "x", "--status", "1"},
            "the first argument of tvtimer_init is no text");
    refused({"fault", first, "add", "vconf_get_str", "--key", "db/no/such/key", "--status", "-1"},
            "this television has no setting db/no/such/key");
    refused({"fault", first, "add", "vconf_get_str", "--key", "", "--status", "-1"}, "a key cannot be empty");
    EXPECT_EQ(jsonOf({"fault", first, "list"}).size(), 0U);
}

/// Adds the names of the television's calls, and expects that exactly the calls whose first argument is a
/// text accept a key.
void expectKeysFor(const std::string& television, std::set<std::string>& seen) {
    const auto opened = vxtv::Television::open(television);
    ASSERT_TRUE(opened);
    ASSERT_TRUE(opened->calls().read([&seen](const vxtv::CallRecord& record) {
        const auto call = vxtv::findCall(record.call);
        ASSERT_TRUE(call) << record.call;
        const auto argument = record.arguments.begin();
        const bool isText = argument != record.arguments.end() &&
                            (argument->is_string() || argument.key().ends_with("Length"));
        EXPECT_EQ(call->firstArgument == vxtv::FirstArgument::Text, isText) << record.call;
        seen.insert(record.call);
    }));
}

TEST_F(CommandsTest, keyIsAcceptedForTheCallsOfACloneWhoseFirstArgumentIsAText) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    std::set<std::string> seen;
    expectKeysFor(first, seen);
    expectKeysFor(second, seen);
    EXPECT_GE(seen.size(), 45U);
}

TEST_F(CommandsTest, callsAreListedInJsonAndCleared) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    std::istringstream lines(vxtv({"calls", first, "--json"}).output);
    std::string line;
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_TRUE(json::parse(line).contains("call"));
    vxtv({"calls", first, "--clear"});
    EXPECT_THAT(vxtv({"calls", first, "--json"}).output, IsEmpty());
}

TEST_F(CommandsTest, destroyedTelevisionIsGone) {
    vxtv({"destroy", second});
    EXPECT_FALSE(std::filesystem::exists(second));
    refused({"info", second}, second);
}

TEST_F(CommandsTest, createThatCannotBeIsRefused) {
    refused({"create", first, "--profile", "room-101"}, "already exists");
    refused({"create", (place / "new").string(), "--profile", "nosuch"}, "nosuch");
    refused({"create", (place / "missing/new").string(), "--profile", "room-101"}, "missing");
    EXPECT_FALSE(std::filesystem::exists(place / "new"));
}

TEST_F(CommandsTest, invalidLineIsOneSentenceWithTheNextStep) {
    const auto sentence = [this](std::vector<std::string> arguments) {
        const Finished finished = vxtv(std::move(arguments), 2);
        EXPECT_THAT(finished.output, IsEmpty());
        return finished.errors;
    };
    EXPECT_EQ(sentence({"creat", first}), "vxtv: there is no command \"creat\"; did you mean create?\n");
    EXPECT_EQ(sentence({"fault", first, "ad"}), "vxtv: fault has no command \"ad\"; did you mean add?\n");
    EXPECT_EQ(sentence({"fault", "list"}), "vxtv: DIR is required before list; see vxtv fault --help\n");
    EXPECT_EQ(sentence({"fault", first, "add"}), "vxtv: CALL is required; see vxtv fault DIR add --help\n");
    EXPECT_EQ(sentence({"create", first}), "vxtv: --profile NAME|FILE is required; see vxtv create --help\n");
    EXPECT_EQ(sentence({"run", first, "--stik", "x", "--", "ls"}),
              "vxtv: run has no option --stik; did you mean --stick?\n");
    EXPECT_EQ(sentence({"compare", first, second, "a", "b"}),
              "vxtv: the following arguments were not expected: a b; see vxtv compare --help\n");
}

TEST_F(CommandsTest, mistypedNameIsAskedForByTheOneThatIsMeant) {
    const std::string key = "; did you mean db/hotel/dooreye?\n";
    refused({"get", first, "db/hotel/doreye"}, key);
    refused({"set", first, "dooreye", "off"}, key);
    refused({"fault", first, "add", "vconf_get_int", "--key", "db/hotel/doreye", "--status", "-1"}, key);
    refused({"fault", first, "add", "vconf_gt_int", "--status", "-1"}, "; did you mean vconf_get_int?\n");
    refused({"create", (place / "new").string(), "--profile", "room101"}, "; did you mean room-101?\n");
    refused({"run", first, "--stik", "x"}, "; did you mean --stick?\n");
}

TEST_F(CommandsTest, invalidLineIsAJsonErrorWhereverJsonWasAskedFor) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--json", "fault", first, "lst"}, {"fault", first, "lst", "--json"}}) {
        const Finished finished = vxtv(arguments, 2);
        EXPECT_THAT(finished.errors, IsEmpty());
        EXPECT_EQ(finished.output,
                  R"({"version":1,"event":"error","code":"bad-arguments","exit":2,"message":)"
                  R"("fault has no command \"lst\"; did you mean list?"})"
                  "\n");
    }
    EXPECT_THAT(vxtv({"destroy", first, "--json"}, 2).output,
                HasSubstr(R"("message":"destroy has no option --json; see vxtv destroy --help")"));
    EXPECT_THAT(vxtv({"run", first, "--stik", "--", "ls", "--json"}, 2).output, IsEmpty());
}

TEST_F(CommandsTest, jsonBeforeTheCommandIsTheSameAsBehindIt) {
    EXPECT_EQ(vxtv({"--json", "info", first}).output, vxtv({"info", first, "--json"}).output);
    EXPECT_EQ(vxtv({"--json", "fault", first, "list"}).output, "[]\n");
    EXPECT_EQ(vxtv({"fault", first, "--json", "list"}).output, "[]\n");
    EXPECT_THAT(vxtv({"--json", "destroy", first}, 2).output, HasSubstr("destroy has no option --json"));
}

TEST_F(CommandsTest, helpAndVersionAreNoFailure) {
    EXPECT_THAT(vxtv({"--help"}).output, HasSubstr("create"));
    EXPECT_THAT(vxtv({"--version"}).output, HasSubstr("1.0.0"));
}

}  // namespace
}  // namespace vxtest
