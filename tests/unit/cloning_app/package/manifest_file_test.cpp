#include "cloning_app/package/manifest_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "cloning_app/package/digest.h"
#include "tests/unit/cloning_app/fake_secure_storage.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;

class ManifestFileTest : public testing::Test {
 protected:
    ManifestFileTest() {
        FakeSecureStorage::reset();
        const auto written = writeManifest(tree(), manifest_, *PackageKey::ofTelevision());
        EXPECT_TRUE(written) << written.error().sentence;
        digest_ = written.value_or("");
        good_ = readFile(file_);
    }

    Tree tree() const { return {descriptor_.get(), folder_.path().string(), Place::Stick}; }

    Result<std::optional<ReadManifest>> reading(const std::string& text) {
        writeFile(file_, text);
        return readManifest(tree(), PackageKey::ofTelevision());
    }

    /// The error's code, or whether the manifest is genuine.
    std::string outcome(const std::string& text) {
        const auto read = reading(text);
        if (!read) {
            return std::string(nameOf(read.error().code));
        }
        switch ((*read)->authenticity) {
            case Authenticity::Proven:
                return "proven";
            case Authenticity::Unknown:
                return "unknown";
            case Authenticity::Broken:
                break;
        }
        return "broken";
    }

    const Manifest manifest_{{"n", "2026-03-01T12:30:00Z", "vxclone 1.0.0", {"M", "T", 3}},
                             {{"a", false, 1, std::string(64, 'a')}}};
    TestFolder folder_;
    const std::filesystem::path file_ = folder_ / "manifest.json";
    const Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY)};
    std::string digest_;
    std::string good_;
};

TEST_F(ManifestFileTest, fileIsTheBodyBetweenVersionAndCode) {
    const std::string body = manifestBody(manifest_);
    const std::string authenticated = "vxclone package manifest 1.1\n" + body;
    EXPECT_EQ(good_, R"({"format":"1.1","manifest":)" + body + R"(,"authentication":")" +
                         PackageKey::ofTelevision()->codeOf(authenticated) + "\"}\n");
    EXPECT_EQ(digest_, digestOf(authenticated));
}

TEST_F(ManifestFileTest, whatWasWrittenIsProven) {
    const auto read = reading(good_);
    ASSERT_TRUE(read && *read);
    EXPECT_EQ((*read)->authenticity, Authenticity::Proven);
    EXPECT_EQ((*read)->digest, digest_);
    EXPECT_EQ((*read)->manifest.origin.name, "n");
}

TEST_F(ManifestFileTest, missingFileIsNone) {
    std::filesystem::remove(file_);
    const auto read = readManifest(tree(), std::nullopt);
    ASSERT_TRUE(read);
    EXPECT_FALSE(*read);
}

TEST_F(ManifestFileTest, anyFlippedBitIsNeverProven) {
    for (std::size_t byte = 0; byte < good_.size(); ++byte) {
        std::string flipped = good_;
        flipped[byte] = static_cast<char>(flipped[byte] ^ 1);
        EXPECT_NE(outcome(flipped), "proven") << byte;
    }
}

TEST_F(ManifestFileTest, anyTruncationIsAltered) {
    for (std::size_t size = 0; size < good_.size(); ++size) {
        EXPECT_EQ(outcome(good_.substr(0, size)), "altered") << size;
    }
    EXPECT_EQ(outcome(good_ + "x"), "altered");
    EXPECT_EQ(outcome(good_ + good_), "altered");
}

TEST_F(ManifestFileTest, sameManifestWrittenInAnotherWayIsNotProven) {
    std::string spaced = good_;
    spaced.insert(spaced.find("\"name\""), " ");
    EXPECT_EQ(outcome(spaced), "broken");
}

TEST_F(ManifestFileTest, anotherKeyOrNoneIsNotProven) {
    FakeSecureStorage::instance().packageKey = std::string(32, 'o');
    EXPECT_EQ(outcome(good_), "broken");
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_EQ(outcome(good_), "unknown");
}

TEST_F(ManifestFileTest, laterFormatsAreReadOrRefusedByTheirFirstNumber) {
    const auto withVersion = [this](const std::string& version) {
        const std::string body = manifestBody(manifest_);
        return R"({"format":")" + version + R"(","manifest":)" + body + R"(,"authentication":")" +
               PackageKey::ofTelevision()->codeOf("vxclone package manifest " + version + "\n" + body) +
               "\"}\n";
    };
    EXPECT_EQ(outcome(withVersion("1.7")), "proven");
    EXPECT_EQ(outcome(withVersion("2.0")), "newer-package");
    EXPECT_EQ(outcome(R"({"format":"3.1","other":"form"})"), "newer-package");
    EXPECT_THAT(reading(withVersion("2.0")).error().sentence, HasSubstr("package format 2.0"));
    for (const char* const version :
         {"", "1", "1.", ".1", "0.9", "-1.0", "1.0.0", "1.x", "99999999999.0", "1.-1"}) {
        EXPECT_EQ(outcome(withVersion(version)), "altered") << version;
    }
}

TEST_F(ManifestFileTest, codeOfOneVersionIsNoneOfAnother) {
    std::string text = good_;
    text.replace(text.find("1.1"), 3, "1.2");
    EXPECT_EQ(outcome(text), "broken");
}

TEST_F(ManifestFileTest, fileThatIsTooLargeOrNoFileIsRefused) {
    EXPECT_EQ(outcome(std::string(kMostManifestBytes + 10, 'x')), "altered");
    std::filesystem::remove(file_);
    std::filesystem::create_directory(file_);
    EXPECT_EQ(readManifest(tree(), std::nullopt).error().code, ErrorCode::UnsafeEntry);
    std::filesystem::remove(file_);
    std::filesystem::create_symlink("/etc/passwd", file_);
    EXPECT_FALSE(readManifest(tree(), std::nullopt));
}

TEST_F(ManifestFileTest, manifestThatWouldBeTooLargeIsNotWritten) {
    Manifest manifest = manifest_;
    manifest.entries.assign(5000, {std::string(2000, 'n'), true});
    const auto written = writeManifest(tree(), manifest, *PackageKey::ofTelevision());
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code, ErrorCode::NotSealed);
}

}  // namespace
}  // namespace vxclone
