#include <algorithm>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/contract/world.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/television/creation.h"
#include "virtual_tv/television/key_file.h"

namespace vxcontract {

namespace {

vxtv::CloneKey plainKey() {
    constexpr std::string_view kIdentifier = "contract-identifier!";
    vxtv::CloneKey key{std::string(32, 'K'), std::string(16, 'I'), {}};
    std::copy(kIdentifier.begin(), kIdentifier.end(), key.credential.identifier.begin());
    key.credential.owner = 1;
    return key;
}

vxtv::Profile plainProfile() {
    vxtv::Profile profile;
    profile.identity = {"Model 2", "TAG-2", 5};
    profile.features = {{"com.example/number", 6}, {"com.example/switch", true}};
    profile.settings = {{"db/int", 0}, {"db/bool", false}, {"db/string", std::string()}};
    profile.installationSecret = std::string(32, 's');
    profile.keyFile = vxtv::sealKeyFile(plainKey(), profile.installationSecret).value();
    return profile;
}

/// The television that the platform of this process finds. It is looked for once, at the first call, so that
/// all tests of the process share it.
class SharedTelevision {
 public:
    SharedTelevision() {
        auto created = vxtv::createTelevision(place_ / "tv", plainProfile());
        if (!created) {
            throw std::runtime_error(created.error().sentence);
        }
        television_.emplace(std::move(*created));
        setenv(vxtv::kTelevisionVariable, television_->folder().root().c_str(), 1);
    }

    vxtv::Television& operator*() { return *television_; }

 private:
    vxtest::TemporaryDirectory place_;
    std::optional<vxtv::Television> television_;
};

class VirtualWorld : public World {
 public:
    VirtualWorld() {
        faults().clear();
        std::filesystem::remove_all(television().folder().secureEntries());
        log_ = logText().size();
    }

    std::string model() const override { return plainProfile().identity.model; }
    std::string productTag() const override { return plainProfile().identity.productTag; }
    int tunerType() const override { return plainProfile().identity.tunerType; }
    std::string intFeature() const override { return "com.example/number"; }
    int intFeatureValue() const override { return 6; }
    std::string boolFeature() const override { return "com.example/switch"; }
    bool boolFeatureValue() const override { return true; }
    std::string intKey() const override { return "db/int"; }
    std::string boolKey() const override { return "db/bool"; }
    std::string stringKey() const override { return "db/string"; }

    std::string keyFile() const override { return vxtv::kCloneKeyFile; }
    std::string installedKey() const override { return plainKey().key; }
    std::string installedIv() const override { return plainKey().iv; }
    std::string clientIdentifier() const override {
        const auto& identifier = plainKey().credential.identifier;
        return {identifier.data(), identifier.size()};
    }

    void failOnce(const std::string& call, int status, int nth) override {
        vxtv::Fault fault;
        fault.call = call;
        fault.nth = nth;
        fault.status = status;
        if (const auto added = faults().add(fault); !added) {
            throw std::runtime_error(added.error().sentence);
        }
    }

    int logLinesWith(const std::string& text) const override {
        std::istringstream lines(logText().substr(log_));
        int found = 0;
        for (std::string line; std::getline(lines, line);) {
            found += line.find(text) != std::string::npos ? 1 : 0;
        }
        return found;
    }

 private:
    static vxtv::Television& television() {
        static SharedTelevision shared;
        return *shared;
    }
    static vxtv::FaultPlan faults() { return television().faults(); }
    /// What the television has logged; it makes its log with the first line.
    static std::string logText() {
        const std::filesystem::path file = television().folder().dlog();
        return std::filesystem::exists(file) ? vxtest::readFile(file) : "";
    }

    std::size_t log_ = 0;  ///< what earlier tests of the process had written
};

}  // namespace

std::unique_ptr<World> World::make() {
    return std::make_unique<VirtualWorld>();
}

}  // namespace vxcontract
