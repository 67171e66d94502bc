// Packages with a valid seal and manifest, from somebody with the keys or from another tool, whose content a
// service must refuse. The report must be true, and the television must keep its data.

#include <gmock/gmock.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cloning_app/package/digest.h"
#include "tests/hostile/damage.h"
#include "tests/hostile/sealing_again.h"
#include "tests/hostile/stage.h"
#include "tests/unit/virtual_tv/channels/zip_builder.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Not;
using vxtv::test::packedAsTold;
using vxtv::test::ZipMember;

constexpr const char* kZip = "tvs-chms/tvs-chms.zip";
constexpr const char* kApplication = "org.vorta.orvel-app";
/// The number of cases of a table that are tried in the short form.
constexpr std::size_t kTriedBehindTheSeal = 4;

struct Hidden {
    std::string name;
    const char* category;
    std::function<void(const fs::path& package)> damage;
};

/// The television's data of a category. Applications are compared one by one, because only one is attacked.
std::string contentOf(const std::string& category) {
    const Stage& stage = Stage::instance();
    const std::string folder = stage.there().folder().string();
    std::string content;
    for (const char* const what : {"channels", "timers"}) {
        content += stage.vxtv({what, folder, "--json"}).output;
    }
    for (const char* const service : {"factory", "av", "home-data", "was", "settings"}) {
        content += stage.vxtv({"services", folder, service, "--json"}).output;
    }
    const fs::path apps = stage.there().folder() / "opt/usr/apps";
    for (const auto& [name, bytes] : snapshot(category == "apps" ? apps / kApplication : apps)) {
        const bool own = name.find("org.vorta.vxhotel-cloning") == 0;
        content += own ? "" : name + "=" + bytes + "\n";
    }
    return content;
}

/// All files of the television's own folders that neither vxclone nor the services own.
std::vector<std::string> strangers() {
    std::vector<std::string> found;
    for (const char* const where : {"tmp", "media", "opt"}) {
        for (const auto& entry :
             fs::recursive_directory_iterator(Stage::instance().there().folder() / where)) {
            if (entry.path().string().find("stranger") != std::string::npos &&
                entry.path().string().find("/Clone/") == std::string::npos) {
                found.push_back(entry.path().string());
            }
        }
    }
    return found;
}

std::vector<std::string> resultsOf(const std::string& category, const std::string& output) {
    std::vector<std::string> results;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const json read = json::parse(line);
        const bool mine = read.value("event", "") == "result" && read.value("category", "") == category;
        if (mine && (category != "apps" || read.value("application", "") == kApplication)) {
            results.push_back(read.at("result"));
        }
    }
    return results;
}

void expectKept(const Hidden& one) {
    const std::string before = contentOf(one.category);
    const Finished restore = Stage::instance().vxclone(
        {"restore", "/media/usb/clone", "--json", "--only", one.category, "--no-safety"});
    EXPECT_FALSE(restore.timedOut);
    EXPECT_EQ(restore.status, 1) << restore.output << restore.errors;
    EXPECT_THAT(resultsOf(one.category, restore.output), Contains(AnyOf("failed", "not-applied", "differs")))
        << restore.output;
    EXPECT_EQ(contentOf(one.category), before);
    EXPECT_THAT(strangers(), testing::IsEmpty());
}

/// Tries the first cases of a table, and the first one also as another tool's package; in the long form, each
/// in both ways. The read-back is essential, because the library always reports a success for channels.
void expectAllKept(const std::vector<Hidden>& cases) {
    const Stage& stage = Stage::instance();
    std::size_t tried = 0;
    for (const Hidden& one : cases) {
        for (const auto& seal : {sealAgain, sealWithoutManifest}) {
            SCOPED_TRACE(one.name + (seal == sealAgain ? "" : ", without a manifest"));
            if (!isLongForm() &&
                (tried >= kTriedBehindTheSeal || (seal == sealWithoutManifest && tried > 1))) {
                continue;
            }
            ++tried;
            stage.layPackage();
            one.damage(stage.package());
            seal(stage.package());
            expectKept(one);
        }
    }
    std::cout << "hostile: " << tried << " packages with good seals, and what they hid was refused\n";
}

/// The members of the good archive, for archives with more or other members.
std::vector<ZipMember> goodMembers() {
    archive* const reader = archive_read_new();
    archive_read_support_format_zip(reader);
    const std::string file = (Stage::instance().good() / kZip).string();
    EXPECT_EQ(archive_read_open_filename(reader, file.c_str(), 1U << 16U), ARCHIVE_OK);
    std::vector<ZipMember> members;
    archive_entry* entry = nullptr;
    while (archive_read_next_header(reader, &entry) == ARCHIVE_OK) {
        std::string content(static_cast<std::size_t>(archive_entry_size(entry)), '\0');
        archive_read_data(reader, content.data(), content.size());
        members.push_back({archive_entry_pathname(entry), content});
    }
    archive_read_free(reader);
    EXPECT_EQ(members.size(), 3U);
    return members;
}

Hidden zipOf(const std::string& name, const std::function<std::string()>& bytes) {
    return {"zip " + name, "channels",
            [bytes](const fs::path& package) { writeFile(package / kZip, bytes()); }};
}

Hidden zipWith(const std::string& name, const ZipMember& more) {
    return zipOf(name, [more] {
        std::vector<ZipMember> members = goodMembers();
        members.push_back(more);
        return packedAsTold(members);
    });
}

Hidden zipInstead(const std::string& name, const ZipMember& member) {
    return zipOf(name, [member] {
        std::vector<ZipMember> members = goodMembers();
        for (ZipMember& one : members) {
            one = one.name == member.name ? member : one;
        }
        return packedAsTold(members);
    });
}

TEST(HostileZipTest, archivesThatLeadElsewhereAreRefusedByTheService) {
    expectAllKept(
        {zipWith("to the parents", {"../../../../../../../../tmp/stranger.txt", "x"}),
         zipInstead("with a link for a member", {"channels.json", "", AE_IFLNK, 0777, "/etc/passwd"}),
         zipWith("with a double", {"channels.json", "{}"}),
         zipWith("to the machine", {"/tmp/stranger.txt", "x"}),
         zipWith("with backslashes", {"..\\..\\stranger.txt", "x"}),
         zipWith("to the parent of the folder", {"../stranger.txt", "x"}),
         zipWith("with a folder", {"stranger/", "", AE_IFDIR, 0755}),
         zipWith("with a link", {"stranger", "", AE_IFLNK, 0777, "/tmp"}),
         zipInstead("with set-uid", {"channels.json", "{}", AE_IFREG, 04755}),
         zipInstead("with set-gid", {"index.json", "{}", AE_IFREG, 02755}),
         zipWith("with a double by case", {"CHANNELS.JSON", "{}"})});
}

TEST(HostileZipTest, bombsAndBrokenArchivesAreRefusedByTheService) {
    const auto good = [] { return readFile(Stage::instance().good() / kZip); };
    expectAllKept(
        {zipInstead("bomb of one member", {"channels.json", std::string(std::size_t{64} << 20U, ' ')}),
         zipOf("bomb of many members",
               [] {
                   std::vector<ZipMember> members = goodMembers();
                   for (int number = 0; number < 20'000; ++number) {
                       members.push_back({std::to_string(number), "x"});
                   }
                   return packedAsTold(members);
               }),
         zipOf("larger than any", [good] { return good() + std::string(std::size_t{3} << 20U, 'x'); }),
         zipOf("of nothing", [] { return std::string(); }),
         zipOf("of text", [] { return std::string("no archive"); }),
         zipOf("cut in its middle", [good] { return good().substr(0, good().size() / 2); }),
         zipOf("without its last byte", [good] { return good().substr(0, good().size() - 1); }),
         zipOf("behind a program", [good] { return "#!/bin/sh\ntouch /tmp/stranger\n" + good(); }),
         zipOf("twice", [good] { return good() + good(); }),
         zipOf("enciphered", [] { return packedAsTold(goodMembers(), "zip:encryption=traditional"); })});
}

/// The archive with another content of a member, and a correct index.
Hidden zipOfJson(const std::string& name, const std::string& member, const std::string& content) {
    return zipOf("of " + name + " in " + member, [member, content] {
        std::vector<ZipMember> members = goodMembers();
        json index;
        for (ZipMember& one : members) {
            one.content = one.name == member ? content : one.content;
            index = one.name == "index.json" ? json::parse(one.content) : index;
        }
        index["members"][member] = {{"bytes", content.size()}, {"sha256", vxclone::digestOf(content)}};
        for (ZipMember& one : members) {
            one.content = one.name == "index.json" ? index.dump() : one.content;
        }
        return packedAsTold(members);
    });
}

TEST(HostileZipTest, archivesWithJsonOfAWrongShapeAreRefusedByTheService) {
    std::vector<Hidden> cases;
    for (const char* const member : {"channels.json", "transponders.json"}) {
        cases.push_back(zipOfJson("nothing", member, ""));
        cases.push_back(zipOfJson("an object", member, R"({"a":1})"));
        cases.push_back(zipOfJson("a list of nulls", member, "[null,null]"));
        cases.push_back(zipOfJson("a deep list", member, deep("[", "]")));
        cases.push_back(zipOfJson("bad UTF-8", member, "[{\"name\":\"\xff\"}]"));
    }
    expectAllKept(cases);
}

Hidden fileOf(const char* category, const char* file, const std::string& name, const std::string& content) {
    return {std::string(file) + " of " + name, category,
            [file, content](const fs::path& package) { writeFile(package / file, content); }};
}

TEST(HostileServicesTest, filesThatNoServiceMadeAreRefusedByTheService) {
    const struct {
        const char* category;
        const char* file;
    } kFiles[] = {{"av", "picture-and-sound.backup"},
                  {"was", "web-applications.backup"},
                  {"settings", "settings-data.backup"},
                  {"timers", "tvtimer/timers.backup"},
                  {"channels", "tvs-chms/hotel-channels.backup"},
                  {"home-data", "org.vorta.homedatacontrol-service/home-data.backup"}};
    std::vector<Hidden> cases;
    for (const auto& [category, file] : kFiles) {
        const std::string good = readFile(Stage::instance().good() / file);
        const std::string strange =
            readFile(Stage::instance().good() / (file == kFiles[0].file ? kFiles[1].file : kFiles[0].file));
        cases.push_back(fileOf(category, file, "another service", strange));
        cases.push_back(fileOf(category, file, "deep JSON", deep("[", "]")));
        if (isLongForm()) {
            cases.push_back(fileOf(category, file, "nothing", ""));
            cases.push_back(fileOf(category, file, "one byte less", good.substr(0, good.size() - 1)));
            cases.push_back(fileOf(category, file, "one byte more", good + "x"));
            cases.push_back(fileOf(category, file, "zeros", std::string(good.size(), '\0')));
        }
    }
    expectAllKept(cases);
}

Hidden appIndex(const std::string& name, const std::function<void(json& index)>& change) {
    return {"application's index: " + name, "apps", [change](const fs::path& package) {
                const fs::path file = package / kApplication / "index.json";
                json index = json::parse(readFile(file));
                change(index);
                writeFile(file, index.dump());
            }};
}

Hidden appFile(const std::string& path) {
    return appIndex("the path " + path, [path](json& index) { index["files"][1]["name"] = path; });
}

TEST(HostileServicesTest, indexesThatLeadElsewhereAreRefusedByTheApplication) {
    expectAllKept({appFile("../../../../../../../../tmp/stranger.png"),
                   appFile("/tmp/stranger.png"),
                   appFile("pictures/../../stranger.png"),
                   appFile("pictures/sub/stranger.png"),
                   appIndex("a size of its own", [](json& index) { index["files"][1]["size"] = 5; }),
                   appIndex("a double", [](json& index) { index["files"].push_back(index["files"][1]); }),
                   appIndex("no database", [](json& index) { index["files"].erase(0); }),
                   {"application's database is none", "apps", [](const fs::path& package) {
                        const fs::path folder = package / kApplication;
                        const std::string text = "no database";
                        writeFile(folder / "hotel.db", text);
                        json index = json::parse(readFile(folder / "index.json"));
                        index["files"][0]["size"] = text.size();
                        index["files"][0]["sha256"] = vxclone::digestOf(text);
                        writeFile(folder / "index.json", index.dump());
                    }}});
}

}  // namespace
}  // namespace vxtest
