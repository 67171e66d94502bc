// Entries that no package contains, at every place of a package.

#include <gtest/gtest.h>
#include <sys/mount.h>

#include "tests/hostile/damage.h"
#include "tests/hostile/refusals.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNotAPackage = "not-a-package";
constexpr const char* kUnsafe = "unsafe-entry";

TEST(HostileEntriesTest, linksAndSpecialFilesInEveryPlaceAreRefusedByName) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.good())) {
        for (const NamedImpostor& impostor : specialImpostors()) {
            cases.push_back({std::string(impostor.name) + " for " + entry,
                             [entry, kind = impostor.kind](const fs::path& package) {
                                 return replaceBy(package / entry, kind, Stage::instance().bait());
                             },
                             kUnsafe, "clone/" + entry + " is a link or a special file"});
        }
    }
    expectRefusals(cases);
}

TEST(HostileEntriesTest, specialFilesBesideTheOthersAreRefusedByName) {
    std::vector<Case> cases;
    for (const char* const entry : {"added", "manifest.json.aside", "vconf/added", "tvs-chms/added"}) {
        for (const NamedImpostor& impostor : specialImpostors()) {
            cases.push_back({std::string(impostor.name) + " at " + entry,
                             [entry, kind = impostor.kind](const fs::path& package) {
                                 return replaceBy(package / entry, kind, Stage::instance().bait());
                             },
                             kUnsafe, std::string("clone/") + entry});
        }
    }
    // An inner link needs an existing entry as its target.
    std::erase_if(cases, [](const Case& one) { return one.name.find("inner") != std::string::npos; });
    expectRefusals(cases);
}

/// The error code of the first check that finds a folder in place of this file.
std::string_view codeForFolderInPlaceOf(const std::string& file) {
    return file == "ProductCloneInfo.txt" || file == "manifest.json" ? kUnsafe : kAltered;
}

TEST(HostileEntriesTest, foldersForFilesAndFilesForFoldersAreRefused) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.good())) {
        const bool folder = fs::is_directory(stage.good() / entry);
        cases.push_back({(folder ? "file for folder " : "folder for file ") + entry,
                         [entry, folder](const fs::path& package) {
                             return replaceBy(package / entry, folder ? Impostor::File : Impostor::Folder,
                                              {});
                         },
                         folder ? kAltered : codeForFolderInPlaceOf(entry), entry});
    }
    expectRefusals(cases);
}

TEST(HostileEntriesTest, whatIsNoFolderInThePackagesPlaceIsRefused) {
    std::vector<Case> cases;
    for (const NamedImpostor& impostor : specialImpostors()) {
        cases.push_back({std::string(impostor.name) + " for the package",
                         [kind = impostor.kind](const fs::path& package) {
                             return replaceBy(package, kind, Stage::instance().good());
                         },
                         kNotAPackage, "clone is "});
    }
    cases.push_back({"a file for the package",
                     [](const fs::path& package) { return replaceBy(package, Impostor::File, {}); },
                     kNotAPackage, "is not a folder"});
    cases.push_back({"no package", [](const fs::path& package) { return fs::remove_all(package) > 0; },
                     kNotAPackage, "does not exist"});
    cases.push_back(
        {"an empty package",
         [](const fs::path& package) { return fs::remove_all(package) > 0 && fs::create_directory(package); },
         kNotAPackage, "is empty"});
    expectRefusals(cases);
}

TEST(HostileEntriesTest, anotherFileSystemInThePackageIsRefused) {
    Stage& stage = Stage::instance();
    stage.layPackage();
    const fs::path mounted = stage.package() / "logo";
    ASSERT_EQ(mount("none", mounted.c_str(), "tmpfs", 0, "size=1m"), 0);
    const FileTree before = stage.here().state();
    const Outcome outcome = stage.restoreHere();
    umount(mounted.c_str());
    EXPECT_EQ(outcome.code, kUnsafe) << outcome.message;
    EXPECT_NE(outcome.message.find("logo is another file system"), std::string::npos) << outcome.message;
    EXPECT_EQ(stage.here().state(), before);
}

/// Names that are dangerous in a shell, on a terminal, in a path or in JSON.
std::vector<std::string> dangerousNames() {
    return {"..added",
            "...",
            "a..b",
            "-rf",
            "--help",
            "*",
            "new\nline",
            "tab\tbed",
            "\r",
            "\"quoted\"",
            "'",
            "back\\slash",
            "$(touch bait)",
            "`touch bait`",
            ";reboot;",
            "|cat",
            "%s%n%n",
            "\x1b[2J\x1b[H",
            "\x7f",
            " ",
            "~",
            "\xff\xfe",
            "\xc0\xaf",
            "\xed\xa0\x80",
            "\xe2\x80\xae"
            "gnp.exe",
            "cafe\xcc\x81",
            "C:\\autoexec",
            "NUL",
            "con.txt",
            "validate_temp.txt",
            "validate.vxclone-new",
            std::string(255, 'n'),
            std::string(254, 'n') + "\xff"};
}

/// The expected text for an added file of that name: the name if it is shown unchanged, otherwise nothing.
std::string partOfName(const std::string& name) {
    const bool plain =
        name.size() < 40 && name.find_first_not_of("abcdefghijklmnopqrstuvwxyz.-*_ ~") == std::string::npos;
    return plain ? name : "";
}

TEST(HostileEntriesTest, addedFilesAndFoldersOfDangerousNamesAreRefused) {
    std::vector<Case> cases;
    for (const std::string& name : dangerousNames()) {
        for (const std::string folder : {"", "VXHotel", "org.vorta.orvel-app/pictures"}) {
            cases.push_back({"file " + folder + "/" + name,
                             [folder, name](const fs::path& package) {
                                 writeFile(package / folder / name, "x");
                                 return true;
                             },
                             kAltered, partOfName(name)});
        }
        cases.push_back({"folder " + name,
                         [name](const fs::path& package) { return fs::create_directory(package / name); },
                         kAltered, partOfName(name)});
    }
    expectRefusals(cases);
}

TEST(HostileEntriesTest, doublesByCaseAndRenamedFilesAreRefusedByName) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.good())) {
        std::string doubled = entry;
        doubled.back() = static_cast<char>(std::toupper(static_cast<unsigned char>(doubled.back())));
        cases.push_back({"double by case " + doubled,
                         [entry, doubled](const fs::path& package) {
                             fs::copy(package / entry, package / doubled, fs::copy_options::recursive);
                             return true;
                         },
                         kAltered, doubled});
        if (entry == "ProductCloneInfo.txt" || entry == "validate.txt" || entry == "manifest.json") {
            continue;
        }
        cases.push_back({"renamed " + entry,
                         [entry, doubled](const fs::path& package) {
                             fs::rename(package / entry, package / doubled);
                             return true;
                         },
                         kAltered, doubled});
    }
    expectRefusals(cases);
}

}  // namespace
}  // namespace vxtest
