#include "virtual_tv/services/timer_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/base/backup_file.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class TimerStoreTest : public testing::Test {
 protected:
    static Json timersOf(const Television& television) {
        return timersToJson(TimerStore(television.database()).list().value());
    }

    void expectRefused(ErrorCode code, const std::string& what) {
        const auto done = timers_.importFrom(folder_.path());
        ASSERT_FALSE(done) << what;
        EXPECT_EQ(done.error().code, code) << what << ": " << done.error().sentence;
        EXPECT_EQ(timersOf(television_), before_) << what;
    }

    void pack(const Json& timers) { ASSERT_TRUE(writeBackupFile(file_, "timers", 1, timers)); }

    static Json recording() {
        return {{"id", 3},           {"kind", "recording"}, {"start", "2028-02-29T23:59"}, {"minutes", 1440},
                {"repeat", "daily"}, {"channel", 17},       {"title", "Späte \"Show\""}};
    }

    test::TestFolder folder_;
    const Television television_ = test::makeTelevision(folder_.path() / "tv");
    TimerStore timers_{television_.database()};
    const Json before_ = timersOf(television_);
    const fs::path file_ = folder_.path() / kTimerFile;
};

TEST_F(TimerStoreTest, importGivesTheTelevisionWhatTheOtherExported) {
    const Television other = test::makeTelevision(folder_.path() / "other");
    pack(Json::array({recording()}));
    ASSERT_TRUE(TimerStore(other.database()).importFrom(folder_.path()));
    ASSERT_NE(timersOf(other), before_);
    fs::remove(file_);
    ASSERT_TRUE(TimerStore(other.database()).exportTo(folder_.path() / ""));
    ASSERT_TRUE(timers_.importFrom(folder_.path()));
    EXPECT_EQ(timersOf(television_), timersOf(other));
    EXPECT_EQ(timersOf(television_), Json::array({recording()}));
}

TEST_F(TimerStoreTest, noTimersTravelToo) {
    pack(Json::array());
    ASSERT_TRUE(timers_.importFrom(folder_.path()));
    EXPECT_EQ(timersOf(television_), Json::array());
}

TEST_F(TimerStoreTest, everyChangedByteIsRefused) {
    ASSERT_TRUE(timers_.exportTo(folder_.path()));
    const std::string good = test::readFile(file_);
    for (std::size_t byte = 0; byte < good.size(); ++byte) {
        test::writeFile(file_, test::flipped(good, byte * 8 + byte % 8));
        EXPECT_FALSE(timers_.importFrom(folder_.path())) << byte;
    }
    EXPECT_EQ(timersOf(television_), before_);
}

TEST_F(TimerStoreTest, everyTruncationIsRefused) {
    ASSERT_TRUE(timers_.exportTo(folder_.path()));
    const std::string good = test::readFile(file_);
    for (std::size_t size = 0; size < good.size(); ++size) {
        test::writeFile(file_, good.substr(0, size));
        EXPECT_FALSE(timers_.importFrom(folder_.path())) << size;
    }
    EXPECT_EQ(timersOf(television_), before_);
}

TEST_F(TimerStoreTest, fileOfAnotherKindIsRefused) {
    expectRefused(ErrorCode::NoBackupFile, "missing");
    ASSERT_TRUE(writeBackupFile(file_, "timers", 2, Json::array()));
    expectRefused(ErrorCode::OtherVersion, "newer");
    ASSERT_TRUE(writeBackupFile(file_, "hotel-channels", 1, Json::array()));
    expectRefused(ErrorCode::OtherService, "another service's");
    fs::remove(file_);
    fs::create_symlink("elsewhere", file_);
    expectRefused(ErrorCode::NotABackupFile, "link");
    fs::remove(file_);
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    expectRefused(ErrorCode::NotABackupFile, "pipe");
}

TEST_F(TimerStoreTest, timersThatCannotBeAreRefused) {
    const std::vector<std::pair<const char*, std::function<void(Json&)>>> damages = {
        {"missing member", [](Json& it) { it.erase("title"); }},
        {"strange member", [](Json& it) { it["more"] = 1; }},
        {"kind", [](Json& it) { it["kind"] = "reminder"; }},
        {"repeat", [](Json& it) { it["repeat"] = "hourly"; }},
        {"id zero", [](Json& it) { it["id"] = 0; }},
        {"id as text", [](Json& it) { it["id"] = "3"; }},
        {"no length", [](Json& it) { it["minutes"] = 0; }},
        {"too long", [](Json& it) { it["minutes"] = 1441; }},
        {"recording without channel", [](Json& it) { it["channel"] = 0; }},
        {"negative channel", [](Json& it) { it["channel"] = -1; }},
        {"empty title", [](Json& it) { it["title"] = ""; }},
        {"title that steers a terminal", [](Json& it) { it["title"] = "\x1b[2J"; }},
        {"day that is none", [](Json& it) { it["start"] = "2027-02-29T20:15"; }},
        {"month that is none", [](Json& it) { it["start"] = "2027-13-01T20:15"; }},
        {"month zero", [](Json& it) { it["start"] = "2027-00-01T20:15"; }},
        {"hour that is none", [](Json& it) { it["start"] = "2027-01-01T24:00"; }},
        {"minute that is none", [](Json& it) { it["start"] = "2027-01-01T20:60"; }},
        {"no year", [](Json& it) { it["start"] = "0000-01-01T20:15"; }},
        {"other shape", [](Json& it) { it["start"] = "2027-01-01 20:15"; }},
        {"seconds", [](Json& it) { it["start"] = "2027-01-01T20:15:00"; }},
    };
    for (const auto& [name, damage] : damages) {
        Json timer = recording();
        damage(timer);
        pack(Json::array({timer}));
        expectRefused(ErrorCode::BadBackup, name);
    }
    pack(Json::array({recording(), recording()}));
    expectRefused(ErrorCode::BadBackup, "id twice");
    pack(recording());
    expectRefused(ErrorCode::BadBackup, "no array");
    Json many = Json::array();
    for (int id = 1; id <= 201; ++id) {
        many.push_back(recording());
        many.back()["id"] = id;
    }
    pack(many);
    expectRefused(ErrorCode::BadBackup, "too many");
}

TEST_F(TimerStoreTest, profileWithABadTimerMakesNoTelevision) {
    Profile profile = test::smallProfile();
    profile.file = folder_.path() / "profile.json";
    profile.services.at("timers")[0]["start"] = "tomorrow";
    const auto television = createTelevision(folder_.path() / "new", profile);
    ASSERT_FALSE(television);
    EXPECT_NE(television.error().sentence.find("services > timers > entry 1 > start"), std::string::npos)
        << television.error().sentence;
}

TEST_F(TimerStoreTest, televisionWithoutTimersSaysSo) {
    Profile profile = test::smallProfile();
    profile.services.erase("timers");
    const Television bare = createTelevision(folder_.path() / "bare", profile).value();
    EXPECT_EQ(TimerStore(bare.database()).exportTo(folder_.path()).error().code, ErrorCode::UnknownService);
    EXPECT_FALSE(fs::exists(file_));
    pack(Json::array());
    EXPECT_EQ(TimerStore(bare.database()).importFrom(folder_.path()).error().code, ErrorCode::UnknownService);
}

TEST_F(TimerStoreTest, exportIntoAFolderThatIsMissingFails) {
    EXPECT_EQ(timers_.exportTo(folder_.path() / "missing").error().code, ErrorCode::Io);
}

}  // namespace
}  // namespace vxtv
