#include "tests/support/machine/file_tree.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace vxtest {

namespace {

namespace fs = std::filesystem;

void require(bool worked, const char* what, const fs::path& file) {
    if (!worked) throw fs::filesystem_error(what, file, std::error_code(errno, std::generic_category()));
}

}  // namespace

std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    require(stream.is_open(), "cannot read", file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& file, std::string_view content) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    require(!stream.fail(), "cannot write", file);
}

FileTree snapshot(const fs::path& directory) {
    FileTree tree;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        const auto name = entry.path().lexically_relative(directory).string();
        if (entry.is_symlink()) {
            tree[name] = "-> " + fs::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            tree[name + "/"] = "";
        } else {
            tree[name] = entry.is_regular_file() ? readFile(entry.path()) : "(neither file nor directory)";
        }
    }
    return tree;
}

}  // namespace vxtest
