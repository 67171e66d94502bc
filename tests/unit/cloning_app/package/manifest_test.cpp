#include "cloning_app/package/manifest.h"

#include <gmock/gmock.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "common/strict_json.h"

namespace vxclone {
namespace {

using testing::HasSubstr;
using Json = nlohmann::json;

const std::string kDigest(64, 'a');

Manifest goodManifest() {
    return {{"Room 101",
             "2026-03-01T12:30:00Z",
             "vxclone 1.0.0",
             {"VX55H7", "VX-H7-EU", 131},
             {{"av", "success"}, {"apps", "failed", "why", "org.vorta.orvel-app"}}},
            {{"logo", true}, {"logo/bo\not.png", false, 7, kDigest}, {"z\xff", false, 0, kDigest}}};
}

TEST(Manifest, bodyIsAsTheFormatSays) {
    EXPECT_EQ(manifestBody(goodManifest()),
              R"({"categories":[{"category":"av","result":"success"},)"
              R"({"application":"org.vorta.orvel-app","category":"apps","detail":"why","result":"failed"}],)"
              R"("entries":[{"path":"logo","type":"folder"},{"path":"logo/bo\\x0aot.png","sha256":")" +
                  kDigest + R"(","size":7,"type":"file"},{"path":"z\\xff","sha256":")" + kDigest +
                  R"(","size":0,"type":"file"}],"madeAt":"2026-03-01T12:30:00Z","madeBy":"vxclone 1.0.0",)"
                  R"("name":"Room 101","source":{"model":"VX55H7","productTag":"VX-H7-EU","tuner":131}})");
}

TEST(Manifest, everythingComesBack) {
    const auto read = manifestIn(manifestBody(goodManifest()));
    ASSERT_TRUE(read) << read.error();
    const Manifest wanted = goodManifest();
    EXPECT_EQ(read->origin.name, wanted.origin.name);
    EXPECT_EQ(read->origin.madeAt, wanted.origin.madeAt);
    EXPECT_EQ(read->origin.madeBy, wanted.origin.madeBy);
    EXPECT_EQ(read->origin.source.model, "VX55H7");
    EXPECT_EQ(read->origin.source.productTag, "VX-H7-EU");
    EXPECT_EQ(read->origin.source.tuner, 131);
    ASSERT_EQ(read->origin.results.size(), 2U);
    EXPECT_EQ(read->origin.results[1].application, "org.vorta.orvel-app");
    EXPECT_EQ(read->origin.results[1].detail, "why");
    EXPECT_TRUE(differencesOf(wanted.entries, read->entries).empty());
}

TEST(Manifest, categoriesAndResultsOfAnyBytesComeBack) {
    Manifest manifest = goodManifest();
    manifest.origin.results = {{"a\xff", "\nsuccess"}};
    const auto read = manifestIn(manifestBody(manifest));
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read->origin.results[0].category, "a\xff");
    EXPECT_EQ(read->origin.results[0].result, "\nsuccess");
}

TEST(Manifest, membersOfALaterMinorFormatArePassedOver) {
    Json json = Json::parse(manifestBody(goodManifest()));
    json["later"] = {1, 2};
    json["entries"][1]["later"] = "x";
    json["source"]["later"] = true;
    EXPECT_TRUE(manifestIn(json.dump()));
}

struct WrongCase {
    const char* name;
    const char* pointer;  ///< the member that is changed
    const char* value;    ///< what it becomes; null removes it
};

void PrintTo(const WrongCase& wrong, std::ostream* out) {
    *out << wrong.name;
}

class WrongManifestTest : public testing::TestWithParam<WrongCase> {};

TEST_P(WrongManifestTest, isRefused) {
    Json json = Json::parse(manifestBody(goodManifest()));
    const Json::json_pointer pointer(GetParam().pointer);
    if (GetParam().value != nullptr) {
        json[pointer] = Json::parse(GetParam().value);
    } else {
        json[pointer.parent_pointer()].erase(pointer.back());
    }
    EXPECT_FALSE(manifestIn(json.dump()));
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongManifestTest,
    testing::Values(
        WrongCase{"noName", "/name", nullptr}, WrongCase{"emptyName", "/name", "\"\""},
        WrongCase{"nameNoText", "/name", "1"}, WrongCase{"nameWithControl", "/name", "\"a\\nb\""},
        WrongCase{"nameWrongEscape", "/name", R"("a\\q")"}, WrongCase{"noTime", "/madeAt", nullptr},
        WrongCase{"otherTime", "/madeAt", "\"2026-03-01 12:30:00Z\""},
        WrongCase{"longTime", "/madeAt", "\"2026-03-01T12:30:00Z0\""}, WrongCase{"noMaker", "/madeBy", "[]"},
        WrongCase{"noSource", "/source", "null"}, WrongCase{"noModel", "/source/model", nullptr},
        WrongCase{"noTag", "/source/productTag", "7"}, WrongCase{"tunerText", "/source/tuner", "\"3\""},
        WrongCase{"tunerFraction", "/source/tuner", "1.5"},
        WrongCase{"tunerTooLarge", "/source/tuner", "2147483648"},
        WrongCase{"tunerTooSmall", "/source/tuner", "-2147483649"},
        WrongCase{"categoriesNoList", "/categories", "{}"},
        WrongCase{"categoryNoObject", "/categories/0", "1"},
        WrongCase{"detailNoText", "/categories/1/detail", "1"},
        WrongCase{"entriesMissing", "/entries", nullptr},
        WrongCase{"entryNoObject", "/entries/0", "\"logo\""},
        WrongCase{"entryNoPath", "/entries/0/path", nullptr},
        WrongCase{"entryOtherType", "/entries/0/type", "\"link\""},
        WrongCase{"entryNoType", "/entries/0/type", nullptr},
        WrongCase{"pathUp", "/entries/0/path", "\"../x\""},
        WrongCase{"pathUpInside", "/entries/0/path", "\"a/../b\""},
        WrongCase{"pathDot", "/entries/0/path", "\"./a\""},
        WrongCase{"pathAbsolute", "/entries/0/path", "\"/etc\""},
        WrongCase{"pathEmpty", "/entries/0/path", "\"\""},
        WrongCase{"pathSlashAtEnd", "/entries/0/path", "\"a/\""},
        WrongCase{"pathTwoSlashes", "/entries/0/path", "\"a//b\""},
        WrongCase{"pathNul", "/entries/0/path", R"("a\\x00b")"},
        WrongCase{"pathTooDeep", "/entries/0/path", "\"a/a/a/a/a/a/a/a/a\""},
        WrongCase{"pathOfTheManifest", "/entries/0/path", "\"manifest.json\""},
        WrongCase{"pathOfTheSeal", "/entries/0/path", "\"validate.txt\""},
        WrongCase{"pathTwice", "/entries/1/path", "\"logo\""},
        WrongCase{"pathOutOfOrder", "/entries/0/path", "\"zz\""},
        WrongCase{"sizeNegative", "/entries/1/size", "-1"},
        WrongCase{"sizeFraction", "/entries/1/size", "1.0"},
        WrongCase{"sizeTooLarge", "/entries/1/size", "18446744073709551615"},
        WrongCase{"sizeText", "/entries/1/size", "\"7\""},
        WrongCase{"digestShort", "/entries/1/sha256", "\"aa\""},
        WrongCase{"digestMissing", "/entries/1/sha256", nullptr}),
    [](const testing::TestParamInfo<WrongCase>& wrong) { return wrong.param.name; });

TEST(Manifest, wrongDigestsAndNamesAreRefused) {
    Manifest manifest = goodManifest();
    manifest.entries[1].digest = std::string(64, 'A');
    EXPECT_FALSE(manifestIn(manifestBody(manifest)));
    manifest = goodManifest();
    manifest.entries[0].path = std::string(256, 'n');
    EXPECT_FALSE(manifestIn(manifestBody(manifest)));
    manifest = goodManifest();
    manifest.origin.name = std::string(256, 'n');
    EXPECT_FALSE(manifestIn(manifestBody(manifest)));
}

TEST(Manifest, asManyEntriesAsAPackageHoldsAreRead) {
    Manifest manifest = goodManifest();
    manifest.entries.clear();
    for (std::size_t entry = 0; entry < TreeLimits{}.entries; ++entry) {
        manifest.entries.push_back({"f" + std::to_string(100'000 + entry), false, entry, kDigest});
    }
    const auto read = manifestIn(manifestBody(manifest));
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read->entries.size(), TreeLimits{}.entries);
}

TEST(Manifest, textThatIsNoObjectIsRefused) {
    for (const char* const text : {"", "[]", "1", "null", "\"x\"", "{}", "{\"name\":\"a\",\"name\":\"b\"}"}) {
        EXPECT_FALSE(manifestIn(text)) << text;
    }
}

TEST(Manifest, listsThatAreLongerThanAnyPackageNeedsAreRefused) {
    Json json = Json::parse(manifestBody(goodManifest()));
    const Json result = json["categories"][0];
    json["categories"] = std::vector<Json>(1'000, result);
    EXPECT_TRUE(manifestIn(json.dump()));
    json["categories"].push_back(result);
    const auto read = manifestIn(json.dump());
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error(), "lists more than 1000 things in \"categories\"");
}

TEST(Manifest, readingEndsWhenItShallStop) {
    Json json = Json::parse(manifestBody(goodManifest()));
    json["categories"] = std::vector<Json>(1'000, json["categories"][0]);
    StopFlag stop;
    stop.raise(SIGTERM);
    EXPECT_THROW(static_cast<void>(manifestIn(json.dump(), &stop)), vxcommon::ParsingStopped);
}

}  // namespace
}  // namespace vxclone
