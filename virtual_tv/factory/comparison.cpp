#include "virtual_tv/factory/comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <set>
#include <system_error>

#include "virtual_tv/applications/application_data.h"
#include "virtual_tv/services/data_services.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/store/setting_text.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAbsent = "(not there)";

/// Differences between two sets of named texts.
std::vector<Difference> differencesOf(const Texts& first, const Texts& second) {
    std::set<std::string> names;
    for (const Texts* texts : {&first, &second}) {
        for (const auto& [name, text] : *texts) {
            names.insert(name);
        }
    }
    std::vector<Difference> differences;
    for (const std::string& name : names) {
        const auto mine = first.find(name);
        const auto theirs = second.find(name);
        Difference difference{name, mine == first.end() ? kAbsent : mine->second,
                              theirs == second.end() ? kAbsent : theirs->second};
        if (difference.first != difference.second) {
            differences.push_back(std::move(difference));
        }
    }
    return differences;
}

Result<Texts> settingTexts(const Television& television) {
    const Result<std::vector<Setting>> settings = television.settings().list();
    VX_RETURN_IF_FAILED(settings);
    Texts texts;
    for (const Setting& setting : *settings) {
        if (!setting.isStatus) {
            texts[setting.key] = quotedText(setting.value);
        }
    }
    return texts;
}

Result<AreaComparison> compareSettings(const Television& first, const Television& second) {
    const Result<Texts> firstTexts = settingTexts(first);
    const Result<Texts> secondTexts = firstTexts ? settingTexts(second) : firstTexts;
    VX_RETURN_IF_FAILED(secondTexts);
    return AreaComparison{kSettingsArea, differencesOf(*firstTexts, *secondTexts)};
}

/// The data of a service.
struct ServiceContent {
    bool present = false;
    Texts carried;
    Texts kept;
};

Result<ServiceContent> contentOf(const DataService& service, const Television& television) {
    return television.database().read([&service](SQLite::Database& connection) -> Result<ServiceContent> {
        if (!hasDataService(connection, service.name)) {
            return ServiceContent{};
        }
        return ServiceContent{true, service.texts(connection),
                              service.keptTexts != nullptr ? service.keptTexts(connection) : Texts()};
    });
}

/// Compares each service that one of the two has.
Result<void> compareServices(const Television& first, const Television& second,
                             std::vector<AreaComparison>& comparisons) {
    for (const DataService& service : dataServices()) {
        const auto mine = contentOf(service, first);
        const auto theirs = mine ? contentOf(service, second) : mine;
        VX_RETURN_IF_FAILED(theirs);
        const std::string name(service.name);
        if (mine->present || theirs->present) {
            comparisons.push_back({name, differencesOf(mine->carried, theirs->carried)});
        }
        if (!mine->kept.empty() || !theirs->kept.empty()) {
            const bool isLost = !service.lostArea.empty();
            comparisons.push_back({isLost ? std::string(service.lostArea) : name + "-kept",
                                   differencesOf(mine->kept, theirs->kept),
                                   isLost ? Fate::Lost : Fate::Kept});
        }
    }
    return {};
}

/// Compares the applications if one of the two has any.
Result<void> compareApplications(const Television& first, const Television& second,
                                 std::vector<AreaComparison>& comparisons) {
    const auto mine = applicationTexts(first.folder());
    const auto theirs = mine ? applicationTexts(second.folder()) : mine;
    VX_RETURN_IF_FAILED(theirs);
    if (*mine || *theirs) {
        comparisons.push_back(
            {kApplicationsArea, differencesOf(mine->value_or(Texts()), theirs->value_or(Texts()))});
    }
    return {};
}

std::string kindOf(const fs::path& path) {
    const fs::file_status status = fs::symlink_status(path);
    switch (status.type()) {
        case fs::file_type::regular:
            return fmt::format("{} bytes", fs::file_size(path));
        case fs::file_type::symlink:
            return fmt::format("link to {}", fs::read_symlink(path).string());
        case fs::file_type::directory:
            return "folder";
        default:
            return "special file";
    }
}

/// Everything below the directory: relative path and content. No link is followed.
Texts contentsOf(const fs::path& directory) {
    Texts contents;
    if (fs::is_directory(fs::symlink_status(directory))) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
            contents[entry.path().lexically_relative(directory).string()] = kindOf(entry.path());
        }
    }
    return contents;
}

bool haveSameBytes(const fs::path& first, const fs::path& second) {
    constexpr std::size_t kChunk = 64 * 1024;
    std::ifstream firstFile(first, std::ios::binary);
    std::ifstream secondFile(second, std::ios::binary);
    if (!firstFile || !secondFile) {
        throw fs::filesystem_error("cannot be read", firstFile ? second : first,
                                   std::make_error_code(std::errc::permission_denied));
    }
    std::vector<char> mine(kChunk);
    std::vector<char> theirs(kChunk);
    while (firstFile && secondFile) {
        firstFile.read(mine.data(), kChunk);
        secondFile.read(theirs.data(), kChunk);
        const auto count = firstFile.gcount();
        if (count != secondFile.gcount() || !std::equal(mine.begin(), mine.begin() + count, theirs.begin())) {
            return false;
        }
    }
    return firstFile.eof() && secondFile.eof();
}

AreaComparison comparePictures(const PictureArea& area, const Television& first, const Television& second) {
    const fs::path firstPlace = placeOf(first.folder(), area.path);
    const fs::path secondPlace = placeOf(second.folder(), area.path);
    const Texts firstContents = contentsOf(firstPlace);
    AreaComparison comparison{std::string(area.name), differencesOf(firstContents, contentsOf(secondPlace))};
    for (const auto& [name, kind] : firstContents) {
        const bool alreadyDiffers =
            std::any_of(comparison.differences.begin(), comparison.differences.end(),
                        [&name = name](const Difference& it) { return it.name == name; });
        if (!alreadyDiffers && fs::is_regular_file(fs::symlink_status(firstPlace / name)) &&
            !haveSameBytes(firstPlace / name, secondPlace / name)) {
            comparison.differences.push_back({name, kind, kind + ", other content"});
        }
    }
    return comparison;
}

}  // namespace

Result<std::vector<AreaComparison>> compareTelevisions(const Television& first, const Television& second) {
    Result<AreaComparison> settings = compareSettings(first, second);
    VX_RETURN_IF_FAILED(settings);
    std::vector<AreaComparison> comparisons = {std::move(*settings)};
    VX_RETURN_IF_FAILED(compareServices(first, second, comparisons));
    try {
        for (const PictureArea& area : kPictureAreas) {
            comparisons.push_back(comparePictures(area, first, second));
        }
    } catch (const fs::filesystem_error& error) {
        return failure(ErrorCode::Io, fmt::format("{} cannot be compared: {}; check who may read it",
                                                  error.path1().string(), error.code().message()));
    }
    return compareApplications(first, second, comparisons).map([&] { return std::move(comparisons); });
}

}  // namespace vxtv
