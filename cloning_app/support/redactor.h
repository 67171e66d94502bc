#pragma once

#include <string>
#include <vector>

namespace vxclone {

/// Takes secrets out of texts that leave the television.
class Redactor {
 public:
    /// `secrets` are values, not keys; empty ones are passed over.
    explicit Redactor(const std::vector<std::string>& secrets);

    /// The text with every secret replaced by `***`. A secret of fewer than four characters is replaced only
    /// where it stands alone, between characters that are no letter and no digit: it would else be found in
    /// every number. What JSON makes of a secret with special characters is replaced, too.
    std::string clean(std::string text) const;

 private:
    std::vector<std::string> secrets_;  ///< the longest first
};

/// A redactor for the values that the television holds now in its secret settings.
Redactor redactorOfTelevision();

}  // namespace vxclone
