// The data of the hotel's application: any index, or any database with a correct index.

#include <filesystem>

#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/apps/hotel_app/data_package.h"
#include "virtual_tv/apps/hotel_app/package_index.h"

namespace vxfuzz {
namespace {

namespace fs = std::filesystem;
using namespace vxtv::hotel;

constexpr const char* kId = "org.example.hotel";

/// An application that has data, and a folder for its package.
struct Place {
    Place() {
        const fs::path pictures = folder / "app" / "data" / kPicturesName;
        fs::create_directories(pictures);
        vxtest::writeFile(pictures / "one.png", "picture");
        require(
            createDatabase(data.path() / kDatabaseName, {{{"en", "Hello"}}, {{"One", "body", "one.png", 1}}})
                .has_value(),
            "a database can be made");
        fs::create_directories(package() / kPicturesName);
    }
    fs::path where() const { return folder / "clone"; }
    fs::path package() const { return where() / kId; }

    vxtest::TemporaryDirectory folder;
    DataFolder data{folder / "app"};
};

void readAny(const Place& place, std::string_view index) {
    const fs::path file = place.where() / "index";
    vxtest::writeFile(file, index);
    const auto entries = readIndex(file, kId);
    if (!entries) {
        requireShowable(entries.error().sentence);
        return;
    }
    const auto text = indexText(kId, *entries);
    require(text.has_value(), "an index that was read can be written");
    vxtest::writeFile(file, *text);
    const auto again = readIndex(file, kId);
    require(again && indexText(kId, *again) == *text, "an index is read as it was written");
}

void loadAny(const Place& place, std::string_view database) {
    vxtest::writeFile(place.package() / kDatabaseName, database);
    vxtest::writeFile(place.package() / kIndexName,
                      indexText(kId, {describe(kDatabaseName, database)}).value());
    const auto before = vxtest::snapshot(place.data.path());
    if (const auto loaded = loadPackage(place.data, place.where(), kId, [] {}); !loaded) {
        requireShowable(loaded.error().sentence);
        require(vxtest::snapshot(place.data.path()) == before && !fs::exists(place.data.staging()),
                "a package that is refused changes nothing");
        return;
    }
    require(!fs::exists(place.data.staging()), "nothing is left of the loading");
    require(vxtest::readFile(place.data.path() / kDatabaseName) == database, "a package is loaded as it is");
    const fs::path copy = place.where() / "copy";
    fs::remove(copy);
    require(snapshotDatabase(place.data.path() / kDatabaseName, copy).has_value() &&
                checkDatabase(copy).has_value(),
            "what was loaded can be saved and loaded again");
}

void run(std::string_view bytes) {
    static const Place place;
    Input input(bytes);
    input.byte() == 'd' ? loadAny(place, input.rest()) : readAny(place, input.rest());
}

const Target kApplicationPackage("application_package", run);

}  // namespace
}  // namespace vxfuzz
