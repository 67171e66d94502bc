#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace vxcommon {

/// A JSON document as text that can be shown safely. Deceptive characters are written as \uNNNN, which means
/// the same. Names on a stick need not be UTF-8, but JSON must be: bytes that are not UTF-8 are written as
/// \xNN, as on a terminal.
class JsonText {
 public:
    /// One line, or one line for each value if `indent` gives the number of blanks for each level. There is
    /// no line feed at the end.
    explicit JsonText(const nlohmann::ordered_json& document, int indent = -1);

    const std::string& text() const { return text_; }

 private:
    std::string text_;
};

}  // namespace vxcommon
