#include "cloning_app/support/support_bundle.h"

#include <archive.h>
#include <archive_entry.h>
#include <gmock/gmock.h>

#include <memory>

#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/fake_system_info.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kPin = "4711";

/// The files of an archive, read with another common library.
std::map<std::string, std::string> contentOfTar(const std::string& tar) {
    std::map<std::string, std::string> files;
    const std::unique_ptr<archive, int (*)(archive*)> reader(archive_read_new(), archive_read_free);
    archive_read_support_format_tar(reader.get());
    EXPECT_EQ(archive_read_open_memory(reader.get(), tar.data(), tar.size()), ARCHIVE_OK);
    for (archive_entry* entry = nullptr; archive_read_next_header(reader.get(), &entry) == ARCHIVE_OK;) {
        std::string& content = files[archive_entry_pathname(entry)];
        content.resize(static_cast<std::size_t>(archive_entry_size(entry)));
        EXPECT_EQ(archive_read_data(reader.get(), content.data(), content.size()),
                  static_cast<la_ssize_t>(content.size()));
    }
    return files;
}

class SupportBundleTest : public testing::Test {
 protected:
    SupportBundleTest() {
        FakeSettingsStore::instance().reset();
        FakeSystemInfo::reset();
        FakeSettingsStore::instance().set(kPinSetting, std::string(kPin));
    }

    std::map<std::string, std::string> bundle(const std::string& log = "") const {
        const auto tar =
            bundleFiles({folder_.path(), log}, redactorOfTelevision()).and_then([](const auto& files) {
                return tarOf(files, 1'800'000'000);
            });
        EXPECT_TRUE(tar) << tar.error().sentence;
        return tar ? contentOfTar(*tar) : std::map<std::string, std::string>();
    }

    TestFolder folder_;
};

TEST_F(SupportBundleTest, bundleHoldsVersionTelevisionResultsAndLastRun) {
    const auto files = bundle();
    ASSERT_EQ(files.size(), 4U);
    EXPECT_THAT(files.at("vxclone-support/versions.txt"), HasSubstr("vxclone 1."));
    EXPECT_THAT(files.at("vxclone-support/television.txt"), HasSubstr("model: "));
    EXPECT_THAT(files.at("vxclone-support/results.txt"), HasSubstr("VXCLONE_AV_SETTINGS-FAIL"));
    EXPECT_THAT(files.at("vxclone-support/last-run.txt"), HasSubstr("No run is recorded."));
}

TEST_F(SupportBundleTest, pinInResultsAndInTheLogIsInNoFile) {
    FakeSettingsStore::instance().set(kResultKey, std::string("PIN 4711\n"));
    writeFile(folder_ / "log", "set changepin to \"4711\" done\n4711");
    const auto files = bundle((folder_ / "log").string());
    EXPECT_EQ(files.at("vxclone-support/log.txt"), "set changepin to \"***\" done\n***");
    for (const auto& [name, content] : files) {
        EXPECT_THAT(content, Not(HasSubstr(kPin))) << name;
    }
}

TEST_F(SupportBundleTest, logThatIsNotThereIsAnError) {
    EXPECT_FALSE(bundleFiles({folder_.path(), (folder_ / "none").string()}, Redactor({})));
}

TEST_F(SupportBundleTest, longLogIsItsEnd) {
    writeFile(folder_ / "log", std::string(5U << 20U, 'a') + "the end");
    const auto files = bundle((folder_ / "log").string());
    EXPECT_EQ(files.at("vxclone-support/log.txt").size(), 4U << 20U);
    EXPECT_THAT(files.at("vxclone-support/log.txt"), testing::EndsWith("the end"));
}

TEST_F(SupportBundleTest, damagedRecordIsSaidInItsPlace) {
    writeFile(folder_ / "run.json", "{");
    EXPECT_THAT(bundle().at("vxclone-support/last-run.txt"), HasSubstr("cannot be understood"));
}

TEST_F(SupportBundleTest, fileThatIsThereIsLeftAlone) {
    writeFile(folder_ / "file", "mine");
    const auto written = writeNewFile((folder_ / "file").string(), "bundle");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::FileExists);
    EXPECT_EQ(readFile(folder_ / "file"), "mine");
}

TEST_F(SupportBundleTest, folderThatIsNotThereIsNamed) {
    const auto written = writeNewFile((folder_ / "no/file").string(), "bundle");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::StickMissing);
}

TEST(Redactor, shortSecretIsReplacedOnlyWhereItStandsAlone) {
    const Redactor redactor({"12"});
    EXPECT_EQ(redactor.clean("12 of 120, at 12:30; 312"), "*** of 120, at ***:30; 312");
}

TEST(Redactor, secretWithSpecialCharactersIsFoundInJsonToo) {
    const Redactor redactor({"a\"b\\c"});
    EXPECT_EQ(redactor.clean(R"({"pin": "a\"b\\c"} a"b\c)"), R"({"pin": "***"} ***)");
}

TEST(Redactor, emptySecretReplacesNothing) {
    EXPECT_EQ(Redactor({""}).clean("text"), "text");
}

}  // namespace
}  // namespace vxclone
