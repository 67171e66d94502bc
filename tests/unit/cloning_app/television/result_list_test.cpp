#include "cloning_app/television/result_list.h"

#include <gmock/gmock.h>

namespace vxclone {

bool operator==(const Outcome& one, const Outcome& other) {
    return one.category == other.category && one.success == other.success;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Outcome kAvFailed{VXCLONE_AV_SETTINGS, false};
constexpr Outcome kAppDone{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, true};

TEST(ResultList, growingReadingBringsOnlyWhatIsNew) {
    ResultList list;
    EXPECT_THAT(list.update("VXCLONE_AV_SETTINGS-FAIL\n"), ElementsAre(kAvFailed));
    EXPECT_THAT(list.update("VXCLONE_AV_SETTINGS-FAIL\n"), IsEmpty());
    EXPECT_THAT(list.update("VXCLONE_AV_SETTINGS-FAIL\nVXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n"),
                ElementsAre(kAppDone));
    EXPECT_THAT(list.outcomes(), ElementsAre(kAvFailed, kAppDone));
}

TEST(ResultList, categoryThatReportsTwiceIsKeptTwice) {
    ResultList list;
    list.update("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n");
    EXPECT_THAT(
        list.update("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\nVXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n"),
        ElementsAre(kAppDone));
    EXPECT_THAT(list.outcomes(), ElementsAre(kAppDone, kAppDone));
}

TEST(ResultList, lineThatALaterReadingLostStays) {
    ResultList list;
    list.update("VXCLONE_AV_SETTINGS-FAIL\n");
    EXPECT_THAT(list.update("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n"), ElementsAre(kAppDone));
    EXPECT_THAT(list.outcomes(), ElementsAre(kAvFailed, kAppDone));
}

TEST(ResultList, lastLineWithoutLineEndIsNotThereYet) {
    ResultList list;
    EXPECT_THAT(list.update("VXCLONE_AV_SETTINGS-FAIL"), IsEmpty());
    EXPECT_THAT(list.unknownLines(), IsEmpty());
}

TEST(ResultList, linesOfNoCategoryAreKeptAsUnknownOnce) {
    ResultList list;
    list.update("-FAIL\nVXCLONE_AV_SETTINGS-MAYBE\nVXCLONE_NEW-SUCCESS\n");
    list.update("-FAIL\nVXCLONE_AV_SETTINGS-MAYBE\nVXCLONE_NEW-SUCCESS\n");
    EXPECT_THAT(list.outcomes(), IsEmpty());
    EXPECT_THAT(list.unknownLines(),
                ElementsAre("-FAIL", "VXCLONE_AV_SETTINGS-MAYBE", "VXCLONE_NEW-SUCCESS"));
}

}  // namespace
}  // namespace vxclone
