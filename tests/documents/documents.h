#pragma once

#include <string>
#include <vector>

#include "tests/documents/markdown.h"

namespace vxtest {

/// Every document of this checkout, by its name from the checkout's folder. What is built there is none, and
/// neither is what other people wrote.
std::vector<std::string> documents();

/// Throws where the document cannot be read.
Markdown readDocument(const std::string& name);

}  // namespace vxtest
