#pragma once

#include <string>
#include <vector>

#include "tests/documents/markdown.h"

namespace vxtest {

/// Every document of this checkout, by its path in the checkout. Files of the build and of other authors are
/// left out.
std::vector<std::string> documents();

/// Throws if the document cannot be read.
Markdown readDocument(const std::string& name);

}  // namespace vxtest
