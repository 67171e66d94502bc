// The names and texts of a manifest, with escapes of two hexadecimal digits for what is not plain text.

#include "cloning_app/package/digest.h"
#include "cloning_app/package/manifest_reading.h"
#include "fuzz/target.h"

namespace vxfuzz {
namespace {

void run(std::string_view bytes) {
    const std::string text = vxclone::escaped(bytes);
    require(vxclone::unescaped(text) == bytes, "bytes that were escaped come back");
    require(vxclone::escaped(text).find_first_of("\n\t\r\x7f") == std::string::npos &&
                text.size() >= bytes.size(),
            "an escaped text has no control character");
    if (const auto read = vxclone::unescaped(bytes)) {
        require(vxclone::escaped(*read) == bytes, "each text has one form alone");
    }
    const std::string digits = vxclone::hexText(bytes);
    require(digits.size() == 2 * bytes.size() &&
                digits.find_first_not_of("0123456789abcdef") == std::string::npos,
            "a byte has two digits");
}

const Target kEscapedText("escaped_text", run);

}  // namespace
}  // namespace vxfuzz
