#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace vxtv::show {

/// Markup that stands in this program's text, and can have come from nowhere else.
class Constant {
 public:
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to become one without ado
    consteval Constant(const char* literal) : text_(literal) {}
    constexpr std::string_view text() const { return text_; }

 private:
    std::string_view text_;
};

/// An attribute; its value may hold anything.
struct Attribute {
    Constant name;
    std::string value;
};

/// A piece of an HTML document. Only constants and escaped text get into one, so no name that somebody else
/// chose can become markup.
class Markup {
 public:
    Markup() = default;

    /// The text as a reader is to see it. What is no UTF-8, control characters and those that turn the
    /// direction of writing become the replacement character.
    static Markup text(std::string_view text);
    static Markup constant(Constant markup) { return Markup(std::string(markup.text())); }
    /// An element with its content, and its end tag.
    static Markup element(Constant name, std::initializer_list<Attribute> attributes, const Markup& content);
    /// One that has no content and no end tag, such as an image.
    static Markup single(Constant name, std::initializer_list<Attribute> attributes);

    Markup& operator+=(const Markup& other);
    friend Markup operator+(Markup first, const Markup& second) { return first += second; }

    bool empty() const { return html_.empty(); }
    const std::string& html() const { return html_; }

 private:
    explicit Markup(std::string html) : html_(std::move(html)) {}

    std::string html_;
};

/// The bytes as an address that holds them: "data:image/png;base64,...".
std::string dataAddress(std::string_view mediaType, std::string_view bytes);

}  // namespace vxtv::show
