// Runs a target on every file of a folder, so that every build checks what fuzzing has found.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string_view>

#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/private_filesystem.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& place) {
    if (fs::is_regular_file(place)) {
        return {place};
    }
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The number of files that are also read in stretched form.
constexpr std::size_t kMostStretched = 3;

/// The bytes with their second half repeated, so that their beginning stays the same.
std::string stretched(const std::string& bytes) {
    constexpr std::size_t kSize = 4 * vxfuzz::kLargeInput;
    std::string text = bytes;
    while (!bytes.empty() && text.size() < kSize) {
        text += bytes.substr(bytes.size() / 2);
    }
    return text;
}

/// The largest ones: all files of a corpus are small, and slow reading only shows with a large one.
std::vector<fs::path> largestOf(std::vector<fs::path> files) {
    std::stable_sort(files.begin(), files.end(), [](const fs::path& one, const fs::path& other) {
        return fs::file_size(one) > fs::file_size(other);
    });
    files.resize(std::min(files.size(), kMostStretched));
    return files;
}

int replay(const vxfuzz::Target& target, const fs::path& place) {
    const std::vector<fs::path> files = filesOf(place);
    for (const fs::path& file : files) {
        // Flushed, so that the last line names the file that ended the program.
        std::cout << file.filename().string() << std::endl;
        target.run(vxtest::readFile(file));
    }
    for (const fs::path& file : largestOf(files)) {
        std::cout << file.filename().string() << ", stretched" << std::endl;
        target.run(stretched(vxtest::readFile(file)));
    }
    std::cout << target.name() << ": " << files.size() << " files\n";
    return files.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    const auto& targets = vxfuzz::Target::all();
    const auto target = std::find_if(targets.begin(), targets.end(), [&](const vxfuzz::Target* candidate) {
        return argc == 3 && candidate->name() == argv[1];
    });
    if (target == targets.end()) {
        std::cerr << "usage: vx-fuzz-replay TARGET FILE|FOLDER\n";
        return EXIT_FAILURE;
    }
    if (const auto problem = vxtest::enterPrivateFilesystem()) {
        std::cerr << "a replay needs folders /opt, /tmp and /media of its own: " << *problem << '\n';
        return EXIT_FAILURE;
    }
    return replay(**target, argv[2]);
}
