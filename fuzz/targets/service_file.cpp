// The files of the services that own data: any bytes, or a valid container with any document.

#include <openssl/evp.h>

#include <array>
#include <functional>

#include "fuzz/input.h"
#include "fuzz/small_television.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/base/sealing.h"
#include "virtual_tv/services/timer_store.h"
#include "virtual_tv/services/value_services.h"

namespace vxfuzz {
namespace {

namespace fs = std::filesystem;
using vxtv::Database;
using vxtv::Result;
using vxtv::Stage;

/// A service as the platform's calls use it.
struct Service {
    std::string name;
    std::string file;
    std::function<Result<void>(Database&, const fs::path&)> save;
    std::function<Result<void>(Database&, const fs::path&)> load;
};

Service valuesOf(const vxtv::ValueService& service, Stage stage = Stage::Whole) {
    return {std::string(service.name), std::string(service.file),
            [&service](Database& database, const fs::path& folder) {
                return vxtv::ServiceValues(database, service).backUp(folder);
            },
            [&service, stage](Database& database, const fs::path& folder) {
                return vxtv::ServiceValues(database, service).restore(folder, stage);
            }};
}

const Service& serviceOf(unsigned char choice) {
    static const std::array services = {valuesOf(vxtv::factoryService()),
                                        valuesOf(vxtv::avService()),
                                        valuesOf(vxtv::settingsService()),
                                        valuesOf(vxtv::settingsService(), Stage::Early),
                                        valuesOf(vxtv::settingsService(), Stage::Later),
                                        valuesOf(vxtv::webApplicationService()),
                                        Service{"home-data", std::string(vxtv::homeDataService().file),
                                                vxtv::backUpHomeData, vxtv::restoreHomeData},
                                        Service{"timers", vxtv::kTimerFile,
                                                [](Database& database, const fs::path& folder) {
                                                    return vxtv::TimerStore(database).exportTo(folder);
                                                },
                                                [](Database& database, const fs::path& folder) {
                                                    return vxtv::TimerStore(database).importFrom(folder);
                                                }}};
    return services.at(choice % services.size());
}

std::string digestOf(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr);
    return {digest.begin(), digest.begin() + size};
}

/// The container as described in docs/service-backups.md.
std::string container(std::string service, std::string_view body) {
    service.resize(vxtv::kLongestServiceName);
    return std::string("VXBAK\r\n\x1a", 8) + vxtv::toBigEndian(1) + service + vxtv::toBigEndian(1) +
           vxtv::toBigEndian(static_cast<std::uint32_t>(body.size())) + digestOf(body) + std::string(body);
}

/// Saves what was loaded, loads it again, and requires that saving it again gives the same.
void saveAgain(const SmallTelevision& television, const Service& service) {
    const vxtv::Texts loaded = television.texts(service.name);
    const fs::path& folder = television.otherPackage();
    require(service.save(television.database(), folder).has_value(), "what was loaded is saved");
    const std::string saved = vxtest::readFile(folder / service.file);
    require(service.load(television.database(), folder).has_value(), "what was saved is loaded");
    require(television.texts(service.name) == loaded, "loading what was saved changes nothing");
    require(service.save(television.database(), folder).has_value() &&
                vxtest::readFile(folder / service.file) == saved,
            "the same is saved in the same bytes");
}

void run(std::string_view bytes) {
    static const SmallTelevision television;
    Input input(bytes);
    const unsigned char mode = input.byte();
    const Service& service = serviceOf(input.byte());
    const std::string_view rest = input.rest();
    vxtest::writeFile(television.package() / service.file,
                      mode == 'd' ? container(service.name, rest) : std::string(rest));
    const vxtv::Texts before = television.texts(service.name);
    if (const auto loaded = service.load(television.database(), television.package())) {
        saveAgain(television, service);
    } else {
        requireShowable(loaded.error().sentence);
        require(television.texts(service.name) == before, "a file that is refused changes nothing");
    }
}

const Target kServiceFile("service_file", run);

}  // namespace
}  // namespace vxfuzz
