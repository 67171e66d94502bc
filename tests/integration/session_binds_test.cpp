#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/session/mounts.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

/// The order and the targets of a session's binds, without doing them.
class PrepareBinds : public testing::Test {
 protected:
    PrepareBinds() {
        for (const auto& directory : {folder.opt(), folder.tmp(), folder.media(), folder.run()}) {
            fs::create_directory(directory);
        }
    }

    static std::vector<fs::path> targets(const Result<std::vector<Bind>>& binds) {
        std::vector<fs::path> all;
        if (binds) {
            for (const auto& bind : *binds) all.push_back(bind.target);
        }
        return all;
    }

    vxtest::TemporaryDirectory place;
    Folder folder{place.path()};
    EntryRecord record{folder};
};

TEST_F(PrepareBinds, coversTheRootsThenSticksThenExposes) {
    const auto binds =
        prepareBinds(folder, {{"/srv", "blue", true}}, {{"/tmp/need", true}, {"/usr", true}}, record);
    EXPECT_THAT(targets(binds), testing::ElementsAre("/opt", "/tmp", "/media", "/media/blue", "/tmp/need"));
    EXPECT_TRUE((*binds)[3].readOnly);
    EXPECT_TRUE(fs::is_directory(folder.tmp() / "need"));
    EXPECT_TRUE(fs::is_directory(folder.media() / "blue"));
}

TEST_F(PrepareBinds, leavesOutAnOptionalNeedThatTheTelevisionHas) {
    fs::create_directory(folder.opt() / "usr");
    const auto binds = prepareBinds(folder, {}, {{"/opt/usr", false}}, record);
    EXPECT_THAT(targets(binds), testing::ElementsAre("/opt", "/tmp", "/media"));
}

TEST_F(PrepareBinds, usesAnEmptyDirectoryOfTheTelevisionForARequiredNeed) {
    fs::create_directory(folder.opt() / "tree");
    const auto binds = prepareBinds(folder, {}, {{"/opt/tree", true}}, record);
    EXPECT_THAT(targets(binds), testing::Contains("/opt/tree"));
    EXPECT_FALSE(record.holds("opt/tree"));
}

TEST_F(PrepareBinds, refusesARequiredNeedThatTheTelevisionHasFilled) {
    vxtest::writeFile(folder.opt() / "tree/file", "");
    const auto binds = prepareBinds(folder, {}, {{"/opt/tree", true}}, record);
    ASSERT_FALSE(binds);
    EXPECT_EQ(binds.error().code, ErrorCode::AlreadyExists);
}

TEST_F(PrepareBinds, takesWhatAnotherSessionMadeAsFree) {
    ASSERT_TRUE(record.makeDirectory("tmp/a/b"));
    const auto binds = prepareBinds(folder, {}, {{"/tmp/a", false}}, record);
    EXPECT_THAT(targets(binds), testing::Contains("/tmp/a"));
}

}  // namespace
}  // namespace vxtv
