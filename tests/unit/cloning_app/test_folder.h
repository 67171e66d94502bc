#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

/// A folder for one test; the destructor removes it.
class TestFolder {
 public:
    TestFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vxclone-test-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() { std::filesystem::remove_all(path_); }

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
    std::filesystem::path path_;
};

/// Writes the file and creates its parent folders.
inline void writeFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The permissions of the file or folder, as in "0755".
inline int modeOf(const std::filesystem::path& path) {
    return static_cast<int>(std::filesystem::status(path).permissions());
}

/// Everything in the folder: files with their content, folders as "/", links as "->".
inline std::map<std::string, std::string> contentOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> content;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder).string();
        content[name] = entry.is_symlink() ? "->" : entry.is_directory() ? "/" : readFile(entry.path());
    }
    return content;
}
