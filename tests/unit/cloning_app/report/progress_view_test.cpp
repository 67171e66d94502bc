#include "cloning_app/report/progress_view.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const Row kChannelsDone{VXCLONE_BROADCAST_TVS, Verdict::Done, ""};

const Progress kHalfWay{ShownPhase::Load, 0.5, 7, 15, VXCLONE_AV_SETTINGS, 50};
const Progress kTwoReported{ShownPhase::Saving, 0.2, 2, 9, VXCLONE_AV_SETTINGS, 10};

class ProgressViewTest : public testing::Test {
 protected:
    std::unique_ptr<ProgressView> view(ViewKind kind, std::string run) {
        return makeProgressView(
            kind, std::move(run), out_, err_,
            {[this] { return screen_; }, [this] { return elapsed_; }, [this] { return screen_; }});
    }

    vxcommon::Screen screen_{100, false, false};
    std::chrono::milliseconds elapsed_{67'500};
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(ProgressViewTest, plainIsALineForEachStep) {
    const auto plain = view(ViewKind::Plain, "restore");
    plain->progress(kHalfWay);
    plain->tick();
    plain->category(kChannelsDone);
    plain->category({VXCLONE_BROADCAST_TVS, Verdict::Failed, "the package holds no channels"});
    EXPECT_EQ(out_.str(),
              "restore 50 %, loading, 7 of 15, av, 1:07\nchannels: done\n"
              "channels: failed: the package holds no channels\n");
}

TEST_F(ProgressViewTest, plainHasALineForEachPhaseCategoryAndTenPercent) {
    const auto plain = view(ViewKind::Plain, "restore");
    const auto copying = [&plain](int percent) {
        plain->progress({ShownPhase::Staging, 0, 0, 0, std::nullopt, percent});
    };
    for (int percent = 0; percent <= 21; ++percent) {
        copying(percent);
    }
    for (const auto category : {VXCLONE_AV_SETTINGS, VXCLONE_AV_SETTINGS, VXCLONE_BROADCAST_TVS}) {
        plain->progress({ShownPhase::Load, 0, 7, 15, category, 22});
    }
    plain->progress({ShownPhase::Load, 0, 8, 15, std::nullopt, 22});
    plain->progress({ShownPhase::Closing, 0, 0, 0, std::nullopt, 23});
    EXPECT_EQ(out_.str(),
              "restore 0 %, copying and checking, 1:07\n"
              "restore 10 %, copying and checking, 1:07\n"
              "restore 20 %, copying and checking, 1:07\n"
              "restore 22 %, loading, 7 of 15, av, 1:07\n"
              "restore 22 %, loading, 7 of 15, channels, 1:07\n"
              "restore 23 %, closing, 1:07\n");
}

TEST_F(ProgressViewTest, plainHasALineWhenFiveSecondsHavePassed) {
    const auto plain = view(ViewKind::Plain, "backup");
    const auto writing = [&](int percent, std::chrono::milliseconds elapsed) {
        elapsed_ = elapsed;
        plain->progress({ShownPhase::Writing, 0, 0, 0, std::nullopt, percent});
    };
    writing(60, std::chrono::milliseconds(10'000));
    writing(61, std::chrono::milliseconds(14'999));
    writing(62, std::chrono::milliseconds(15'000));
    writing(63, std::chrono::milliseconds(19'000));
    writing(72, std::chrono::milliseconds(19'500));
    writing(73, std::chrono::milliseconds(20'000));
    EXPECT_EQ(out_.str(),
              "backup 60 %, writing, 0:10\n"
              "backup 62 %, writing, 0:15\n"
              "backup 72 %, writing, 0:19\n");
}

TEST_F(ProgressViewTest, plainStepOfARunWithoutPercentageHasNone) {
    view(ViewKind::Plain, "backup")->progress({{}, 0, 2, 9, VXCLONE_AV_SETTINGS});
    EXPECT_EQ(out_.str(), "backup 2 of 9, av, 1:07\n");
}

TEST_F(ProgressViewTest, stepWithoutEntriesIsThePhaseAndThePercentage) {
    const Progress reading{ShownPhase::ReadBack, 0.8, 0, 0, std::nullopt, 91};
    view(ViewKind::Plain, "undo")->progress(reading);
    EXPECT_EQ(out_.str(), "undo 91 %, reading back, 1:07\n");
    out_.str("");
    view(ViewKind::Terminal, "undo")->progress(reading);
    EXPECT_EQ(out_.str(), "undo  [######### ]  91 %  reading back  1:07");
}

TEST_F(ProgressViewTest, plainEndIsTheTableAndTheSentences) {
    view(ViewKind::Plain, "backup")->done({{kChannelsDone}, 0, {"Safe to remove the stick."}});
    EXPECT_THAT(out_.str(), HasSubstr("channel map"));
    EXPECT_THAT(out_.str(), HasSubstr("\nSafe to remove the stick.\n"));
}

/// A report of a restore with all possible parts.
Report longReport() {
    Report report{{{VXCLONE_AV_SETTINGS, Verdict::NotChosen},
                   {VXCLONE_VCONF_DATA, Verdict::Done, "applied, 54 settings", "", ReadBack::Same},
                   {VXCLONE_BROADCAST_TVS, Verdict::Differs, "2 of 3 files as in the package"},
                   {VXCLONE_VXTV_TIMER_DATA, Verdict::NotChosen}},
                  1,
                  {"Restored from /media/usb/clone, but not all of it (failed or different: channels).",
                   "To go back: vxclone undo."}};
    Difference difference;
    difference.what = "tvs-chms/hotel-channels.zip";
    difference.inFirst = true;
    difference.inSecond = true;
    report.differences = {"the package", "this television", {difference}};
    return report;
}

TEST_F(ProgressViewTest, endOnATerminalOf120ColumnsFits) {
    screen_ = {120, true, false};
    view(ViewKind::Terminal, "restore")->done(longReport());
    EXPECT_EQ(out_.str(),
              "category                       result\n"
              "channels       channel map     differs: 2 of 3 files as in the package\n"
              "settings-keys  hotel settings  done, read back: same: applied, 54 settings\n"
              "not chosen: av, timers\n"
              "the package -> this television\n"
              "  tvs-chms/hotel-channels.zip  other content\n"
              "Restored from /media/usb/clone, but not all of it (failed or different: channels).\n"
              "To go back: vxclone undo.\n");
}

TEST_F(ProgressViewTest, endOnATerminalOf80ColumnsFits) {
    screen_ = {80, true, false};
    view(ViewKind::Terminal, "restore")->done(longReport());
    EXPECT_EQ(out_.str(),
              "category                       result\n"
              "channels       channel map     differs: 2 of 3 files as in the package\n"
              "settings-keys  hotel settings  done, read back: same: applied, 54 settings\n"
              "not chosen: av, timers\n"
              "the package -> this television\n"
              "  tvs-chms/hotel-channels.zip  other content\n"
              "Restored from /media/usb/clone, but not all of it (failed or different:\n"
              "channels).\n"
              "To go back: vxclone undo.\n");
}

TEST_F(ProgressViewTest, endOnATerminalOf60ColumnsFits) {
    screen_ = {60, true, false};
    view(ViewKind::Terminal, "restore")->done(longReport());
    EXPECT_EQ(out_.str(),
              "category                       result\n"
              "channels       channel map     differs: 2 of 3 files as in\n"
              "                               the package\n"
              "settings-keys  hotel settings  done, read back: same:\n"
              "                               applied, 54 settings\n"
              "not chosen: av, timers\n"
              "the package -> this television\n"
              "  tvs-chms/hotel-channels.zip  other content\n"
              "Restored from /media/usb/clone, but not all of it (failed or\n"
              "different: channels).\n"
              "To go back: vxclone undo.\n");
}

TEST_F(ProgressViewTest, endElsewhereHasATableOf80ColumnsAndEachSentenceOnOneLine) {
    screen_ = {80, false, false};
    view(ViewKind::Plain, "restore")->done(longReport());
    EXPECT_THAT(out_.str(),
                HasSubstr("\nRestored from /media/usb/clone, but not all of it (failed or different: "
                          "channels).\n"));
}

TEST_F(ProgressViewTest, errorOnATerminalIsBrokenBetweenWords) {
    screen_ = {30, true, false};
    view(ViewKind::Terminal, "restore")->failed({ErrorCode::StickFull, "the stick is full; take another"});
    EXPECT_EQ(err_.str(),
              "vxclone: the stick is full;\n"
              "take another\n");
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
                HasSubstr("\r\x1b[Krestore  [#####     ]  50 %  loading  7 of 15  av  1:07  channels done"));
    EXPECT_THAT(out_.str(), Not(HasSubstr("\n")));
    terminal->failed({ErrorCode::Internal, "broke off"});
    EXPECT_THAT(out_.str(), testing::EndsWith("\r\x1b[K"));
}

TEST_F(ProgressViewTest, terminalMovesAMarkerUntilAPercentageIsKnown) {
    const auto terminal = view(ViewKind::Terminal, "backup");
    terminal->tick();
    const std::string first = out_.str();
    terminal->tick();
    EXPECT_NE(out_.str().substr(first.size()), "\r\x1b[K" + first);
    terminal->progress(kTwoReported);
    EXPECT_THAT(out_.str(), HasSubstr("[#         ]  10 %  saving  2 of 9  1:07"));
}

TEST_F(ProgressViewTest, terminalThatHasNothingNewToShowIsLeftAlone) {
    const auto terminal = view(ViewKind::Terminal, "restore");
    terminal->progress(kHalfWay);
    const std::string before = out_.str();
    terminal->tick();
    EXPECT_EQ(out_.str(), before);
}

TEST_F(ProgressViewTest, liveLineIsNeverAsWideAsTheTerminal) {
    for (screen_.columns = 0; screen_.columns < 90; ++screen_.columns) {
        out_.str("");
        const auto terminal = view(ViewKind::Terminal, "restore");
        terminal->progress(kHalfWay);
        EXPECT_LT(out_.str().size(), std::max<std::size_t>(screen_.columns, 1)) << out_.str();
    }
}

TEST_F(ProgressViewTest, narrowTerminalLosesWhatMattersLeastFirstAndNeverTheClock) {
    for (const auto& [width, line] : std::map<std::size_t, std::string>{
             {70, "restore  [#####     ]  50 %  loading  7 of 15  av  1:07  channels done"},
             {69, "restore  [#####     ]  50 %  loading  7 of 15  av  1:07"},
             {50, "restore  50 %  loading  7 of 15  av  1:07"},
             {40, "restore  50 %  loading  7 of 15  1:07"},
             {36, "restore  50 %  loading  1:07"},
             {24, "restore  50 %  1:07"}}) {
        screen_.columns = width + 1;
        const auto terminal = view(ViewKind::Terminal, "restore");
        terminal->category(kChannelsDone);
        out_.str("");
        terminal->progress(kHalfWay);
        EXPECT_EQ(out_.str(), "\r\x1b[K" + line) << width;
    }
}

TEST_F(ProgressViewTest, lineOf80ColumnsKeepsItsBarWhateverIsAtWork) {
    screen_.columns = 80;
    const auto terminal = view(ViewKind::Terminal, "restore");
    terminal->category({VXCLONE_NTP_SETTINGS_DATA, Verdict::Done});
    terminal->progress({ShownPhase::Load, 0.9, 14, 15, VXCLONE_VCONF_DATA, 99});
    EXPECT_THAT(out_.str(), HasSubstr("[######### ]  99 %  loading  14 of 15  settings-keys  1:07"));
}

TEST_F(ProgressViewTest, coloursTakeNoRoom) {
    screen_.columns = 50;
    screen_.coloured = true;
    view(ViewKind::Terminal, "restore")->progress(kHalfWay);
    EXPECT_THAT(out_.str(), HasSubstr("\x1b["));
    EXPECT_THAT(out_.str(), HasSubstr("1:07"));
}

TEST_F(ProgressViewTest, textsOfSomebodyElseAreShownAsWhatTheyAre) {
    const std::string text = "x\n\x1b[2Jall: done\u202e";
    const std::string shown = "x\\x0a\\x1b[2Jall: done\\xe2\\x80\\xae";
    const auto plain = view(ViewKind::Plain, "restore");
    plain->notice(text);
    plain->category({VXCLONE_BROADCAST_TVS, Verdict::Failed, text});
    EXPECT_EQ(out_.str(), shown + "\nchannels: failed: " + shown + "\n");
    out_.str("");
    plain->done({{{VXCLONE_BROADCAST_TVS, Verdict::Failed, text, text}}, 1, {text}});
    const std::string said = out_.str();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 3);
    EXPECT_THAT(said, Not(HasSubstr("\x1b")));
    plain->failed({ErrorCode::NotAPackage, text});
    EXPECT_EQ(err_.str(), "vxclone: " + shown + "\n");
}

}  // namespace
}  // namespace vxclone
