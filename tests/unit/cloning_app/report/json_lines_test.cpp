#include "cloning_app/report/json_lines.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <set>

#include "cloning_app/base/error_catalogue.h"
#include "cloning_app/report/progress_view.h"
#include "tests/unit/cloning_app/json_schema.h"

namespace vxclone {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const Row kChannelsFailed{VXCLONE_BROADCAST_TVS, Verdict::Failed, "the package holds no channels"};

class JsonLinesTest : public testing::Test {
 protected:
    /// Every written line. Each must match the schema.
    std::vector<Json> lines() const {
        std::vector<Json> parsed = jsonLines(out_.str());
        for (const Json& line : parsed) {
            EXPECT_THAT(schemaComplaint(line), IsEmpty());
        }
        return parsed;
    }

    std::ostringstream out_;
    std::ostringstream err_;
    std::unique_ptr<ProgressView> view_ = makeProgressView(
        ViewKind::Json, "restore", out_, err_, {{}, [] { return std::chrono::milliseconds(1500); }});
};

TEST_F(JsonLinesTest, progressTellsPhasePercentEntryCategoryAndTime) {
    view_->progress({ShownPhase::Load, 0.5, 5, 15, VXCLONE_BROADCAST_TVS, 33});
    view_->tick();
    EXPECT_EQ(lines().at(0), Json::parse(R"({"version": 1, "event": "progress", "run": "restore",
        "elapsed": 1.5, "phase": "load", "percent": 33, "entry": 5, "entries": 15, "category": "channels"})"));
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(JsonLinesTest, progressOfARunWithoutPercentageHasNone) {
    makeProgressView(ViewKind::Json, "backup", out_, err_)->progress({{}, 0, 2, 9});
    EXPECT_FALSE(lines().at(0).contains("percent"));
    EXPECT_EQ(lines().at(0).at("run"), "backup");
}

TEST_F(JsonLinesTest, outcomeAndSentenceDuringTheRunAreProgress) {
    view_->category(kChannelsFailed);
    view_->notice("recovered");
    EXPECT_FALSE(lines().at(0).contains("phase"));
    EXPECT_EQ(lines().at(0).at("reported"), "failed");
    EXPECT_EQ(lines().at(0).at("category"), "channels");
    EXPECT_EQ(lines().at(1).at("message"), "recovered");
}

TEST_F(JsonLinesTest, everyLineOfARunNamesThePhaseAndThePercentageOnceTheyAreKnown) {
    view_->progress({ShownPhase::ReadBack, 0, 0, 0, std::nullopt, 75});
    view_->category(kChannelsFailed);
    view_->notice("recovered");
    for (const Json& line : lines()) {
        EXPECT_EQ(line.at("phase"), "read-back");
        EXPECT_EQ(line.at("percent"), 75);
    }
}

TEST_F(JsonLinesTest, endIsAResultForEachRowAFindingForEachCheckAndASummary) {
    view_->done({{kChannelsFailed, {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.some.app"}},
                 4,
                 {"It does not fit."},
                 {{Subject::ProductTag, Finding::Differs, "here", "there"},
                  {Subject::Seal, Finding::Altered, "", "", "avoc.db"}}});
    const auto all = lines();
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[0],
              Json::parse(R"({"version": 1, "event": "result", "kind": "category", "category": "channels",
        "result": "failed", "detail": "the package holds no channels"})"));
    EXPECT_EQ(all[1].at("application"), "org.some.app");
    EXPECT_EQ(all[2], Json::parse(R"({"version": 1, "event": "finding", "check": "product-tag",
        "result": "differs", "television": "here", "package": "there"})"));
    EXPECT_EQ(all[4], Json::parse(R"({"version": 1, "event": "summary", "exit": 4,
        "messages": ["It does not fit."]})"));
}

TEST_F(JsonLinesTest, everyVerdictAndErrorFitsTheSchema) {
    for (std::size_t index = 0; index < verdictCount(); ++index) {
        view_->done({{{VXCLONE_BROADCAST_TVS, static_cast<Verdict>(index)}}, 0, {}});
    }
    for (const ErrorFact& fact : errorCatalogue()) {
        view_->failed({fact.code, "sentence"});
    }
    EXPECT_THAT(lines(), Not(IsEmpty()));
    EXPECT_THAT(err_.str(), IsEmpty());
}

TEST(JsonSchema, listsAreThoseOfTheCode) {
    std::ifstream file(VX_JSON_SCHEMA);
    const Json definitions = Json::parse(file).at("definitions");
    std::map<std::string, std::set<std::string>> lists;
    for (const ErrorFact& fact : errorCatalogue()) {
        lists["code"].emplace(fact.name);
    }
    for (const Category& category : categories()) {
        lists["category"].emplace(category.name);
    }
    for (std::size_t index = 0; index < verdictCount(); ++index) {
        lists["result"].emplace(nameOf(static_cast<Verdict>(index)));
    }
    lists["check"] = {"last-run", "completeness"};
    for (int index = 0; index <= static_cast<int>(Subject::Seal); ++index) {
        lists["check"].emplace(nameOf(static_cast<Subject>(index)));
    }
    lists["finding"] = {"going-on", "unfinished", "ended", "lacking", "declared"};
    for (int index = 0; index <= static_cast<int>(Finding::Refused); ++index) {
        lists["finding"].emplace(nameOf(static_cast<Finding>(index)));
    }
    for (std::size_t index = 0; index < kShownPhaseCount; ++index) {
        lists["phase"].emplace(nameOf(static_cast<ShownPhase>(index)));
    }
    for (const auto& [name, values] : lists) {
        EXPECT_EQ(definitions.at(name).at("enum").get<std::set<std::string>>(), values) << name;
    }
    EXPECT_EQ(definitions.at("exit").at("maximum"), exitStatuses().back().status);
}

TEST_F(JsonLinesTest, errorHasCodeStatusAndSentenceEvenOfBytesThatAreNoText) {
    view_->failed({ErrorCode::NotAPackage, "a\xff is not a package"});
    EXPECT_EQ(lines().at(0).at("code"), "not-a-package");
    EXPECT_EQ(lines().at(0).at("exit"), 3);
    EXPECT_EQ(lines().at(0).at("message"), "a\\xff is not a package");
}

TEST_F(JsonLinesTest, schemaRefusesWhatIsNotPublished) {
    const Json good = {
        {"version", 1}, {"event", "error"}, {"code", "altered"}, {"exit", 5}, {"message", "m"}};
    EXPECT_THAT(schemaComplaint(good), IsEmpty());
    for (const auto& [member, value] : std::vector<std::pair<const char*, Json>>{
             {"version", 2}, {"event", "done"}, {"code", "no-such-code"}, {"exit", "5"}, {"more", 1}}) {
        Json bad = good;
        bad[member] = value;
        EXPECT_THAT(schemaComplaint(bad), Not(IsEmpty())) << member;
    }
}

TEST_F(JsonLinesTest, deceptiveCharactersAreEscaped) {
    view_->notice("a\u202eb\u009b\u2028\x7f");
    EXPECT_THAT(out_.str(), HasSubstr("a\\u202eb\\u009b\\u2028\\u007f"));
    EXPECT_EQ(lines().at(0).at("message"), "a\u202eb\u009b\u2028\x7f");
}

}  // namespace
}  // namespace vxclone
