#include "tests/unit/virtual_tv/show/samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace vxtv::test {

std::string redPixel() {
    using namespace std::string_view_literals;
    constexpr std::string_view kBytes =
        "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x01\0\0\0\x01\x08\x02\0\0\0\x90wS\xde"
        "\0\0\0\x0cIDATx\x9c"
        "c\xf8\xcf\xc0\0\0\x03\x01\x01\0\xc9\xfe\x92\xef\0\0\0\0IEND\xae"
        "B`\x82"sv;
    return std::string(kBytes);
}

std::string jpegOf(unsigned char width, unsigned char height) {
    using namespace std::string_literals;
    // An application segment of six bytes comes before the segment with the size.
    std::string bytes = "\xff\xd8\xff\xe0\0\x06"s + "JFIF" + "\xff\xc0\0\x11\x08\0"s;
    bytes += static_cast<char>(height);
    bytes += '\0';
    bytes += static_cast<char>(width);
    return bytes + "\x03";
}

show::Page pageOf(const std::string& text) {
    const show::Picture picture{text, 3, "image/png", 1, 1, "", "PNG"};
    const show::Picture missing{text, 3, "", 0, 0, text, ""};
    const show::Grid grid{{text}, {{{text}, {text, show::Colour::Plain, picture}}}, 0};
    show::Page page{text, text, {{text, text}}, text, text, picture, picture, {}};
    page.identity.push_back({text, text + "1"});
    page.sections = {{"one", text, text, {{text, text, 50, {{text, text}}, {grid}, {picture, missing}}}}};
    page.sections[0].cards[0].grids[0].columns.push_back(text);
    return page;
}

show::Section sectionOf(const show::Page& page, const std::string& id) {
    const auto found = std::find_if(page.sections.begin(), page.sections.end(),
                                    [&id](const show::Section& section) { return section.id == id; });
    EXPECT_NE(found, page.sections.end()) << "no section " << id;
    return found != page.sections.end() ? *found : show::Section();
}

}  // namespace vxtv::test
