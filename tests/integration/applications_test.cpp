// Applications as real processes: launched by programs in a television, in sessions of their own, and at the
// start of every session.

#include <csignal>
#include <tuple>

#include "tests/integration/clone_fixture.h"
#include "virtual_tv/applications/application_manifest.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kOrvel = "org.vorta.orvel-app";
constexpr const char* kFirstScreen = "org.harbour.firstscreen";
constexpr const char* kPlace = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/";
constexpr const char* kPatience = "5000";

class ApplicationsTest : public CloneTest {
 protected:
    static std::vector<std::string> client(std::vector<std::string> deed) {
        deed.insert(deed.begin(), (toolFolder() / "vx-application-client").string());
        return deed;
    }

    /// What the client says in a session of the television, without the line end.
    std::string inSession(const std::string& television, const std::vector<std::string>& deed) const {
        const Finished finished = run(inTelevision(television, client(deed)));
        EXPECT_EQ(finished.status, 0) << finished.errors;
        return finished.output.substr(0, finished.output.find_last_not_of('\n') + 1);
    }

    /// The answer of the orvel application to a request in a session of its own.
    std::string ask(const std::string& television, const std::string& request,
                    const std::string& patience = kPatience) const {
        fs::create_directories(television + kPlace);
        return inSession(television, {"ask", kOrvel, request, kPlace, patience});
    }
    std::string backUp() const { return ask(first, "request_clone_backup"); }

    /// Copies the data that the first television's applications saved to the second television.
    void carry() const {
        fs::create_directories(second + kPlace);
        fs::copy(first + kPlace, second + kPlace, fs::copy_options::recursive);
    }

    void misbehave(const std::string& television, const std::string& habit) const {
        const fs::path folder = television + "/opt/usr/apps/" + kOrvel;
        auto manifest = vxtv::readManifest(folder);
        ASSERT_TRUE(manifest);
        manifest->arguments = {"--misbehave", habit};
        writeFile(folder / vxtv::kManifestName, vxtv::manifestText(*manifest));
    }

    /// Gives the first television an application with this shell script as its program.
    void install(const std::string& id, const std::string& script, int expected = 0) const {
        const fs::path source = place / ("source-" + id);
        writeFile(source / vxtv::kManifestName, vxtv::manifestText({id, id, "bin/run", {}, false}));
        writeFile(source / "bin/run", script);
        fs::permissions(source / "bin/run", fs::perms::owner_all);
        vxtv({"app", "install", first, source.string()}, expected);
    }

    std::string log(const std::string& television) const { return vxtv({"log", television}).output; }

    /// The application's process number in the list; 0 if it does not run.
    int processOf(const std::string& id) const {
        for (const Json& application : Json::parse(vxtv({"app", "list", first, "--json"}).output)) {
            if (application["id"] == id && !application["process"].is_null()) {
                return application["process"];
            }
        }
        return 0;
    }

    /// The differences of the two televisions in the orvel application.
    Json differences() const {
        Json found = Json::array();
        const Json compared = Json::parse(vxtv({"compare", first, second, "--json"}, 1).output);
        for (const Json& area : compared["areas"]) {
            for (const Json& difference : area["differences"]) {
                if (difference["name"].get<std::string>().rfind(kOrvel, 0) == 0) {
                    found.push_back(difference);
                }
            }
        }
        return found;
    }
};

TEST_F(ApplicationsTest, launchHandsTheBundleOverAndOutputAndEndAreInTheLog) {
    install("org.example.speaker", "#!/bin/sh\necho \"bundle $VXTV_LAUNCH_BUNDLE\"\npwd >&2\nexit 3\n");
    Program follow;
    follow.command = {vxtvProgram(), "log", first, "--follow"};
    RunningProcess follower(follow);
    RunningProcess stayer(inTelevision(
        first,
        {"sh", "-c", client({}).front() + " launch org.example.speaker mode clone; sleep 1000 & wait"}));
    EXPECT_TRUE(follower.waitForOutput("I org.example.speaker: bundle {\"mode\":\"clone\"}"));
    EXPECT_TRUE(follower.waitForOutput("/opt/usr/apps/org.example.speaker\n"));
    EXPECT_TRUE(follower.waitForOutput("I org.example.speaker: ended with status 3"));
}

TEST_F(ApplicationsTest, deathIsSeenAtOnce) {
    const std::string milliseconds = inSession(first, {"killed", kOrvel});
    EXPECT_LT(std::stoi(milliseconds), 100) << milliseconds;
}

TEST_F(ApplicationsTest, unknownAndBadApplicationsAreRefusedEachInItsWay) {
    EXPECT_EQ(inSession(first, {"launch", "../x"}), "-2");
    EXPECT_EQ(inSession(first, {"running", "../x"}), "-2");
    EXPECT_EQ(inSession(first, {"launch", "org.example.none"}), "-3");
    EXPECT_EQ(inSession(first, {"running", "org.example.none"}), "0");
    writeFile(first + "/opt/usr/apps/" + kOrvel + "/app.json", "{");
    EXPECT_EQ(inSession(first, {"launch", kOrvel}), "-4");
    install("org.example.broken", "#!/no/such/interpreter\n");
    EXPECT_EQ(inSession(first, {"launch", "org.example.broken"}), "-5");
    EXPECT_EQ(inSession(first, {"running", "org.example.broken"}), "0");
}

TEST_F(ApplicationsTest, sessionStartsWhatWantsIt) {
    EXPECT_EQ(inSession(first, {"await", kFirstScreen}), "runs");
    EXPECT_EQ(inSession(first, {"running", kOrvel}), "0");
    EXPECT_EQ(processOf(kFirstScreen), 0);
}

TEST_F(ApplicationsTest, applicationEndsWithItsSessionAndLeavesNothing) {
    inSession(first, {"launch", kOrvel});
    EXPECT_EQ(processOf(kOrvel), 0);
    EXPECT_TRUE(snapshot(first + "/run").empty());
}

TEST_F(ApplicationsTest, applicationOfAKilledSessionDoesNotRun) {
    RunningProcess session(inTelevision(first, client({"stay", kOrvel})));
    ASSERT_TRUE(session.waitForOutput("\n"));
    EXPECT_GT(processOf(kOrvel), 0);
    session.signal(SIGKILL);
    session.wait();
    EXPECT_EQ(inSession(first, {"await-end", kOrvel}), "ended");
    EXPECT_GE(std::stoi(inSession(first, {"launch", kOrvel})), 1);
}

TEST_F(ApplicationsTest, twoSessionsHaveOneApplication) {
    RunningProcess session(inTelevision(first, client({"stay", kOrvel})));
    ASSERT_TRUE(session.waitForOutput("\n"));
    const int process = processOf(kOrvel);
    EXPECT_EQ(inSession(first, {"launch", kOrvel}), std::to_string(process));
    EXPECT_EQ(inSession(first, {"running", kOrvel}), "1");
    EXPECT_EQ(inSession(second, {"running", kOrvel}), "0");
}

/// How the session ends that started the applications, and the isolation of the other one.
class EndOfASession : public ApplicationsTest,
                      public testing::WithParamInterface<std::tuple<int, const char*>> {};

TEST_P(EndOfASession, leavesTheOthersTheApplicationsThatItStarted) {
    const auto [signal, isolation] = GetParam();
    RunningProcess starter(inTelevision(first, client({"stay", kOrvel})));
    ASSERT_TRUE(starter.waitForOutput("\n"));
    RunningProcess other(
        inTelevision(first, {"sh", "-c", "echo up; sleep 1000 & wait"}, {"--isolation", isolation}));
    ASSERT_TRUE(other.waitForOutput("up"));
    EXPECT_EQ(inSession(first, {"await", kFirstScreen}), "runs");
    const int orvel = processOf(kOrvel);
    const int firstScreen = processOf(kFirstScreen);
    EXPECT_GT(orvel, 0);
    starter.signal(signal);
    starter.wait();
    EXPECT_EQ(processOf(kOrvel), orvel);
    EXPECT_EQ(processOf(kFirstScreen), firstScreen);
    EXPECT_EQ(backUp(), std::string(kOrvel) + ": success");
    other.signal(SIGTERM);
    other.wait();
    EXPECT_EQ(processOf(kOrvel), 0);
    EXPECT_EQ(processOf(kFirstScreen), 0);
    EXPECT_TRUE(snapshot(first + "/run").empty());
}

INSTANTIATE_TEST_SUITE_P(Each, EndOfASession,
                         testing::Combine(testing::Values(SIGTERM, SIGKILL), testing::Values("user", "real")),
                         [](const auto& tested) {
                             return std::string(std::get<0>(tested.param) == SIGKILL ? "killed_" : "usual_") +
                                    std::get<1>(tested.param);
                         });

TEST_F(ApplicationsTest, startAndStopWorkFromOutside) {
    vxtv({"app", "start", first, kOrvel});
    const int process = processOf(kOrvel);
    EXPECT_GT(process, 0);
    EXPECT_EQ(inSession(first, {"running", kOrvel}), "1");
    EXPECT_NE(vxtv({"app", "start", first, kOrvel}).output.find("runs already"), std::string::npos);
    EXPECT_EQ(backUp(), std::string(kOrvel) + ": success");
    vxtv({"app", "stop", first, kOrvel});
    EXPECT_EQ(processOf(kOrvel), 0);
    EXPECT_NE(vxtv({"app", "stop", first, kOrvel}, 2).errors.find("does not run"), std::string::npos);
}

TEST_F(ApplicationsTest, startOfWhatEverySessionStartsKeepsItRunning) {
    vxtv({"app", "start", first, kFirstScreen});
    const int process = processOf(kFirstScreen);
    EXPECT_GT(process, 0);
    EXPECT_EQ(inSession(first, {"running", kFirstScreen}), "1");
    EXPECT_EQ(processOf(kFirstScreen), process);
    vxtv({"app", "stop", first, kFirstScreen});
    EXPECT_EQ(processOf(kFirstScreen), 0);
}

TEST_F(ApplicationsTest, stopReachesAnApplicationOfAnotherSession) {
    RunningProcess session(inTelevision(first, client({"stay", kOrvel})));
    ASSERT_TRUE(session.waitForOutput("\n"));
    vxtv({"app", "stop", first, kOrvel});
    EXPECT_TRUE(session.waitForOutput("ended"));
}

TEST_F(ApplicationsTest, startOfWhatCannotStartSaysWhy) {
    EXPECT_NE(vxtv({"app", "start", first, "org.example.none"}, 2).errors.find("no application"),
              std::string::npos);
    install("org.example.broken", "#!/no/such/interpreter\n");
    EXPECT_NE(vxtv({"app", "start", first, "org.example.broken"}, 2).errors.find("cannot be started"),
              std::string::npos);
    install("org.example.broken", "#!/bin/sh\n", 2);
}

TEST_F(ApplicationsTest, listShowsWhatTheTelevisionHas) {
    const std::string table = vxtv({"app", "list", first}).output;
    EXPECT_NE(table.find("Harbour Guide"), std::string::npos) << table;
    EXPECT_NE(table.find(kFirstScreen), std::string::npos) << table;
    writeFile(first + "/opt/usr/apps/" + kOrvel + "/app.json", "{");
    const Finished finished = vxtv({"app", "list", first}, 2);
    EXPECT_EQ(finished.output.find("Harbour Guide"), std::string::npos);
    EXPECT_NE(finished.output.find(kFirstScreen), std::string::npos);
}

TEST_F(ApplicationsTest, dataTravelsFromOneTelevisionToTheOther) {
    ASSERT_FALSE(differences().empty());
    ASSERT_EQ(backUp(), std::string(kOrvel) + ": success");
    carry();
    ASSERT_EQ(ask(second, "request_clone_restore"), std::string(kOrvel) + ": success") << log(second);
    EXPECT_EQ(differences(), Json::array());
}

TEST_F(ApplicationsTest, restoreOfAChangedPackageFailsAndChangesNothing) {
    ASSERT_EQ(backUp(), std::string(kOrvel) + ": success");
    carry();
    writeFile(second + kPlace + kOrvel + "/pictures/deck.png", "other");
    const Json before = differences();
    EXPECT_EQ(ask(second, "request_clone_restore"), std::string(kOrvel) + ": fail");
    EXPECT_EQ(differences(), before);
}

struct Habit {
    const char* option;
    const char* answer;    ///< to a backup
    const char* patience;  ///< how long the client waits, milliseconds
    bool hasPackage;
};

class MisbehaviourTest : public ApplicationsTest, public testing::WithParamInterface<Habit> {};

TEST_P(MisbehaviourTest, backupIsAnsweredAsTold) {
    const Habit& habit = GetParam();
    misbehave(first, habit.option);
    EXPECT_EQ(ask(first, "request_clone_backup", habit.patience), habit.answer);
    EXPECT_EQ(fs::exists(first + kPlace + kOrvel), habit.hasPackage);
}

INSTANTIATE_TEST_SUITE_P(Habits, MisbehaviourTest,
                         testing::Values(Habit{"late-port=50", "org.vorta.orvel-app: success", "5000", true},
                                         Habit{"late-reply=20", "org.vorta.orvel-app: success", "5000", true},
                                         Habit{"fail", "org.vorta.orvel-app: fail", "5000", false},
                                         Habit{"wrong-case", "org.vorta.orvel-app: Success", "5000", true},
                                         Habit{"no-entry", "org.vorta.orvel-app: (no entry)", "5000", true},
                                         Habit{"crash-in-backup", "(no reply)", "300", false}),
                         [](const testing::TestParamInfo<Habit>& tested) {
                             std::string name = tested.param.option;
                             name = name.substr(0, name.find('='));
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_F(ApplicationsTest, applicationThatNeverRepliesHasWorkedAllTheSame) {
    misbehave(first, "no-reply");
    EXPECT_EQ(ask(first, "request_clone_backup", "300"), "(no reply)");
}

TEST_F(ApplicationsTest, crashInARestoreLeavesTheDataAndTheNextStartCleansUp) {
    ASSERT_EQ(backUp(), std::string(kOrvel) + ": success");
    carry();
    const Json before = differences();
    misbehave(second, "crash-in-restore");
    EXPECT_EQ(ask(second, "request_clone_restore", "300"), "(no reply)");
    EXPECT_EQ(differences(), before);
    EXPECT_TRUE(fs::exists(second + "/opt/usr/apps/" + kOrvel + "/data.new"));
    misbehave(second, "late-port=0");
    EXPECT_EQ(ask(second, "request_clone_restore"), std::string(kOrvel) + ": success");
    EXPECT_EQ(differences(), Json::array());
    EXPECT_FALSE(fs::exists(second + "/opt/usr/apps/" + kOrvel + "/data.new"));
}

}  // namespace
}  // namespace vxtest
