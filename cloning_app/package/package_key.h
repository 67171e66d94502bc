#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vxclone {

/// The entry of the television's secure storage that holds the key.
inline constexpr const char* kPackageKeyEntry = "VXCLONE_PACKAGE_KEY";

/// The key with which a fleet's televisions authenticate what they say of a package. It exists in memory only
/// while this object lives, and is wiped at its end. Any thread.
class PackageKey {
 public:
    static constexpr std::size_t kBytes = 32;

    /// The television's; none when its secure storage has no such entry, or one of another length.
    static std::optional<PackageKey> ofTelevision();

    PackageKey(PackageKey&& other) noexcept;
    PackageKey& operator=(PackageKey&&) = delete;
    PackageKey(const PackageKey&) = delete;
    PackageKey& operator=(const PackageKey&) = delete;
    ~PackageKey();

    /// The HMAC-SHA256 of the text, in hexadecimal digits.
    std::string codeOf(std::string_view text) const;
    /// Whether the code is the text's. Takes as long for a wrong one as for the right one.
    bool accepts(std::string_view text, std::string_view code) const;

 private:
    explicit PackageKey(std::string_view bytes);

    std::array<unsigned char, kBytes> bytes_{};
};

}  // namespace vxclone
