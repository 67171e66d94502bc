#include "common/terminal_table.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace vxcommon {

namespace {

constexpr std::array kColourCodes = {"", "\x1b[32m", "\x1b[31m", "\x1b[2m"};
constexpr std::string_view kColourEnd = "\x1b[0m";
constexpr std::string_view kColumnGap = "  ";

void appendHexadecimal(std::string& text, unsigned char byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    text += "\\x";
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
}

void appendCell(std::string& line, const Cell& cell, std::size_t width, bool last, bool coloured) {
    const std::string text = printable(cell.text);
    line += paint(text, cell.colour, coloured);
    if (!last) {
        line.append(width - displayWidth(text), ' ');
        line += kColumnGap;
    }
}

}  // namespace

bool isTerminal(int descriptor) {
    return isatty(descriptor) == 1;
}

bool wantsColour(int descriptor) {
    return isTerminal(descriptor) && std::getenv("NO_COLOR") == nullptr;
}

std::string paint(std::string_view text, Colour colour, bool coloured) {
    if (!coloured || colour == Colour::Plain) {
        return std::string(text);
    }
    return kColourCodes.at(static_cast<std::size_t>(colour)) + std::string(text) + std::string(kColourEnd);
}

std::size_t displayWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

std::string printable(std::string_view text) {
    constexpr unsigned char kSecondControlSet = 0xC2U;  // with 0x80 to 0x9F behind it
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const auto next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0U;
        if (byte < 0x20U || byte == 0x7FU) {
            appendHexadecimal(result, byte);
        } else if (byte == kSecondControlSet && next >= 0x80U && next < 0xA0U) {
            appendHexadecimal(result, byte);
            appendHexadecimal(result, static_cast<unsigned char>(next));
            ++at;
        } else {
            result += text[at];
        }
    }
    return result;
}

TerminalTable::TerminalTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}

void TerminalTable::addRow(std::vector<Cell> cells) {
    cells.resize(headings_.size());
    rows_.push_back(std::move(cells));
}

std::string TerminalTable::render(bool coloured) const {
    std::vector<std::vector<Cell>> lines;
    lines.emplace_back();
    for (const std::string& heading : headings_) {
        lines.front().push_back({heading, Colour::Dim});
    }
    lines.insert(lines.end(), rows_.begin(), rows_.end());

    std::vector<std::size_t> widths(headings_.size(), 0);
    for (const std::vector<Cell>& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column) {
            widths[column] = std::max(widths[column], displayWidth(printable(line[column].text)));
        }
    }

    std::string text;
    for (const std::vector<Cell>& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column) {
            appendCell(text, line[column], widths[column], column + 1 == line.size(), coloured);
        }
        text += '\n';
    }
    return text;
}

}  // namespace vxcommon
