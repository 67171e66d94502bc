#include "cloning_app/run/progress_view.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace vxclone {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const Row kChannelsDone{VXCLONE_BROADCAST_TVS, Verdict::Done, ""};
const Row kChannelsFailed{VXCLONE_BROADCAST_TVS, Verdict::Failed, "the package holds no channels"};

class ProgressViewTest : public testing::Test {
 protected:
    std::unique_ptr<ProgressView> view(ViewKind kind, Direction direction) {
        return makeProgressView(kind, direction, out_, err_, false);
    }

    std::vector<json> lines() const {
        std::vector<json> parsed;
        std::istringstream text(out_.str());
        for (std::string line; std::getline(text, line);) {
            parsed.push_back(json::parse(line, nullptr, false));
            EXPECT_TRUE(parsed.back().is_object()) << line;
        }
        return parsed;
    }

    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(ProgressViewTest, plainIsALineForEachStep) {
    const auto plain = view(ViewKind::Plain, Direction::Restore);
    plain->percent(33);
    plain->tick();
    plain->category(kChannelsDone);
    plain->category(kChannelsFailed);
    EXPECT_EQ(out_.str(), "restore 33 %\nchannels: done\nchannels: failed: the package holds no channels\n");
}

TEST_F(ProgressViewTest, plainEndIsTheTableAndTheSentences) {
    view(ViewKind::Plain, Direction::Backup)
        ->done({Direction::Backup, {kChannelsDone}, 0, {"Safe to remove the stick."}});
    EXPECT_THAT(out_.str(), HasSubstr("channel map"));
    EXPECT_THAT(out_.str(), HasSubstr("\nSafe to remove the stick.\n"));
}

TEST_F(ProgressViewTest, textErrorGoesToTheErrorStream) {
    view(ViewKind::Plain, Direction::Backup)->failed({ErrorCode::StickFull, "the stick is full"});
    EXPECT_THAT(out_.str(), IsEmpty());
    EXPECT_EQ(err_.str(), "vxclone: the stick is full\n");
}

TEST_F(ProgressViewTest, terminalRestoreRewritesOneLine) {
    const auto terminal = view(ViewKind::Terminal, Direction::Restore);
    terminal->percent(50);
    terminal->category(kChannelsDone);
    EXPECT_THAT(out_.str(), HasSubstr("\r\x1b[Krestore [##########          ] 50 %  channels done"));
    EXPECT_THAT(out_.str(), Not(HasSubstr("\n")));
    terminal->failed({ErrorCode::Internal, "broke off"});
    EXPECT_THAT(out_.str(), testing::EndsWith("\r\x1b[K"));
}

TEST_F(ProgressViewTest, terminalBackupMovesAMarkerAndCountsReports) {
    const auto terminal = view(ViewKind::Terminal, Direction::Backup);
    terminal->tick();
    const std::string first = out_.str();
    terminal->tick();
    EXPECT_NE(out_.str().substr(first.size()), "\r\x1b[K" + first);
    terminal->category(kChannelsDone);
    EXPECT_THAT(out_.str(), HasSubstr("1 reported  channels done"));
    EXPECT_THAT(out_.str(), Not(HasSubstr("%")));
}

TEST_F(ProgressViewTest, jsonIsOneObjectALine) {
    const auto view = this->view(ViewKind::Json, Direction::Restore);
    view->percent(33);
    view->tick();
    view->category(kChannelsFailed);
    view->notice("recovered");
    view->done({Direction::Restore, {kChannelsFailed}, 1, {"Restored."}});
    const auto parsed = lines();
    ASSERT_EQ(parsed.size(), 4U);
    EXPECT_EQ(parsed[0], json({{"event", "progress"}, {"percent", 33}}));
    EXPECT_EQ(parsed[1], json({{"event", "category"},
                               {"category", "channels"},
                               {"result", "failed"},
                               {"detail", "the package holds no channels"}}));
    EXPECT_EQ(parsed[2]["message"], "recovered");
    EXPECT_EQ(parsed[3]["event"], "done");
    EXPECT_EQ(parsed[3]["exit"], 1);
    EXPECT_EQ(parsed[3]["categories"][0]["category"], "channels");
}

TEST_F(ProgressViewTest, jsonEndNamesEachCheckWithBothValues) {
    view(ViewKind::Json, Direction::Restore)
        ->done({Direction::Restore,
                {},
                4,
                {"It does not fit."},
                {{Subject::ProductTag, Finding::Differs, "here", "there"},
                 {Subject::Seal, Finding::Altered, "", "", "avoc.db"}}});
    EXPECT_EQ(lines().at(0), json({{"event", "done"},
                                   {"exit", 4},
                                   {"checks",
                                    {{{"check", "product-tag"},
                                      {"result", "differs"},
                                      {"television", "here"},
                                      {"package", "there"}},
                                     {{"check", "seal"}, {"result", "altered"}, {"detail", "avoc.db"}}}},
                                   {"messages", {"It does not fit."}}}));
}

TEST_F(ProgressViewTest, jsonErrorHasCodeStatusAndSentenceEvenOfBytesThatAreNoText) {
    view(ViewKind::Json, Direction::Backup)->failed({ErrorCode::NotAPackage, "a\xff is not a package"});
    const auto parsed = lines();
    ASSERT_EQ(parsed.size(), 1U);
    EXPECT_EQ(parsed[0]["event"], "error");
    EXPECT_EQ(parsed[0]["code"], "not-a-package");
    EXPECT_EQ(parsed[0]["exit"], 3);
    EXPECT_THAT(parsed[0]["message"].get<std::string>(), HasSubstr("is not a package"));
    EXPECT_THAT(err_.str(), IsEmpty());
}

}  // namespace
}  // namespace vxclone
