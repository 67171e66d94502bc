#include "tests/documents/documents.h"

#include <algorithm>
#include <filesystem>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {

namespace fs = std::filesystem;

namespace {

bool isDocument(const fs::path& file) {
    return file.extension() == ".md";
}

}  // namespace

std::vector<std::string> documents() {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(sourceFolder())) {
        const std::string name = entry.path().filename();
        if (entry.is_regular_file() && isDocument(entry.path())) found.push_back(name);
        if (!entry.is_directory() || name.starts_with('.') || name == "build" || name == "third_party")
            continue;
        for (const auto& below : fs::recursive_directory_iterator(entry.path())) {
            if (isDocument(below.path())) found.push_back(below.path().lexically_relative(sourceFolder()));
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

Markdown readDocument(const std::string& name) {
    return readMarkdown(name, readFile(sourceFolder() / name));
}

}  // namespace vxtest
