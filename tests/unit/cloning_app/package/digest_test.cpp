
#include "cloning_app/package/digest.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

class FileDigestsTest : public testing::Test {
 protected:
    Descriptor file(const std::string& content) {
        writeFile(folder_ / "file", content);
        return Descriptor(open((folder_ / "file").c_str(), O_RDONLY | O_CLOEXEC));
    }

    /// Computes the digests of `count` files with different contents.
    void expectRightDigests(int count) {
        FileDigests digests;
        for (int k = 0; k < count; ++k) {
            const Descriptor opened = file(std::to_string(k));
            std::filesystem::remove(folder_ / "file");
            digests.add(opened.get());
        }
        const auto outcomes = digests.finish();
        ASSERT_EQ(outcomes.size(), static_cast<std::size_t>(count));
        for (int k = 0; k < count; ++k) {
            EXPECT_EQ(outcomes[static_cast<std::size_t>(k)].digest, digestOf(std::to_string(k)));
        }
    }

    TestFolder folder_;
};

/// As long as this object exists, the process cannot open further descriptors.
class NoMoreDescriptors {
 public:
    NoMoreDescriptors() {
        getrlimit(RLIMIT_NOFILE, &before_);
        const Descriptor next(open("/", O_RDONLY | O_CLOEXEC));
        const rlimit none{static_cast<rlim_t>(next.get()), before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;
    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
    rlimit before_{};
};

TEST_F(FileDigestsTest, manyFilesHaveTheirDigestsInTheirOrder) {
    expectRightDigests(0);
    expectRightDigests(1);
    expectRightDigests(500);
}

TEST_F(FileDigestsTest, fileThatCannotBeReadHasTheReason) {
    const Descriptor folder(open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FileDigests digests;
    digests.add(folder.get());
    digests.add(file("x").get());
    const auto outcomes = digests.finish();
    EXPECT_EQ(outcomes.at(0).digest, "");
    EXPECT_EQ(outcomes.at(0).reason, EISDIR);
    EXPECT_EQ(outcomes.at(1).digest, digestOf("x"));
    EXPECT_EQ(outcomes.at(1).reason, 0);
}

TEST_F(FileDigestsTest, withoutAFreeDescriptorTheCallersThreadDigests) {
    if (VX_SANITIZED) {
        GTEST_SKIP() << "the sanitizer itself needs descriptors, to look at a thread's type";
    }
    const Descriptor opened = file("x");
    FileDigests digests;
    {
        const NoMoreDescriptors limit;
        digests.add(opened.get());
    }
    EXPECT_EQ(digests.finish().at(0).digest, digestOf("x"));
}

TEST_F(FileDigestsTest, endWithoutTheResultsIsOrderly) {
    FileDigests digests;
    digests.add(file("x").get());
}

}  // namespace
}  // namespace vxclone
