// The channel archive and the hotel's list beside it: any bytes, any members, or members with a correct
// index.

#include "virtual_tv/channels/channel_archive.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include "fuzz/input.h"
#include "fuzz/small_television.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/unit/virtual_tv/channels/zip_builder.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/channels/zip_archive.h"

namespace vxfuzz {
namespace {

namespace fs = std::filesystem;
using vxtv::ChannelArchive;
using vxtv::ChannelStore;
using vxtv::test::ZipMember;

constexpr char kMark = '\x1e';
constexpr const char* kService = "channels";

std::string digestOf(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr);
    std::string text;
    for (unsigned place = 0; place < size; ++place) {
        text += fmt::format("{:02x}", digest.at(place));
    }
    return text;
}

std::string told(std::string_view content) {
    return fmt::format(R"({{"bytes":{},"sha256":"{}"}})", content.size(), digestOf(content));
}

/// Any transponders, channels and hotel's list in an otherwise valid archive and file.
void packDocuments(const fs::path& package, Input input) {
    const std::string transponders(input.until(kMark));
    const std::string channels(input.until(kMark));
    const std::string index = fmt::format(
        R"({{"format":"television channel map","version":1,"members":{{"channels.json":{},"transponders.json":{}}}}})",
        told(channels), told(transponders));
    vxtest::writeFile(
        package / vxtv::kChannelArchiveFile,
        vxtv::test::packedAsTold(
            {{"channels.json", channels}, {"index.json", index}, {"transponders.json", transponders}}));
    const auto hotelList = nlohmann::json::parse(input.rest(), nullptr, false);
    if (!hotelList.is_discarded()) {
        static_cast<void>(
            vxtv::writeBackupFile(package / vxtv::kHotelListFile, "hotel-channels", 1, hotelList));
    }
}

/// Members of any names and kinds.
void packMembers(const fs::path& package, Input input) {
    std::vector<ZipMember> members;
    while (!input.isEmpty() && members.size() < 8) {
        const unsigned kind = input.byte() % 3U;
        // The packing library accepts only names that are not empty and contain no NUL.
        std::string name = upToNul(input.until(kMark));
        name += name.empty() ? "m" : "";
        ZipMember member{std::move(name), std::string(input.until(kMark))};
        if (kind != 0) {
            member.type = kind == 1 ? AE_IFLNK : AE_IFDIR;
            member.link = kind == 1 ? "target" : "";
            member.content.clear();
        }
        members.push_back(std::move(member));
    }
    vxtest::writeFile(package / vxtv::kChannelArchiveFile, vxtv::test::packedAsTold(members));
}

void exportTo(const SmallTelevision& television, const fs::path& folder) {
    const ChannelArchive archive{ChannelStore(television.database())};
    require(archive.exportMap(folder) && archive.exportHotelList(folder), "what was loaded is saved");
}

void saveAgain(const SmallTelevision& television) {
    const fs::path& folder = television.otherPackage();
    const vxtv::Texts loaded = television.texts(kService);
    exportTo(television, folder);
    const auto saved = vxtest::snapshot(folder);
    require(ChannelArchive(ChannelStore(television.database())).import(folder).has_value(),
            "what was saved is loaded");
    exportTo(television, folder);
    require(television.texts(kService) == loaded && vxtest::snapshot(folder) == saved,
            "loading what was saved changes nothing");
}

void run(std::string_view bytes) {
    static const SmallTelevision television;
    const fs::path& package = television.package();
    fs::remove(package / vxtv::kHotelListFile);
    Input input(bytes);
    switch (input.byte()) {
        case 'd':
            packDocuments(package, input);
            break;
        case 'm':
            packMembers(package, input);
            break;
        default:
            vxtest::writeFile(package / vxtv::kChannelArchiveFile, input.rest());
    }
    const vxtv::Texts before = television.texts(kService);
    if (const auto loaded = ChannelArchive(ChannelStore(television.database())).import(package)) {
        saveAgain(television);
    } else {
        requireShowable(loaded.error().sentence);
        require(television.texts(kService) == before, "an archive that is refused changes nothing");
    }
}

const Target kChannelArchive("channel_archive", run);

}  // namespace
}  // namespace vxfuzz
