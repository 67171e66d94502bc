#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/terminal_table.h"

namespace vxtv::show {

using vxcommon::Colour;

/// A file that should be a picture. `bytes` is empty if it is none, or if the page would become too large.
struct Picture {
    std::string name;
    std::uintmax_t size = 0;  ///< of the file, in bytes
    std::string mediaType;    ///< "image/png" or "image/jpeg"; empty for anything else
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::string trouble;  ///< why it is not shown; empty if it is shown
    std::string bytes;
};

/// A name and its value.
struct Fact {
    std::string name;
    std::string value;
    Colour colour = Colour::Plain;
};

struct GridCell {
    std::string text;
    Colour colour = Colour::Plain;
    std::optional<Picture> picture = std::nullopt;
};

/// Similar things, one in each row.
struct Grid {
    std::vector<std::string> columns;
    std::vector<std::vector<GridCell>> rows;
    std::size_t leftOut = 0;  ///< the number of further rows
};

/// Things that belong together in a section. Any part may be empty.
struct Card {
    std::string title;
    std::string note;
    std::optional<int> percent = std::nullopt;
    std::vector<Fact> facts = {};
    std::vector<Grid> grids = {};
    std::vector<Picture> pictures = {};
};

struct Section {
    std::string id;  ///< a unique word of letters and hyphens
    std::string title;
    std::string note;
    std::vector<Card> cards = {};
};

/// Everything that is shown of a television, in either view. The texts are unchanged, so a view must make
/// them safe.
struct Page {
    std::string folder;
    std::string model;
    std::vector<Fact> identity;
    std::string welcomeTitle;
    std::string welcomeText;
    std::optional<Picture> logo;
    std::optional<Picture> screen;
    std::vector<Section> sections;
};

}  // namespace vxtv::show
