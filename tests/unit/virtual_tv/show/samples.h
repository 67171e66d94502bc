#pragma once

#include <string>

#include "virtual_tv/show/page.h"

namespace vxtv::test {

/// A PNG of one red pixel.
std::string redPixel();

/// The beginning of a JPEG with this size in pixels.
std::string jpegOf(unsigned char width, unsigned char height);

/// A page with one section of one card, in which every text is the given one.
show::Page pageOf(const std::string& text);

/// The section with this id. If there is none, the test fails and gets an empty section.
show::Section sectionOf(const show::Page& page, const std::string& id);

}  // namespace vxtv::test
