// `vxtv services` and `vxtv sources`, as a user sees them.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/machine/process.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/services/source_list.h"

namespace vxtv {
namespace {

using Json = nlohmann::json;
using vxtest::Finished;

class ServicesCommand : public testing::Test {
 protected:
    static Finished vxtv(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), vxtest::vxtvProgram().string());
        vxtest::Program program;
        program.command = std::move(arguments);
        return vxtest::run(program);
    }
    static Json documentOf(std::vector<std::string> arguments) {
        arguments.emplace_back("--json");
        const Finished done = vxtv(arguments);
        EXPECT_EQ(done.status, 0) << done.errors;
        return Json::parse(done.output);
    }

    test::TestFolder folder_;
    const std::string place_ = folder_.path() / "tv";
    Television television_ = test::makeTelevision(place_);
};

TEST_F(ServicesCommand, listsEachServiceThatTheTelevisionHas) {
    const Json list = documentOf({"services", place_});
    EXPECT_EQ(list.size(), test::smallProfile().services.size());
    EXPECT_EQ(list.at(0), (Json{{"name", "factory"}, {"cloned", 10}, {"kept", 4}}));
    EXPECT_NE(vxtv({"services", place_}).output.find("home-data"), std::string::npos);
}

TEST_F(ServicesCommand, showsTheValuesOfEveryServiceByItsName) {
    for (const auto& [name, section] : test::smallProfile().services) {
        EXPECT_EQ(documentOf({"services", place_, name}).at("name"), name);
    }
    const Json factory = documentOf({"services", place_, "factory"});
    EXPECT_EQ(factory.at("cloned").at("region/code"), "\"eu\"");
    EXPECT_EQ(factory.at("kept").at("identity/operatingHours"), "0");
    EXPECT_NE(vxtv({"services", place_, "factory"}).output.find("identity/operatingHours"),
              std::string::npos);
}

TEST_F(ServicesCommand, unknownServiceAndMissingTelevisionAreRefused) {
    const Finished refused = vxtv({"services", place_, "nonsense"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("nonsense"), std::string::npos);
    EXPECT_EQ(vxtv({"services", folder_.path() / "none"}).status, 2);
    EXPECT_EQ(vxtv({"sources", folder_.path() / "none"}).status, 2);
}

TEST_F(ServicesCommand, sourcesShowTheIconsThatWereSet) {
    const std::string picture = folder_.path() / "picture.jpg";
    test::writeFile(picture, "\xFF\xD8\xFF");
    ASSERT_TRUE(SourceList(television_.database()).setIcons(10, {picture, picture, picture, 4}));
    const Json sources = documentOf({"sources", place_});
    ASSERT_EQ(sources.size(), 3U);
    EXPECT_EQ(sources.at(0).at("icons"), nullptr);
    EXPECT_EQ(sources.at(1).at("name"), "Box");
    EXPECT_EQ(sources.at(1).at("icons").at("icon"), picture);
    EXPECT_EQ(sources.at(1).at("icons").at("iconType"), 4);
    EXPECT_NE(vxtv({"sources", place_}).output.find(picture), std::string::npos);
}

}  // namespace
}  // namespace vxtv
