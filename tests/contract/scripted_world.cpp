#include <algorithm>

#include "tests/contract/world.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxcontract {

namespace {

class ScriptedWorld : public World {
 public:
    ScriptedWorld() {
        platform_.reset();
        platform_.setModel(model());
        platform_.setProductTag(productTag());
        platform_.setTunerType(tunerType());
        platform_.setFeature(intFeature(), intFeatureValue());
        platform_.setFeature(boolFeature(), boolFeatureValue() ? 1 : 0);
        platform_.setSetting(intKey(), 0);
        platform_.setSetting(boolKey(), vxtest::BoolSetting{});
        platform_.setSetting(stringKey(), std::string());
        platform_.setInstalledSecrets(
            {{"VX_CLONE_API_AES_KEY", installedKey()}, {"VX_CLONE_API_AES_IV", installedIv()}});
        platform_.setSources({{1, {"Box", sourceId(), 0}}, {0, {"TV", 1, 1}}, {1, {"HDMI 2", 11, 2}}});
        platform_.setTimezone(29);
        platform_.setRemotePort(absentApplication(), false);
        platform_.setDirectories("/opt/boot", "/opt/mbr", "/opt/home");
    }

    std::string model() const override { return "Model 1"; }
    std::string productTag() const override { return "TAG-1"; }
    int tunerType() const override { return 3; }
    std::string intFeature() const override { return "com.example/number"; }
    int intFeatureValue() const override { return 4; }
    std::string boolFeature() const override { return "com.example/switch"; }
    bool boolFeatureValue() const override { return true; }
    std::string intKey() const override { return "db/int"; }
    std::string boolKey() const override { return "db/bool"; }
    std::string stringKey() const override { return "db/string"; }

    std::string keyFile() const override { return "/key.bin"; }
    std::string installedKey() const override { return std::string(32, 'k'); }
    std::string installedIv() const override { return std::string(16, 'i'); }
    std::string clientIdentifier() const override { return "12345678901234567890"; }

    std::string packageDirectory() const override { return "/package"; }
    std::string picture() const override { return "/picture.png"; }
    int sourceId() const override { return 10; }

    std::string answeringApplication() override {
        platform_.replyToSends({{{"response_clone", "success"}}});
        return "org.example.answering";
    }
    std::string absentApplication() const override { return "org.example.absent"; }

    std::string application() const override { return "org.example.application"; }

    void failOnce(const std::string& call, int status, int nth) override {
        platform_.answerOnce(call, status, nth);
    }

    int logLinesWith(const std::string& text) const override {
        const auto log = platform_.log();
        return static_cast<int>(std::count_if(log.begin(), log.end(), [&](const vxtest::LogLine& line) {
            return line.message.find(text) != std::string::npos;
        }));
    }

 private:
    vxtest::ScriptedPlatform& platform_ = vxtest::ScriptedPlatform::instance();
};

}  // namespace

std::unique_ptr<World> World::make() {
    return std::make_unique<ScriptedWorld>();
}

}  // namespace vxcontract
