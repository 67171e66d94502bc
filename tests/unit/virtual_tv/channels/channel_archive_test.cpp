#include "virtual_tv/channels/channel_archive.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <functional>
#include <iterator>

#include "tests/unit/virtual_tv/channels/zip_builder.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/channels/channel_json.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/channels/zip_archive.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The tests of the two containers change every byte and try every length; here a sample is enough.
constexpr std::size_t kStep = 7;

/// The cloned data of the channels, and the navigation lists.
struct State {
    Json transponders;
    Json channels;
    Json hotelList;
    int stale = 0;

    bool operator==(const State& other) const {
        return transponders == other.transponders && channels == other.channels &&
               hotelList == other.hotelList && stale == other.stale;
    }
};

class ChannelArchiveTest : public testing::Test {
 protected:
    static State stateOf(const Television& television) {
        const ChannelStore store(television.database());
        const ChannelMap map = store.map().value();
        State state = {transpondersToJson(map.transponders), channelsToJson(map.channels),
                       hotelListToJson(store.hotelList().value()), 0};
        const auto entries = NavigationLists(television.database()).list({}).value();
        for (const NavigationEntry& entry : entries) {
            state.stale += entry.isStale ? 1 : 0;
        }
        return state;
    }

    /// Puts other channels into the package.
    void exportOther() {
        ChannelStore store(other_.database());
        ChannelMap map = store.map().value();
        map.transponders.resize(2);
        map.channels = makeChannels(map.transponders, 3);
        map.channels[1].name = "Zürich \"1\"";
        ASSERT_TRUE(store.replace(map, {{6, "Sechs"}, {1, "Eins"}}));
        ASSERT_TRUE(archiveOf(other_).exportMap(package_));
        ASSERT_TRUE(archiveOf(other_).exportHotelList(package_));
    }

    static ChannelArchive archiveOf(const Television& television) {
        return ChannelArchive(ChannelStore(television.database()));
    }

    void expectRefused(ErrorCode code, const std::string& what) {
        const State before = stateOf(television_);
        const auto done = archiveOf(television_).import(package_);
        ASSERT_FALSE(done) << what;
        EXPECT_EQ(done.error().code, code) << what << ": " << done.error().sentence;
        EXPECT_TRUE(stateOf(television_) == before) << what;
    }

    /// Changes the contents of the members of the package's archive.
    void repack(const std::function<void(ZipMembers&)>& change) {
        ZipMembers members =
            unpackZip(test::readFile(zip_), {"channels.json", "index.json", "transponders.json"}, "zip")
                .value();
        change(members);
        test::writeFile(zip_, packZip(members).value());
    }

    test::TestFolder folder_;
    Television television_ = test::makeTelevision(folder_.path() / "tv");
    Television other_ = test::makeTelevision(folder_.path() / "other");
    const fs::path package_ = folder_.path() / "tvs-chms";
    const fs::path zip_ = package_ / kChannelArchiveFile;
    const fs::path hotel_ = package_ / kHotelListFile;
};

TEST_F(ChannelArchiveTest, importGivesTheTelevisionWhatTheOtherExported) {
    exportOther();
    State expected = stateOf(other_);
    ASSERT_FALSE(stateOf(television_).channels == expected.channels);
    const auto done = archiveOf(television_).import(package_);
    ASSERT_TRUE(done) << done.error().sentence;
    EXPECT_TRUE(stateOf(television_) == expected);
}

TEST_F(ChannelArchiveTest, importMarksTheListsOfChannelsOutOfDate) {
    ASSERT_EQ(stateOf(television_).stale, 0);
    exportOther();
    ASSERT_TRUE(archiveOf(television_).import(package_));
    const auto entries = NavigationLists(television_.database()).list({}).value();
    for (const NavigationEntry& entry : entries) {
        EXPECT_EQ(entry.isStale, entry.mode == 10 || entry.mode == 11) << entry.mode;
    }
    EXPECT_GT(stateOf(television_).stale, 0);
}

TEST_F(ChannelArchiveTest, exportMakesTheFolderAndTakesASlashAtItsEnd) {
    ASSERT_TRUE(archiveOf(television_).exportMap(package_ / ""));
    EXPECT_TRUE(fs::is_regular_file(zip_));
    fs::remove_all(package_);
    ASSERT_TRUE(archiveOf(television_).exportHotelList(package_));
    EXPECT_TRUE(fs::is_regular_file(hotel_));
}

TEST_F(ChannelArchiveTest, exportOfTheSameChannelsGivesTheSameBytes) {
    ASSERT_TRUE(archiveOf(television_).exportMap(package_));
    const std::string first = test::readFile(zip_);
    ASSERT_TRUE(archiveOf(television_).exportMap(package_));
    EXPECT_EQ(test::readFile(zip_), first);
}

TEST_F(ChannelArchiveTest, exportWithoutAPlaceFailsAndLeavesNothing) {
    const auto failsFor = [this](const fs::path& directory, ErrorCode code) {
        for (const auto operation : {&ChannelArchive::exportMap, &ChannelArchive::exportHotelList}) {
            const auto done = (archiveOf(television_).*operation)(directory);
            ASSERT_FALSE(done) << directory;
            EXPECT_EQ(done.error().code, code) << directory;
        }
    };
    failsFor("", ErrorCode::BadArgument);
    failsFor(package_ / "deeper", ErrorCode::Io);
    EXPECT_FALSE(fs::exists(package_));
    test::writeFile(folder_.path() / "file", "mine");
    failsFor(folder_.path() / "file", ErrorCode::Io);
    EXPECT_EQ(test::readFile(folder_.path() / "file"), "mine");
    fs::create_directory(folder_.path() / "elsewhere");
    fs::create_directory_symlink(folder_.path() / "elsewhere", folder_.path() / "link");
    failsFor(folder_.path() / "link", ErrorCode::Io);
    failsFor(folder_.path() / "link" / "", ErrorCode::Io);
    EXPECT_TRUE(fs::is_empty(folder_.path() / "elsewhere"));
}

TEST_F(ChannelArchiveTest, exportThatCannotBeFinishedLeavesTheOldArchiveOrNone) {
    ASSERT_TRUE(archiveOf(television_).exportMap(package_));
    fs::rename(zip_, package_ / "kept");
    fs::create_directory(zip_);
    test::writeFile(zip_ / "in the way", "");
    EXPECT_FALSE(archiveOf(television_).exportMap(package_));
    EXPECT_EQ(std::distance(fs::directory_iterator(package_), fs::directory_iterator()), 2);
}

TEST_F(ChannelArchiveTest, exportThatRunsOutOfRoomLeavesTheOldArchiveAndNothingElse) {
    exportOther();
    const std::string old = test::readFile(zip_);
    fs::remove(hotel_);
    const fs::path television = television_.folder().root();
    const int status = test::inChild([&] {
        const Television again = Television::open(television).value();
        const bool readable = ChannelStore(again.database()).map().has_value();
        constexpr rlimit kNoRoom = {64, 64};
        signal(SIGXFSZ, SIG_IGN);
        return readable && setrlimit(RLIMIT_FSIZE, &kNoRoom) == 0 && !archiveOf(again).exportMap(package_) &&
               !archiveOf(again).exportHotelList(package_) &&
               !archiveOf(again).exportMap(folder_.path() / "new");
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(test::readFile(zip_), old);
    EXPECT_EQ(std::distance(fs::directory_iterator(package_), fs::directory_iterator()), 1);
    EXPECT_FALSE(fs::exists(folder_.path() / "new"));
}

TEST_F(ChannelArchiveTest, importWithoutAnArchiveIsRefused) {
    expectRefused(ErrorCode::NoBackupFile, "no folder");
    fs::create_directory(package_);
    expectRefused(ErrorCode::NoBackupFile, "empty folder");
    EXPECT_EQ(archiveOf(television_).import("").error().code, ErrorCode::BadArgument);
}

TEST_F(ChannelArchiveTest, importOfWhatIsNoPlainFileIsRefusedAtOnce) {
    exportOther();
    for (const fs::path& file : {zip_, hotel_}) {
        const fs::path kept = folder_.path() / "kept";
        fs::rename(file, kept);
        fs::create_symlink(kept, file);
        expectRefused(ErrorCode::NotABackupFile, "link");
        fs::remove(file);
        ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
        expectRefused(ErrorCode::NotABackupFile, "pipe");
        fs::remove(file);
        fs::create_directory(file);
        expectRefused(ErrorCode::NotABackupFile, "folder");
        fs::remove(file);
        fs::rename(kept, file);
    }
    EXPECT_TRUE(archiveOf(television_).import(package_));
}

TEST_F(ChannelArchiveTest, importWithoutAHotelListEmptiesIt) {
    exportOther();
    fs::remove(hotel_);
    ASSERT_FALSE(stateOf(television_).hotelList.empty());
    ASSERT_TRUE(archiveOf(television_).import(package_));
    EXPECT_TRUE(stateOf(television_).hotelList.empty());
    EXPECT_TRUE(stateOf(television_).channels == stateOf(other_).channels);
}

TEST_F(ChannelArchiveTest, damagedHotelListRefusesTheChannelsToo) {
    exportOther();
    const std::string good = test::readFile(hotel_);
    for (std::size_t byte = 0; byte < good.size(); byte += kStep) {
        test::writeFile(hotel_, test::flipped(good, byte * 8));
        const auto done = archiveOf(television_).import(package_);
        EXPECT_FALSE(done) << byte;
    }
    test::writeFile(hotel_, good.substr(0, good.size() - 1));
    expectRefused(ErrorCode::DamagedBackup, "truncated");
    ASSERT_TRUE(
        writeBackupFile(hotel_, "hotel-channels", 1, {{{"channel", 7}, {"name", "no such channel"}}}));
    expectRefused(ErrorCode::BadBackup, "channel of another map");
    ASSERT_TRUE(writeBackupFile(hotel_, "hotel-channels", 2, Json::array()));
    expectRefused(ErrorCode::OtherVersion, "newer");
    ASSERT_TRUE(writeBackupFile(hotel_, "timers", 1, Json::array()));
    expectRefused(ErrorCode::OtherService, "timers");
}

TEST_F(ChannelArchiveTest, changedBytesGiveTheSameChannelsOrNone) {
    exportOther();
    const std::string good = test::readFile(zip_);
    ChannelStore store(television_.database());
    const ChannelMap map = store.map().value();
    ASSERT_TRUE(store.replace(map, {}));
    const State before = stateOf(television_);
    const State wanted = stateOf(other_);
    for (std::size_t byte = 0; byte < good.size(); byte += kStep) {
        test::writeFile(zip_, test::flipped(good, byte * 8 + byte % 8));
        if (!archiveOf(television_).import(package_)) {
            EXPECT_TRUE(stateOf(television_) == before) << byte;
        } else {
            EXPECT_TRUE(stateOf(television_).channels == wanted.channels) << byte;
            EXPECT_TRUE(stateOf(television_).transponders == wanted.transponders) << byte;
            ASSERT_TRUE(store.replace(map, {}));
        }
    }
}

TEST_F(ChannelArchiveTest, truncationIsRefused) {
    exportOther();
    const std::string good = test::readFile(zip_);
    const State before = stateOf(television_);
    for (std::size_t size = 0; size < good.size(); size += kStep) {
        test::writeFile(zip_, good.substr(0, size));
        EXPECT_FALSE(archiveOf(television_).import(package_)) << size;
    }
    EXPECT_TRUE(stateOf(television_) == before);
}

TEST_F(ChannelArchiveTest, memberThatIsNotTheOneOfTheIndexIsRefused) {
    exportOther();
    repack([](ZipMembers& members) { members["channels.json"] = "[]"; });
    expectRefused(ErrorCode::BadBackup, "channels swapped");
}

/// The package's index with one change.
struct BadIndex {
    const char* name;
    std::function<std::string(Json)> text;
    ErrorCode code;
};

TEST_F(ChannelArchiveTest, indexThatCannotBeIsRefused) {
    const std::vector<BadIndex> bad = {
        {"no JSON", [](const Json&) { return std::string("{"); }, ErrorCode::BadBackup},
        {"no object", [](const Json&) { return std::string("[]"); }, ErrorCode::BadBackup},
        {"twin", [](const Json&) { return std::string(R"({"version": 1, "version": 1})"); },
         ErrorCode::BadBackup},
        {"deep", [](const Json&) { return std::string(9, '[') + std::string(9, ']'); }, ErrorCode::BadBackup},
        {"no version", [](Json it) { return it.erase("version"), it.dump(); }, ErrorCode::BadBackup},
        {"newer", [](Json it) { return it["version"] = 2, it.dump(); }, ErrorCode::OtherVersion},
        {"older", [](Json it) { return it["version"] = 0, it.dump(); }, ErrorCode::OtherVersion},
        {"other format", [](Json it) { return it["format"] = "x", it.dump(); }, ErrorCode::BadBackup},
        {"more", [](Json it) { return it["x"] = 1, it.dump(); }, ErrorCode::BadBackup},
        {"other size", [](Json it) { return it["members"]["channels.json"]["bytes"] = 1, it.dump(); },
         ErrorCode::BadBackup},
        {"other sum", [](Json it) { return it["members"]["channels.json"]["sha256"] = "00", it.dump(); },
         ErrorCode::BadBackup},
        {"one missing", [](Json it) { return it["members"].erase("channels.json"), it.dump(); },
         ErrorCode::BadBackup},
    };
    exportOther();
    const std::string good = test::readFile(zip_);
    for (const BadIndex& each : bad) {
        test::writeFile(zip_, good);
        repack([&](ZipMembers& members) {
            members["index.json"] = each.text(Json::parse(members.at("index.json")));
        });
        expectRefused(each.code, each.name);
    }
}

TEST_F(ChannelArchiveTest, televisionWithoutChannelsSaysSo) {
    Profile profile = test::smallProfile();
    profile.services.erase("channels");
    const Television bare = createTelevision(folder_.path() / "bare", profile).value();
    EXPECT_EQ(archiveOf(bare).exportMap(package_).error().code, ErrorCode::UnknownService);
    EXPECT_EQ(archiveOf(bare).exportHotelList(package_).error().code, ErrorCode::UnknownService);
    EXPECT_FALSE(fs::exists(package_));
    exportOther();
    EXPECT_EQ(archiveOf(bare).import(package_).error().code, ErrorCode::UnknownService);
}

}  // namespace
}  // namespace vxtv
