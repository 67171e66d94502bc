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

/// Whether a reader does not see the character for what it is: it steers a terminal, ends a line, turns the
/// direction of writing, or takes no place at all.
bool isDeceptive(char32_t character);

class Printable;
class PrintableView;

/// What a format may show: a printable text, or a number.
template <class Part>
concept PrintablePart = std::same_as<Part, Printable> || std::same_as<Part, PrintableView> ||
    (std::is_arithmetic_v<Part> && !std::same_as<Part, char>);

/// Looks at a text that may be shown: one of a `Printable`, which must outlive it, or a literal. Only
/// literals of our own source convert: what they hold, such as line feeds and colours, is meant.
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

/// Text that may be shown as it is, on a terminal or in a line of a log. It is made of literals, of what
/// `printable` made of other texts, and of numbers: no other text becomes one. It is a std::string for
/// whoever reads it; joined with a std::string it is one, and no longer a `Printable`.
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

/// A printable text joined with one that need not be is one that need not be.
template <PlainString Text>
std::string operator+(const Text& first, const Printable& second) {
    return first + second.text();
}
template <PlainString Text>
std::string operator+(const Printable& first, const Text& second) {
    return first.text() + second;
}

/// Text for a terminal or a line of a log, whoever wrote it: deceptive characters, line feeds among them, and
/// bytes that are no UTF-8 are written as \xNN, a byte each. A second pass changes nothing.
Printable printable(std::string_view text);

/// The same of a text whose lines are ours, such as a help: line feeds stay.
Printable printableLines(std::string_view text);

/// The parts in the places of the format, which is a literal. Parts are printable texts and numbers.
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
