#include "virtual_tv/base/backup_file.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "common/strict_json.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/base/sealing.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

// It contains a line end, so that a copy made in text mode is noticed.
constexpr std::string_view kMagic("VXBAK\r\n\x1a", 8);
constexpr std::uint32_t kContainerVersion = 1;
constexpr std::size_t kDigestSize = 32;

constexpr std::size_t kContainerVersionOffset = kMagic.size();
constexpr std::size_t kServiceOffset = kContainerVersionOffset + kNumberSize;
constexpr std::size_t kVersionOffset = kServiceOffset + kLongestServiceName;
constexpr std::size_t kLengthOffset = kVersionOffset + kNumberSize;
constexpr std::size_t kDigestOffset = kLengthOffset + kNumberSize;
constexpr std::size_t kHeaderSize = kDigestOffset + kDigestSize;

/// Empty if libcrypto fails.
std::string digestOf(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr) != 1) {
        return {};
    }
    return {digest.begin(), digest.begin() + size};
}

std::string paddedName(std::string_view service) {
    std::string name(service);
    name.resize(kLongestServiceName, '\0');
    return name;
}

tl::unexpected<Error> notABackup(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::NotABackupFile,
                   fmt::format("{} is no backup of a service: {}; make the backup anew", file.string(), why));
}

tl::unexpected<Error> damaged(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::DamagedBackup,
                   fmt::format("the backup {} is damaged: {}; copy it again, or make the backup anew",
                               file.string(), why));
}

tl::unexpected<Error> otherVersion(const fs::path& file, std::uint32_t found, std::uint32_t known) {
    return failure(
        ErrorCode::OtherVersion,
        fmt::format("the backup {} is of version {}, and this television knows {}; make the backup "
                    "anew",
                    file.string(), found, known));
}

tl::unexpected<Error> cannotRead(const fs::path& file, const ReadTrouble& trouble) {
    switch (trouble.kind) {
        case ReadTrouble::Kind::Missing:
            return failure(ErrorCode::NoBackupFile,
                           fmt::format("there is no backup {}; the package does not hold it, or is not whole",
                                       file.string()));
        case ReadTrouble::Kind::NoPlainFile:
            return notABackup(file, trouble.reason);
        case ReadTrouble::Kind::CannotBeRead:
            break;
    }
    return failure(ErrorCode::Io, fmt::format("the backup {} cannot be read: {}; check who may read it",
                                              file.string(), trouble.reason));
}

/// Checks that the header belongs to this service, and that the body matches the header.
Result<void> checkContainer(std::string_view bytes, std::string_view service, std::uint32_t version,
                            const fs::path& file) {
    const auto numberAt = [bytes](std::size_t offset) { return fromBigEndian(bytes.substr(offset)); };
    if (bytes.substr(0, kMagic.size()) != kMagic) {
        return notABackup(file, "its first bytes are others");
    }
    if (bytes.size() < kHeaderSize) {
        return damaged(file, "it ends too early");
    }
    if (numberAt(kContainerVersionOffset) != kContainerVersion) {
        return otherVersion(file, numberAt(kContainerVersionOffset), kContainerVersion);
    }
    if (bytes.substr(kServiceOffset, kLongestServiceName) != paddedName(service)) {
        return failure(ErrorCode::OtherService,
                       fmt::format("the backup {} is not of the service {}; make the backup anew",
                                   file.string(), service));
    }
    if (numberAt(kVersionOffset) != version) {
        return otherVersion(file, numberAt(kVersionOffset), version);
    }
    const std::string_view body = bytes.substr(kHeaderSize);
    if (numberAt(kLengthOffset) != body.size()) {
        return damaged(file, "its length is not the one that it tells");
    }
    if (bytes.substr(kDigestOffset, kDigestSize) != digestOf(body)) {
        return damaged(file, "its checksum does not fit");
    }
    return {};
}

Result<Json> documentIn(std::string_view body, const fs::path& file) {
    try {
        return vxcommon::parseStrictly(body, {kDeepestBackup});
    } catch (const WrongMember& wrong) {
        return damaged(file, fmt::format("\"{}\" {}", wrong.member, wrong.reason));
    } catch (const Json::exception&) {
        return damaged(file, "its content is no JSON");
    }
}

Result<std::string> textOf(const Json& body, const fs::path& file) {
    std::string text;
    try {
        text = body.dump();
    } catch (const Json::exception&) {
        return failure(ErrorCode::BadArgument, fmt::format("the backup {} cannot be written: its content is "
                                                           "no text; set the service's values again",
                                                           file.string()));
    }
    if (text.size() > kLargestBackupBody || !documentIn(text, file)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("the backup {} cannot be written: its content has more than {} MiB or {} "
                                   "layers; remove some of the service's data",
                                   file.string(), kLargestBackupBody >> 20U, kDeepestBackup));
    }
    return text;
}

}  // namespace

Result<void> writeBackupFile(const fs::path& file, std::string_view service, int version, const Json& body) {
    if (service.empty() || service.size() > kLongestServiceName || version < 1) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("the backup {} cannot be written: \"{}\" in version {} names no service; "
                                   "report this as a defect",
                                   file.string(), service, version));
    }
    return textOf(body, file).and_then([&](const std::string& text) -> Result<void> {
        const std::string digest = digestOf(text);
        if (digest.size() != kDigestSize) {
            return failure(ErrorCode::Io,
                           fmt::format("the backup {} cannot be written: no checksum of it can be made; try "
                                       "again",
                                       file.string()));
        }
        const std::string header = std::string(kMagic) + toBigEndian(kContainerVersion) +
                                   paddedName(service) + toBigEndian(static_cast<std::uint32_t>(version)) +
                                   toBigEndian(static_cast<std::uint32_t>(text.size())) + digest;
        return writePrivateFile(file, header + text, Existing::Replace);
    });
}

Result<Json> readBackupFile(const fs::path& file, std::string_view service, int version) {
    const auto bytes = readPlainFile(file, kHeaderSize + kLargestBackupBody + 1);
    if (!bytes) {
        return cannotRead(file, bytes.error());
    }
    return checkContainer(*bytes, service, static_cast<std::uint32_t>(version), file).and_then([&] {
        return documentIn(std::string_view(*bytes).substr(kHeaderSize), file);
    });
}

}  // namespace vxtv
