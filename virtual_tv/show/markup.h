#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace vxtv::show {

/// Markup from a literal in this program's source. It cannot be made from other text.
class Constant {
 public:
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to become one without ado
    consteval Constant(const char* literal) : text_(literal) {}
    constexpr std::string_view text() const { return text_; }

 private:
    std::string_view text_;
};

/// An attribute. Its value may contain any text.
struct Attribute {
    Constant name;
    std::string value;
};

/// A part of an HTML document. Only constants and escaped text can become a part of it, so a name from
/// outside can never become markup.
class Markup {
 public:
    Markup() = default;

    /// Text for a reader. Bytes that are not UTF-8, control characters and characters that change the
    /// direction of writing become the replacement character.
    static Markup text(std::string_view text);
    static Markup constant(Constant markup) { return Markup(std::string(markup.text())); }
    /// An element with its content, and its end tag.
    static Markup element(Constant name, std::initializer_list<Attribute> attributes, const Markup& content);
    /// An element without content and end tag, such as an image.
    static Markup single(Constant name, std::initializer_list<Attribute> attributes);

    Markup& operator+=(const Markup& other);
    friend Markup operator+(Markup first, const Markup& second) { return first += second; }

    bool empty() const { return html_.empty(); }
    const std::string& html() const { return html_; }

 private:
    explicit Markup(std::string html) : html_(std::move(html)) {}

    std::string html_;
};

/// A data URL that contains the bytes: "data:image/png;base64,...".
std::string dataAddress(std::string_view mediaType, std::string_view bytes);

}  // namespace vxtv::show
