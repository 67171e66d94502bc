#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace vxcommon {

/// A JSON document as text that shows what it holds: deceptive characters are written as \uNNNN, which means
/// the same. JSON is UTF-8, which a name on a stick need not be: bytes of a text that are not are written in
/// it as \xNN, as a terminal shows them.
class JsonText {
 public:
    /// One line, or, where `indent` says how many blanks a layer has, a line for each value; without a line
    /// feed at the end.
    explicit JsonText(const nlohmann::ordered_json& document, int indent = -1);

    const std::string& text() const { return text_; }

 private:
    std::string text_;
};

}  // namespace vxcommon
