#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/contract/world.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/services/sample_channels.h"
#include "tests/support/services/sample_services.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/bus/bus_share.h"
#include "virtual_tv/factory/creation.h"
#include "virtual_tv/store/folder.h"
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
    vxtest::addSampleServices(profile, vxtest::Sample::Lowest);
    vxtest::addSampleChannels(profile);
    return profile;
}

/// The television of this process's platform. The platform looks for it once, at the first call, so all tests
/// of the process share it.
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

    ~SharedTelevision() {
        application_.reset();
        if (bus_) {
            bus_->endBus();
        }
    }

    vxtv::Television& operator*() { return *television_; }

    /// Starts the television's bus and an application on it, unless they run already.
    void startApplication(const std::string& id) {
        if (application_) {
            return;
        }
        bus_.emplace(television_->folder());
        if (const auto taken = bus_->take(); !taken) {
            throw std::runtime_error(taken.error().sentence);
        }
        application_.emplace(vxtest::Program{{VX_ANSWERING_APPLICATION},
                                             {{vxtv::kApplicationIdVariable, id}},
                                             {},
                                             {},
                                             std::chrono::minutes(1)});
        if (!application_->waitForOutput("up")) {
            throw std::runtime_error("the application has no port: " + application_->wait().errors);
        }
    }

 private:
    vxtest::TemporaryDirectory place_;
    std::optional<vxtv::Television> television_;
    std::optional<vxtv::BusShare> bus_;
    std::optional<vxtest::RunningProcess> application_;
};

constexpr const char* kApplication = "org.example.staying";

/// Installs an application that runs until it is ended.
void installApplication(const vxtv::Folder& television) {
    const vxtest::TemporaryDirectory source;
    const std::filesystem::path program = source / "bin/stay";
    vxtest::writeFile(source / vxtv::kManifestName,
                      vxtv::manifestText({kApplication, "Stays", "bin/stay", {}, false}));
    vxtest::writeFile(program, "#!/bin/sh\nexec sleep 1000\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    if (const auto installed = vxtv::Applications(television).install(source.path()); !installed) {
        throw std::runtime_error(installed.error().sentence);
    }
}

class VirtualWorld : public World {
 public:
    VirtualWorld() {
        faults().clear();
        std::filesystem::remove_all(television().folder().secureEntries());
        std::filesystem::remove_all(packageDirectory());
        std::filesystem::create_directories(packageDirectory());
        log_ = logText().size();
        if (!vxtv::Applications(television().folder()).find(kApplication)) {
            installApplication(television().folder());
        }
    }
    ~VirtualWorld() override {
        // Most tests have not started it, so a failure does not matter.
        static_cast<void>(vxtv::stopApplication(television().folder(), kApplication));
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

    std::string packageDirectory() const override {
        return vxtv::cloneDirectory(television().folder()).string();
    }
    std::string picture() const override {
        const std::filesystem::path picture = television().folder().tmp() / "picture.png";
        std::ofstream(picture, std::ios::binary) << vxtest::kPngBytes;
        return picture.string();
    }
    int sourceId() const override { return vxtest::kSampleSource; }

    std::string answeringApplication() override {
        shared().startApplication("org.example.answering");
        return "org.example.answering";
    }
    std::string absentApplication() const override { return "org.example.absent"; }

    std::string application() const override { return kApplication; }

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
    static SharedTelevision& shared() {
        static SharedTelevision shared;
        return shared;
    }
    static vxtv::Television& television() { return *shared(); }
    static vxtv::FaultPlan faults() { return television().faults(); }
    /// The television's log so far. The first line creates the file.
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
