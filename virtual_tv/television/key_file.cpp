#include "virtual_tv/television/key_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/base/sealing.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

// It contains a line end, so that a copy made in text mode is noticed.
constexpr std::string_view kKeyFileMagic("VXKEY\r\n\x1a", 8);
constexpr std::uint32_t kKeyFileVersion = 1;
constexpr std::size_t kKeyFileNonceOffset = kKeyFileMagic.size() + kNumberSize;
constexpr std::size_t kKeyFileHeaderSize = kKeyFileNonceOffset + kNonceSize;
constexpr std::size_t kContentSize = kCredentialSize + CloneKey::kKeySize + CloneKey::kIvSize;
constexpr std::size_t kFileSize = kKeyFileHeaderSize + kContentSize + kTagSize;
constexpr std::string_view kPurpose = "vx-clone key file";

/// A sealing key only for this file.
Result<SealingKey> sealingKeyOf(std::string_view secret, std::string_view nonce) {
    return SealingKey(secret).derive(std::string(kPurpose) + std::string(nonce));
}

/// Random bytes without NUL, because a reader of a text drops a NUL at its end.
Result<std::string> randomText(std::size_t count) {
    Result<std::string> text = randomBytes(count);
    while (text && text->find('\0') != std::string::npos) {
        text = randomBytes(count);
    }
    return text;
}

/// Checks that header and length are those of a key file of this version.
Result<void> checkShape(std::string_view bytes, const fs::path& file) {
    const std::string_view magic = bytes.substr(0, kKeyFileMagic.size());
    if (magic != kKeyFileMagic.substr(0, magic.size())) {
        return failure(
            ErrorCode::NotAKeyFile,
            fmt::format("{} is no key file; give one made by `vxtv keyfile create`", file.string()));
    }
    if (bytes.size() >= kKeyFileNonceOffset &&
        fromBigEndian(bytes.substr(kKeyFileMagic.size())) != kKeyFileVersion) {
        return failure(
            ErrorCode::OtherVersion,
            fmt::format("{} is a key file of version {}, and this vxtv knows {}; make a new one",
                        file.string(), fromBigEndian(bytes.substr(kKeyFileMagic.size())), kKeyFileVersion));
    }
    if (bytes.size() < kFileSize) {
        return failure(ErrorCode::ShortKeyFile,
                       fmt::format("the key file {} ends after {} of {} bytes; copy it again", file.string(),
                                   bytes.size(), kFileSize));
    }
    return {};
}

tl::unexpected<Error> brokenKeyFile(const fs::path& file) {
    return failure(ErrorCode::BrokenSeal,
                   fmt::format("the key file {} is damaged or made for another fleet; copy it again, or make "
                               "one with this fleet's installation secret",
                               file.string()));
}

}  // namespace

Result<CloneKey> makeCloneKey(const Credential& credential) {
    const Result<std::string> key = randomText(CloneKey::kKeySize);
    const Result<std::string> iv = randomText(CloneKey::kIvSize);
    if (!key || !iv) {
        return tl::make_unexpected(key ? iv.error() : key.error());
    }
    return CloneKey{*key, *iv, credential};
}

Result<std::string> sealKeyFile(const CloneKey& key, std::string_view secret) {
    const Result<std::string> nonce = randomBytes(kNonceSize);
    if (!nonce) {
        return nonce;
    }
    const std::string header = std::string(kKeyFileMagic) + toBigEndian(kKeyFileVersion) + *nonce;
    return sealingKeyOf(secret, *nonce)
        .and_then([&](const SealingKey& sealingKey) {
            return seal(sealingKey, *nonce, toBytes(key.credential) + key.key + key.iv, header);
        })
        .map([&header](const std::string& sealed) { return header + sealed; });
}

Result<CloneKey> unsealKeyFile(std::string_view bytes, std::string_view secret, const fs::path& file) {
    if (const Result<void> shape = checkShape(bytes, file); !shape) {
        return tl::make_unexpected(shape.error());
    }
    if (bytes.size() != kFileSize) {
        return brokenKeyFile(file);
    }
    const std::string_view header = bytes.substr(0, kKeyFileHeaderSize);
    const std::string_view nonce = header.substr(kKeyFileNonceOffset);
    const Result<std::string> content =
        sealingKeyOf(secret, nonce).and_then([&](const SealingKey& sealingKey) {
            return unseal(sealingKey, nonce, bytes.substr(kKeyFileHeaderSize), header);
        });
    if (!content) {
        return content.error().code == ErrorCode::BrokenSeal ? brokenKeyFile(file)
                                                             : tl::make_unexpected(content.error());
    }
    return CloneKey{content->substr(kCredentialSize, CloneKey::kKeySize),
                    content->substr(kCredentialSize + CloneKey::kKeySize), credentialIn(*content)};
}

Result<std::string> readKeyFile(const fs::path& file) {
    const auto bytes = readPlainFile(file, kFileSize + 1);
    if (bytes) {
        return *bytes;
    }
    const std::string& why = bytes.error().reason;
    switch (bytes.error().kind) {
        case ReadTrouble::Kind::Missing:
            return failure(ErrorCode::NoKeyFile, fmt::format("there is no key file {}; make one with: vxtv "
                                                             "keyfile create FILE",
                                                             file.string()));
        case ReadTrouble::Kind::NoPlainFile:
            return failure(ErrorCode::NotAKeyFile,
                           fmt::format("{} is no key file: {}; give the file itself", file.string(), why));
        case ReadTrouble::Kind::CannotBeRead:
            break;
    }
    return failure(ErrorCode::Io, fmt::format("the key file {} cannot be read: {}; check who may read it",
                                              file.string(), why));
}

Result<std::string> readFleetSecret(const fs::path& file) {
    const auto bytes = readPlainFile(file, SealingKey::kSize + 1);
    if (bytes && bytes->size() == SealingKey::kSize) {
        return *bytes;
    }
    return failure(
        ErrorCode::NoFleetSecret,
        fmt::format("{} is no installation secret: {}; give a plain file of {} random bytes", file.string(),
                    bytes ? "it has another length" : bytes.error().reason, SealingKey::kSize));
}

namespace {

using Json = nlohmann::json;

constexpr std::size_t kLargestClient = 4096;

std::optional<std::int64_t> memberOfClient(const Json& document, const char* name) {
    using Limits = std::numeric_limits<std::int32_t>;
    const Json* const value = memberIfThere(document, name);
    return value == nullptr ? std::nullopt : wholeNumber(*value, Limits::min(), Limits::max());
}

tl::unexpected<Error> badClient(const std::filesystem::path& file, const std::string& why) {
    return failure(ErrorCode::BadArgument,
                   fmt::format("{} does not say whom the clone key belongs to: {}; give a JSON object with "
                               "\"identifier\" (20 bytes), \"owner\" and \"group\"",
                               file.string(), why));
}

}  // namespace

Result<Credential> readClient(const std::filesystem::path& file) {
    const auto text = readPlainFile(file, kLargestClient);
    if (!text) {
        return badClient(file, text.error().reason);
    }
    const Json document = Json::parse(*text, nullptr, false);
    if (!document.is_object()) {
        return badClient(file, "it holds no JSON object");
    }
    Credential credential;
    const Json identifier = document.value("identifier", Json());
    if (!identifier.is_string() ||
        identifier.get_ref<const std::string&>().size() != credential.identifier.size()) {
        return badClient(file, "\"identifier\" is no string of 20 bytes");
    }
    const auto owner = memberOfClient(document, "owner");
    const auto group = memberOfClient(document, "group");
    if (!owner || !group) {
        return badClient(file, "\"owner\" and \"group\" are no ints");
    }
    const auto& bytes = identifier.get_ref<const std::string&>();
    std::copy(bytes.begin(), bytes.end(), credential.identifier.begin());
    credential.owner = static_cast<std::int32_t>(*owner);
    credential.group = static_cast<std::int32_t>(*group);
    return credential;
}

}  // namespace vxtv
