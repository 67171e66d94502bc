#include "virtual_tv/apps/hotel_app/package_index.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <array>
#include <nlohmann/json.hpp>
#include <set>

#include "common/printable.h"
#include "common/strict_json.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv::hotel {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

constexpr const char* kFormat = "hotel application data";
constexpr int kVersion = 1;
constexpr int kDeepest = 4;
constexpr int kIndent = 2;
constexpr std::size_t kLongestName = 255;

/// Empty if libcrypto fails; then no entry matches.
std::string sha256Of(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr) != 1) {
        return {};
    }
    std::string text;
    for (unsigned int at = 0; at < size; ++at) {
        text += fmt::format("{:02x}", digest.at(at));
    }
    return text;
}

bool isFileOfOurs(const std::string& name) {
    const std::string folder = std::string(kPicturesName) + "/";
    if (name == kDatabaseName) {
        return true;
    }
    const std::string plain = name.rfind(folder, 0) == 0 ? name.substr(folder.size()) : "";
    return !plain.empty() && plain.size() <= kLongestName && plain != "." && plain != ".." &&
           plain.find('/') == std::string::npos;
}

std::uint64_t sizeIn(const Json& value, const std::string& where) {
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > kLargestFile) {
        throw WrongMember{where, fmt::format("is no size of at most {} MiB", kLargestFile >> 20U)};
    }
    return value.get<std::uint64_t>();
}

IndexEntry entryIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"name", "size", "sha256"});
    IndexEntry entry;
    entry.name = stringIn(memberOf(value, where, "name"), where);
    if (!isFileOfOurs(entry.name)) {
        throw WrongMember{where, "names no file that such a package has"};
    }
    entry.size = sizeIn(memberOf(value, where, "size"), where);
    entry.sha256 = stringIn(memberOf(value, where, "sha256"), where);
    return entry;
}

std::vector<IndexEntry> entriesIn(const Json& document) {
    const Json& files = memberOf(document, "", "files");
    expectArray(files, "files");
    if (files.size() > kMostFiles) {
        throw WrongMember{"files", fmt::format("has more than {} entries", kMostFiles)};
    }
    std::vector<IndexEntry> entries;
    std::set<std::string> names;
    std::uint64_t total = 0;
    for (const Json& file : files) {
        entries.push_back(entryIn(file, fmt::format("files > {}", entries.size() + 1)));
        total += entries.back().size;
        if (!names.insert(entries.back().name).second) {
            throw WrongMember{"files", fmt::format("names {} twice", entries.back().name)};
        }
    }
    if (names.count(kDatabaseName) == 0 || total > kLargestPackage) {
        throw WrongMember{"files", fmt::format("has no {}, or more than {} MiB in all", kDatabaseName,
                                               kLargestPackage >> 20U)};
    }
    return entries;
}

tl::unexpected<Error> noIndex(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::NotABackupFile,
                   fmt::format("{} is no list of this application's data: {}; make the backup anew",
                               file.string(), vxcommon::printable(why)));
}

Result<std::vector<IndexEntry>> judge(const Json& document, const fs::path& file,
                                      const std::string& application) {
    expectObject(document, "");
    if (stringIn(memberOf(document, "", "format"), "format") != kFormat) {
        return noIndex(file, "its format is another");
    }
    const int version = intIn(memberOf(document, "", "version"), "version");
    if (version != kVersion) {
        return failure(ErrorCode::OtherVersion,
                       fmt::format("{} is of version {}, and this application knows {}; use the same version "
                                   "on both televisions",
                                   file.string(), version, kVersion));
    }
    expectOnly(document, "", {"format", "version", "application", "files"});
    if (stringIn(memberOf(document, "", "application"), "application") != application) {
        return failure(
            ErrorCode::OtherService,
            fmt::format("{} lists the data of another application; make the backup anew", file.string()));
    }
    return entriesIn(document);
}

}  // namespace

IndexEntry describe(const std::string& name, std::string_view bytes) {
    return {name, bytes.size(), sha256Of(bytes)};
}

bool fits(const IndexEntry& entry, std::string_view bytes) {
    return entry.size == bytes.size() && !entry.sha256.empty() && entry.sha256 == sha256Of(bytes);
}

Result<std::string> indexText(const std::string& application, const std::vector<IndexEntry>& files) {
    nlohmann::ordered_json document = {{"format", kFormat},
                                       {"version", kVersion},
                                       {"application", application},
                                       {"files", nlohmann::ordered_json::array()}};
    for (const IndexEntry& file : files) {
        document["files"].push_back({{"name", file.name}, {"size", file.size}, {"sha256", file.sha256}});
    }
    try {
        return document.dump(kIndent) + "\n";
    } catch (const Json::exception& error) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("a picture of {} has a name that is no UTF-8; rename it", application));
    }
}

Result<std::vector<IndexEntry>> readIndex(const fs::path& file, const std::string& application) {
    const auto text = readPlainFile(file, kLargestIndex + 1);
    if (!text || text->size() > kLargestIndex) {
        return noIndex(file, text ? "it is too long" : text.error().reason);
    }
    try {
        return judge(vxcommon::parseStrictly(*text, {kDeepest}), file, application);
    } catch (const WrongMember& wrong) {
        return noIndex(file, fmt::format("\"{}\" {}", wrong.member, wrong.reason));
    } catch (const Json::exception& error) {
        return noIndex(file, "it is not JSON");
    }
}

}  // namespace vxtv::hotel
