// The key file of a fleet: any bytes, any content sealed with the right secret, or any key.

#include "virtual_tv/television/key_file.h"

#include <algorithm>
#include <optional>

#include "fuzz/input.h"
#include "fuzz/target.h"
#include "virtual_tv/base/sealing.h"

namespace vxfuzz {
namespace {

using vxtv::CloneKey;

const std::string kSecret(vxtv::SealingKey::kSize, 's');
constexpr std::size_t kContentSize = vxtv::kCredentialSize + CloneKey::kKeySize + CloneKey::kIvSize;

std::optional<CloneKey> unsealed(std::string_view bytes, std::string_view secret = kSecret) {
    auto key = vxtv::unsealKeyFile(bytes, secret, "key.bin");
    if (!key) {
        requireShowable(key.error().sentence);
    }
    return key ? std::optional(*std::move(key)) : std::nullopt;
}

std::string contentOf(const CloneKey& key) {
    return vxtv::toBytes(key.credential) + key.key + key.iv;
}

void expectOwnFleetAlone(std::string bytes, Input input) {
    require(!unsealed(bytes, std::string(vxtv::SealingKey::kSize, 't')),
            "another fleet cannot open a key file");
    const std::size_t place = (input.byte() * 256U + input.byte()) % bytes.size();
    bytes[place] = static_cast<char>(bytes[place] ^ (1 << input.byte() % 8));
    require(!unsealed(bytes), "a key file that was changed is refused");
    require(!unsealed(bytes.substr(0, place)), "a key file that was cut is refused");
}

/// Sealed as the format says, with content of any length.
void openSealed(Input input) {
    std::string nonce(input.take(vxtv::kNonceSize));
    nonce.resize(vxtv::kNonceSize);
    const std::string_view magic("VXKEY\r\n\x1a", 8);
    const std::string header = std::string(magic) + vxtv::toBigEndian(1) + nonce;
    const std::string content(input.rest());
    const auto file =
        vxtv::SealingKey(kSecret).derive("vx-clone key file" + nonce).and_then([&](const auto& key) {
            return vxtv::seal(key, nonce, content, header);
        });
    require(file.has_value(), "content can be sealed");
    const auto key = unsealed(header + *file);
    require(key.has_value() == (content.size() == kContentSize), "content of the right length is a key");
    require(!key || contentOf(*key) == content, "a key is what was sealed");
}

void sealKey(Input input) {
    const auto sized = [&input](std::size_t size) {
        std::string text(input.take(size));
        text.resize(size);
        return text;
    };
    CloneKey key;
    key.credential = vxtv::credentialIn(sized(vxtv::kCredentialSize));
    key.key = sized(CloneKey::kKeySize);
    key.iv = sized(CloneKey::kIvSize);
    const auto file = vxtv::sealKeyFile(key, kSecret);
    require(file.has_value(), "a key can be sealed");
    const auto opened = unsealed(*file);
    require(opened && contentOf(*opened) == contentOf(key), "a key is opened as it was sealed");
    expectOwnFleetAlone(*file, input);
}

void run(std::string_view bytes) {
    Input input(bytes);
    switch (input.byte()) {
        case 's':
            return openSealed(input);
        case 'k':
            return sealKey(input);
        default:
            static_cast<void>(unsealed(input.rest()));
    }
}

const Target kKeyFile("key_file", run);

}  // namespace
}  // namespace vxfuzz
