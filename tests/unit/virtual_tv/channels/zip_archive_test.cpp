#include "virtual_tv/channels/zip_archive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/unit/virtual_tv/channels/zip_builder.h"
#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

using test::packedAsTold;
using test::ZipMember;

const std::vector<std::string_view> kWanted = {"a.json", "b.json"};

Result<ZipMembers> unpacked(const std::string& archive) {
    return unpackZip(archive, kWanted, "it.zip");
}

void expectRefused(const std::string& archive, ErrorCode code, const char* what) {
    const auto members = unpacked(archive);
    ASSERT_FALSE(members) << what;
    EXPECT_EQ(members.error().code, code) << what << ": " << members.error().sentence;
    EXPECT_NE(members.error().sentence.find("it.zip"), std::string::npos) << what;
}

std::string noise(std::size_t size) {
    std::mt19937 generator(1);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(byte(generator)); });
    return bytes;
}

TEST(ZipArchive, membersComeBackAsTheyWerePacked) {
    const ZipMembers members = {{"a.json", std::string(100'000, 'x') + noise(100'000)}, {"b.json", ""}};
    const auto archive = packZip(members);
    ASSERT_TRUE(archive) << archive.error().sentence;
    const auto read = unpacked(*archive);
    ASSERT_TRUE(read) << read.error().sentence;
    EXPECT_EQ(*read, members);
}

TEST(ZipArchive, packingOfMoreThanCanBeUnpackedIsRefused) {
    for (const std::string& content : {noise(kLargestZip + 1), std::string(kLargestZipMember, ' ')}) {
        const auto archive = packZip({{"a.json", content}});
        ASSERT_FALSE(archive);
        EXPECT_EQ(archive.error().code, ErrorCode::BadArgument);
    }
}

TEST(ZipArchive, sameMembersGiveTheSameBytes) {
    const ZipMembers members = {{"a.json", "one"}, {"b.json", "two"}};
    EXPECT_EQ(packZip(members).value(), packZip(members).value());
}

TEST(ZipArchive, storedMembersAreTaken) {
    const auto read = unpacked(packedAsTold({{"a.json", "one"}, {"b.json", "two"}}, "zip:compression=store"));
    ASSERT_TRUE(read) << read.error().sentence;
    EXPECT_EQ(read->at("b.json"), "two");
}

TEST(ZipArchive, namesThatDoNotBelongThereAreRefused) {
    for (const char* name : {"../b.json", "/b.json", "./b.json", "x/b.json", "B.JSON", "b.json ", "..",
                             "b.json/../b.json", "C:\\b.json"}) {
        expectRefused(packedAsTold({{"a.json", "one"}, {name, "two"}}), ErrorCode::BadBackup, name);
    }
}

TEST(ZipArchive, memberTwiceIsRefused) {
    expectRefused(packedAsTold({{"a.json", "one"}, {"a.json", "two"}}), ErrorCode::BadBackup, "twice");
}

TEST(ZipArchive, anotherCountOfMembersIsRefused) {
    expectRefused(packedAsTold({{"a.json", "one"}}), ErrorCode::NotABackupFile, "one too few");
    expectRefused(packedAsTold({{"a.json", "one"}, {"b.json", "two"}, {"c.json", "three"}}),
                  ErrorCode::NotABackupFile, "one too many");
    expectRefused(packedAsTold({}), ErrorCode::NotABackupFile, "none");
    const std::vector<ZipMember> many(5000, {"a.json", ""});
    expectRefused(packedAsTold(many), ErrorCode::NotABackupFile, "5,000");
}

TEST(ZipArchive, whatIsNoPlainFileIsRefused) {
    expectRefused(packedAsTold({{"a.json", "one"}, {"b.json", "", AE_IFLNK, 0777, "/etc/passwd"}}),
                  ErrorCode::BadBackup, "link");
    expectRefused(packedAsTold({{"a.json", "one"}, {"b.json", "", AE_IFDIR, 0755, ""}}), ErrorCode::BadBackup,
                  "folder");
    for (const unsigned mode : {04755U, 02755U, 01755U}) {
        expectRefused(packedAsTold({{"a.json", "one"}, {"b.json", "two", AE_IFREG, mode, ""}}),
                      ErrorCode::BadBackup, "mode");
    }
}

TEST(ZipArchive, encipheredMemberIsRefused) {
    for (const char* way : {"zip:encryption=traditional", "zip:encryption=aes256"}) {
        expectRefused(packedAsTold({{"a.json", "one"}, {"b.json", "two"}}, way), ErrorCode::BadBackup, way);
    }
}

TEST(ZipArchive, bombIsRefusedBeforeItIsUnpacked) {
    const std::string bomb = packedAsTold({{"a.json", std::string(16U << 20U, ' ')}, {"b.json", ""}});
    ASSERT_LT(bomb.size(), kLargestZip);
    expectRefused(bomb, ErrorCode::BadBackup, "bomb");
    const std::string steep = packedAsTold({{"a.json", std::string(kLargestZipMember, ' ')}, {"b.json", ""}});
    expectRefused(steep, ErrorCode::BadBackup, "ratio");
    const std::string large = packedAsTold(
        {{"a.json", noise(kLargestZip / 4) + std::string(kLargestZipMember, ' ')}, {"b.json", ""}});
    expectRefused(large, ErrorCode::BadBackup, "member's size");
    expectRefused(std::string(kLargestZip + 1, 'P'), ErrorCode::NotABackupFile, "archive's size");
}

TEST(ZipArchive, bytesBeforeOrBehindOrInARemarkAreRefused) {
    const std::string good = packZip({{"a.json", "one"}, {"b.json", "two"}}).value();
    expectRefused("x" + good, ErrorCode::NotABackupFile, "before");
    expectRefused(good + "x", ErrorCode::NotABackupFile, "behind");
    expectRefused(good + good, ErrorCode::NotABackupFile, "twice");
    std::string remark = good + "x";
    remark[good.size() - 2] = 1;
    expectRefused(remark, ErrorCode::NotABackupFile, "remark");
}

TEST(ZipArchive, everyTruncationIsRefused) {
    const std::string good = packZip({{"a.json", "one"}, {"b.json", "two"}}).value();
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(unpacked(good.substr(0, size))) << size;
    }
}

TEST(ZipArchive, anyChangedBitGivesTheSameContentOrNone) {
    const ZipMembers members = {{"a.json", "[1, 2, 3, 3, 3, 3, 3, 3, 3]"}, {"b.json", "two"}};
    const std::string good = packZip(members).value();
    int refused = 0;
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        const auto read = unpacked(test::flipped(good, bit));
        refused += read ? 0 : 1;
        if (read) {
            EXPECT_EQ(*read, members) << "byte " << bit / 8;
        }
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace vxtv
