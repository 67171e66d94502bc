#pragma once

#include <fmt/core.h>

#include <concepts>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vxcommon {

/// Whether the character can mislead a reader: it controls a terminal, ends a line, changes the direction of
/// writing, or is invisible.
bool isDeceptive(char32_t character);

class Printable;
class PrintableView;

/// An argument of a format: a printable text or a number.
template <class Part>
concept PrintablePart = std::same_as<Part, Printable> || std::same_as<Part, PrintableView> ||
    (std::is_arithmetic_v<Part> && !std::same_as<Part, char>);

/// A view of a text that may be shown: a `Printable`, which must outlive the view, or a literal. Only
/// literals of our own sources convert, so their line feeds and colours are intended.
class PrintableView {
 public:
    template <std::size_t size>
    consteval PrintableView(const char (&literal)[size]) : text_(literal, size - 1) {}
    PrintableView(const Printable& text);

    constexpr std::string_view text() const { return text_; }
    constexpr bool empty() const { return text_.empty(); }

 private:
    std::string_view text_;
};

/// Text that may be shown as it is, on a terminal or in a log. It can be made only of literals, of results of
/// `printable`, and of numbers. It converts to std::string. The concatenation with a std::string is a
/// std::string and not a `Printable`.
class Printable {
 public:
    Printable() = default;
    Printable(PrintableView text) : text_(text.text()) {}

    const std::string& text() const { return text_; }
    operator const std::string&() const { return text_; }
    bool empty() const { return text_.empty(); }

    Printable& operator+=(PrintableView more) {
        text_ += more.text();
        return *this;
    }
    friend Printable operator+(Printable first, const Printable& second) { return first += second; }
    friend Printable operator+(Printable first, PrintableView second) { return first += second; }
    friend Printable operator+(PrintableView first, const Printable& second) {
        return Printable(first) += second;
    }
    friend bool operator==(const Printable& one, const Printable& other) = default;
    friend bool operator==(const Printable& one, std::string_view other) { return one.text_ == other; }
    friend std::ostream& operator<<(std::ostream& stream, const Printable& text) {
        return stream << text.text_;
    }

 private:
    friend Printable printable(std::string_view text);
    template <PrintablePart... Parts>
    friend Printable printableFormat(fmt::format_string<const Parts&...> format, const Parts&... parts);

    std::string text_;
};

inline PrintableView::PrintableView(const Printable& text) : text_(text.text()) {}

template <class Text>
concept PlainString = std::same_as<Text, std::string>;

/// A printable text joined with an unchecked one is an unchecked one.
template <PlainString Text>
std::string operator+(const Text& first, const Printable& second) {
    return first + second.text();
}
template <PlainString Text>
std::string operator+(const Printable& first, const Text& second) {
    return first.text() + second;
}

/// Makes any text fit for a terminal or a line of a log. Deceptive characters, including line feeds, and
/// bytes that are not UTF-8 are written as \xNN for each byte. A second pass changes nothing.
Printable printable(std::string_view text);

/// The same, but line feeds stay. For texts whose lines are our own, such as a help text.
Printable printableLines(std::string_view text);

/// Formats the parts, which are printable texts and numbers. The format is a literal.
template <PrintablePart... Parts>
Printable printableFormat(fmt::format_string<const Parts&...> format, const Parts&... parts) {
    Printable text;
    text.text_ = fmt::format(format, parts...);
    return text;
}

}  // namespace vxcommon

template <>
struct fmt::formatter<vxcommon::PrintableView> : fmt::formatter<fmt::string_view> {
    template <class Context>
    auto format(vxcommon::PrintableView text, Context& context) const {
        return fmt::formatter<fmt::string_view>::format({text.text().data(), text.text().size()}, context);
    }
};

template <>
struct fmt::formatter<vxcommon::Printable> : fmt::formatter<vxcommon::PrintableView> {};
