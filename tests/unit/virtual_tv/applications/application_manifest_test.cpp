#include "virtual_tv/applications/application_manifest.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

using Json = nlohmann::json;

class ApplicationManifestTest : public testing::Test {
 protected:
    Result<ApplicationManifest> reading(const std::string& text) {
        test::writeFile(folder_.path() / kManifestName, text);
        return readManifest(folder_.path());
    }

    static Json good() {
        return Json::parse(R"({"id": "org.example.app", "title": "Example", "program": "bin/app",
                               "arguments": ["-a", "b c"], "autostart": true})");
    }

    test::TestFolder folder_;
};

TEST_F(ApplicationManifestTest, goodManifestIsRead) {
    const auto manifest = reading(good().dump());
    ASSERT_TRUE(manifest) << manifest.error().sentence;
    EXPECT_EQ("org.example.app", manifest->id);
    EXPECT_EQ("Example", manifest->title);
    EXPECT_EQ("bin/app", manifest->program);
    EXPECT_EQ((std::vector<std::string>{"-a", "b c"}), manifest->arguments);
    EXPECT_TRUE(manifest->autostart);
}

TEST_F(ApplicationManifestTest, writtenManifestIsReadAsItWas) {
    const auto manifest = reading(manifestText({"org.example.b", "B", "hotel_app", {"x"}, false}));
    ASSERT_TRUE(manifest) << manifest.error().sentence;
    EXPECT_EQ("org.example.b", manifest->id);
    EXPECT_EQ("hotel_app", manifest->program);
    EXPECT_FALSE(manifest->autostart);
}

TEST_F(ApplicationManifestTest, missingManifestIsNoApplication) {
    const auto manifest = readManifest(folder_.path());
    ASSERT_FALSE(manifest);
    EXPECT_EQ(ErrorCode::UnknownApplication, manifest.error().code);
}

TEST_F(ApplicationManifestTest, eachMissingMemberIsNamed) {
    for (const char* const member : {"id", "title", "program", "arguments", "autostart"}) {
        Json document = good();
        document.erase(member);
        const auto manifest = reading(document.dump());
        ASSERT_FALSE(manifest) << member;
        EXPECT_EQ(ErrorCode::BadApplication, manifest.error().code);
        EXPECT_NE(std::string::npos, manifest.error().sentence.find(member)) << manifest.error().sentence;
    }
}

TEST_F(ApplicationManifestTest, wrongValuesAreRefused) {
    const std::vector<std::pair<std::string, Json>> wrong = {
        {"id", "../other"},
        {"id", ""},
        {"id", ".hidden"},
        {"id", "a/b"},
        {"title", ""},
        {"title", 5},
        {"program", "../../bin/sh"},
        {"program", "/bin/sh"},
        {"program", ""},
        {"program", "bin/"},
        {"arguments", "text"},
        {"arguments", Json::array({1})},
        {"autostart", 1},
        {"unknown", "extra"},
        {"arguments", Json(std::vector<std::string>(65, "x"))}};
    for (const auto& [member, value] : wrong) {
        Json document = good();
        document[member] = value;
        const auto manifest = reading(document.dump());
        ASSERT_FALSE(manifest) << member << " " << value;
        EXPECT_EQ(ErrorCode::BadApplication, manifest.error().code);
    }
}

TEST_F(ApplicationManifestTest, whatIsNoManifestIsRefused) {
    for (const std::string& text : {std::string(), std::string("{"), std::string("[]"),
                                    std::string(R"({"id": "a", "id": "a"})"), std::string(70000, ' ')}) {
        const auto manifest = reading(text);
        ASSERT_FALSE(manifest) << text.substr(0, 20);
        EXPECT_EQ(ErrorCode::BadApplication, manifest.error().code);
    }
}

}  // namespace
}  // namespace vxtv
