#include <gmock/gmock.h>

#include "tests/unit/cloning_app/verbs/looking_test.h"

namespace vxclone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ListTest : public LookingTest {
 protected:
    std::string list() { return said(listPackages(folder_.path())); }

    /// The state of the only package that is found.
    std::string state() {
        const auto all = lines(listPackages(folder_.path()));
        EXPECT_EQ(all.size(), 2U);
        return all.front().value("result", "");
    }
};

TEST_F(ListTest, packagesOfAllSticksAreListed) {
    fill(folder_ / "other/second");
    EXPECT_THAT(list(), AllOf(HasSubstr((folder_ / "stick/clone").string()),
                              HasSubstr((folder_ / "other/second").string()), HasSubstr("Room 101"),
                              HasSubstr("VX55R1"), HasSubstr("fits")));
    EXPECT_EQ(status_, 0);
}

TEST_F(ListTest, stateIsWhatCanBeSeenWithoutACopy) {
    EXPECT_EQ(state(), "incomplete");
    EXPECT_THAT(list(), HasSubstr("it lacks factory, av, home-data, was, settings-keys ("));
    writeWholePackage(package_);
    sealFolder(package_);
    EXPECT_EQ(state(), "fits");
    FakeSystemInfo::instance().model = "VX75C2";
    EXPECT_EQ(state(), "does-not-fit");
    EXPECT_THAT(list(), HasSubstr("this television VX75C2, the package VX55R1"));
    writeFile(package_ / "manifest.json", "{");
    EXPECT_EQ(state(), "damaged");
    writeFile(package_ / "manifest.json", R"({"format":"2.0"})");
    EXPECT_EQ(state(), "unreadable");
    FakeSystemInfo::reset();
    std::filesystem::remove(package_ / "manifest.json");
    EXPECT_EQ(state(), "fits");
    std::filesystem::remove(package_ / "ProductCloneInfo.txt");
    EXPECT_EQ(state(), "damaged");
}

TEST_F(ListTest, noLineIsLongerThanTheTerminalAndTheTimeStaysWhole) {
    FakeSystemInfo::instance().model = "VX75C2";
    for (const std::size_t columns : {60U, 80U, 120U}) {
        screen_ = {columns, true, false};
        const std::string text = list();
        EXPECT_LE(widestLine(text), columns) << text;
        EXPECT_THAT(text, AllOf(HasSubstr("2026-03-01"), HasSubstr("12:30 UTC"), HasSubstr("VX75C2")));
    }
}

TEST_F(ListTest, stateHasItsColour) {
    screen_ = {200, true, true};
    EXPECT_THAT(list(), HasSubstr("\x1b[31mfits, is not complete: "));
    writeWholePackage(package_);
    sealFolder(package_);
    EXPECT_THAT(list(), HasSubstr("\x1b[32mfits\x1b[0m"));
    FakeSystemInfo::instance().model = "VX75C2";
    EXPECT_THAT(list(), HasSubstr("\x1b[31mdoes not fit: "));
    writeFile(package_ / "manifest.json", R"({"format":"2.0"})");
    EXPECT_THAT(list(), HasSubstr("\x1b[33munreadable: "));
}

TEST_F(ListTest, packageWithoutASealIsDamaged) {
    std::filesystem::remove(package_ / "validate.txt");
    EXPECT_EQ(state(), "damaged");
    EXPECT_THAT(list(), HasSubstr("seal missing: validate.txt"));
}

TEST_F(ListTest, noPackageIsSaidAndNoFailure) {
    std::filesystem::remove_all(package_);
    writeFile(folder_ / "stick/photos/a.jpg", "x");
    EXPECT_THAT(list(), HasSubstr("There is no package in"));
    EXPECT_EQ(status_, 0);
}

TEST_F(ListTest, onlyTwoLevelsAreLookedInto) {
    fill(folder_ / "a/b/c");
    EXPECT_THAT(list(), Not(HasSubstr("a/b/c")));
}

TEST_F(ListTest, namedFolderMayBeAPackageItself) {
    EXPECT_THAT(said(listPackages(package_.string() + "/")), HasSubstr("fits"));
}

TEST_F(ListTest, linksAndLeftoversAreNotFollowed) {
    std::filesystem::create_directory_symlink(package_, folder_ / "link");
    std::filesystem::rename(package_, folder_ / "stick/.clone.vxclone-old");
    EXPECT_THAT(list(), HasSubstr("There is no package"));
}

TEST_F(ListTest, missingFolderIsAnError) {
    said(listPackages(folder_ / "none"));
    EXPECT_EQ(status_, 6);
}

TEST_F(ListTest, moreFoldersThanAnybodyHasAreCut) {
    std::filesystem::remove_all(package_);
    for (int folder = 0; folder < 2010; ++folder) {
        std::filesystem::create_directory(folder_ / ("f" + std::to_string(folder)));
    }
    EXPECT_THAT(list(), HasSubstr("Only 2000 folders were looked into"));
}

TEST_F(ListTest, folderWithTooManyEntriesIsNamedAsNotLookedInto) {
    const TestFolder sticks;
    std::filesystem::create_directories(sticks / "usb");
    for (int index = 0; index <= 10'000; ++index) {
        writeFile(sticks / "usb" / std::to_string(index), "");
    }
    EXPECT_EQ(said(listPackages(sticks.path())),
              "No package was found in the part of " + sticks.path().string() +
                  " that was looked into.\nNot looked into: " + (sticks / "usb").string() +
                  " holds more than 10000 entries; choose the folder of a clone package.\n");
    fill(sticks / "second/clone");
    EXPECT_THAT(said(listPackages(sticks.path())),
                AllOf(HasSubstr((sticks / "second/clone").string()),
                      HasSubstr("Not looked into: " + (sticks / "usb").string())));
}

TEST_F(ListTest, moreFoldersThanAreLookedIntoAreSaid) {
    const TestFolder sticks;
    for (int index = 0; index <= 2'000; ++index) {
        std::filesystem::create_directories(sticks / std::to_string(index));
    }
    EXPECT_EQ(
        said(listPackages(sticks.path())),
        "No package was found in the part of " + sticks.path().string() +
            " that was looked into.\nOnly 2000 folders were looked into; name a folder of the stick.\n");
}

TEST_F(ListTest, emptyNameIsRefused) {
    EXPECT_EQ(said(listPackages("")),
              "vxclone: the folder's name is empty; name a folder, or leave it out to look in /media\n");
    EXPECT_EQ(status_, 2);
}

}  // namespace
}  // namespace vxclone
