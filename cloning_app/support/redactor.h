#pragma once

#include <string>
#include <vector>

namespace vxclone {

/// Removes secrets from texts that leave the television.
class Redactor {
 public:
    /// `secrets` are values, not keys. Empty ones are ignored.
    explicit Redactor(const std::vector<std::string>& secrets);

    /// The text with every secret replaced by `***`. A secret of fewer than four characters is replaced only
    /// if no letter or digit is next to it; otherwise it would be found in many numbers. The JSON form of a
    /// secret with special characters is replaced, too.
    std::string clean(std::string text) const;

 private:
    std::vector<std::string> secrets_;  ///< the longest first
};

/// A redactor for the current values of the television's secret settings.
Redactor redactorOfTelevision();

}  // namespace vxclone
