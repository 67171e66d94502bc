#include "cloning_app/television/shortage.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {
namespace {

/// As long as this object exists, the process may open only a few files.
class FewDescriptors {
 public:
    explicit FewDescriptors(rlim_t more) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const Descriptor next(open("/", kOpenFolder));
        const rlimit few{static_cast<rlim_t>(next.get()) + more, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
    rlimit before_{};
};

const Error kNoKey{ErrorCode::NoKey, "no key"};

/// The error if only so many more files may be opened.
Error orShortageWith(rlim_t descriptors) {
    const FewDescriptors few(descriptors);
    return orShortage(kNoKey, "/dev");
}

TEST(Shortage, whereNothingIsShortTheKeyIsMissing) {
    EXPECT_FALSE(shortageAt("/dev"));
    EXPECT_EQ(orShortage(kNoKey, "/no/such/folder").code, ErrorCode::NoKey);
}

TEST(Shortage, descriptorsThatAreMissingAreSaidInsteadOfAKey) {
    for (const rlim_t more : {0U, 1U, 5U}) {
        const Error error = orShortageWith(more);
        EXPECT_EQ(error.code, ErrorCode::TelevisionIo);
        EXPECT_THAT(error.sentence, testing::StartsWith("cannot read /dev: Too many open files; "));
    }
}

}  // namespace
}  // namespace vxclone
