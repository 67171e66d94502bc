#include "cloning_app/run/progress_view.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const Row kChannelsDone{VXCLONE_BROADCAST_TVS, Verdict::Done, ""};
const Row kChannelsFailed{VXCLONE_BROADCAST_TVS, Verdict::Failed, "the package holds no channels"};

const Progress kHalfWay{50, 7, 15, VXCLONE_AV_SETTINGS};
const Progress kTwoReported{std::nullopt, 2, 9, VXCLONE_AV_SETTINGS};

class ProgressViewTest : public testing::Test {
 protected:
    std::unique_ptr<ProgressView> view(ViewKind kind, std::string run) {
        return makeProgressView(kind, std::move(run), out_, err_,
                                {coloured_, [this] { return width_; }, [this] { return elapsed_; }});
    }

    bool coloured_ = false;
    std::size_t width_ = 100;
    std::chrono::milliseconds elapsed_{67'500};
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(ProgressViewTest, plainIsALineForEachStep) {
    const auto plain = view(ViewKind::Plain, "restore");
    plain->progress(kHalfWay);
    plain->tick();
    plain->category(kChannelsDone);
    plain->category(kChannelsFailed);
    EXPECT_EQ(out_.str(),
              "restore 50 %, 7 of 15, av, 1:07\nchannels: done\n"
              "channels: failed: the package holds no channels\n");
}

TEST_F(ProgressViewTest, plainBackupHasNoPercentage) {
    view(ViewKind::Plain, "backup")->progress(kTwoReported);
    EXPECT_EQ(out_.str(), "backup 2 of 9, av, 1:07\n");
}

TEST_F(ProgressViewTest, plainEndIsTheTableAndTheSentences) {
    view(ViewKind::Plain, "backup")->done({{kChannelsDone}, 0, {"Safe to remove the stick."}});
    EXPECT_THAT(out_.str(), HasSubstr("channel map"));
    EXPECT_THAT(out_.str(), HasSubstr("\nSafe to remove the stick.\n"));
}

TEST_F(ProgressViewTest, textErrorGoesToTheErrorStream) {
    view(ViewKind::Plain, "backup")->failed({ErrorCode::StickFull, "the stick is full"});
    EXPECT_THAT(out_.str(), IsEmpty());
    EXPECT_EQ(err_.str(), "vxclone: the stick is full\n");
}

TEST_F(ProgressViewTest, terminalRestoreRewritesOneLine) {
    const auto terminal = view(ViewKind::Terminal, "restore");
    terminal->progress(kHalfWay);
    terminal->category(kChannelsDone);
    EXPECT_THAT(out_.str(),
                HasSubstr("\r\x1b[Krestore  [#####     ]  50 %  7 of 15  av  1:07  channels done"));
    EXPECT_THAT(out_.str(), Not(HasSubstr("\n")));
    terminal->failed({ErrorCode::Internal, "broke off"});
    EXPECT_THAT(out_.str(), testing::EndsWith("\r\x1b[K"));
}

TEST_F(ProgressViewTest, terminalBackupMovesAMarkerAndCountsReports) {
    const auto terminal = view(ViewKind::Terminal, "backup");
    terminal->tick();
    const std::string first = out_.str();
    terminal->tick();
    EXPECT_NE(out_.str().substr(first.size()), "\r\x1b[K" + first);
    terminal->progress(kTwoReported);
    EXPECT_THAT(out_.str(), HasSubstr("2 of 9  1:07"));
    EXPECT_THAT(out_.str(), Not(HasSubstr("%")));
}

TEST_F(ProgressViewTest, terminalThatHasNothingNewToShowIsLeftAlone) {
    const auto terminal = view(ViewKind::Terminal, "restore");
    terminal->progress(kHalfWay);
    const std::string before = out_.str();
    terminal->tick();
    EXPECT_EQ(out_.str(), before);
}

TEST_F(ProgressViewTest, liveLineIsNeverAsWideAsTheTerminal) {
    for (width_ = 0; width_ < 90; ++width_) {
        out_.str("");
        const auto terminal = view(ViewKind::Terminal, "restore");
        terminal->progress(kHalfWay);
        EXPECT_LT(out_.str().size(), std::max<std::size_t>(width_, 1)) << out_.str();
    }
}

TEST_F(ProgressViewTest, narrowTerminalLosesTheBarFirst) {
    width_ = 40;
    view(ViewKind::Terminal, "restore")->progress(kHalfWay);
    EXPECT_EQ(out_.str(), "restore  50 %  7 of 15  av  1:07");
}

TEST_F(ProgressViewTest, lineOf80ColumnsKeepsItsBarWhateverIsAtWork) {
    width_ = 80;
    const auto terminal = view(ViewKind::Terminal, "restore");
    terminal->category({VXCLONE_NTP_SETTINGS_DATA, Verdict::Done});
    terminal->progress({100, 14, 15, VXCLONE_VCONF_DATA});
    EXPECT_THAT(out_.str(),
                HasSubstr("[##########]  100 %  14 of 15  settings-keys  1:07  network-time done"));
}

TEST_F(ProgressViewTest, coloursTakeNoRoom) {
    width_ = 50;
    coloured_ = true;
    view(ViewKind::Terminal, "restore")->progress({50, 7, 15, VXCLONE_AV_SETTINGS});
    EXPECT_THAT(out_.str(), HasSubstr("\x1b["));
    EXPECT_THAT(out_.str(), HasSubstr("1:07"));
}

}  // namespace
}  // namespace vxclone
