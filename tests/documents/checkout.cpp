#include "tests/documents/checkout.h"

#include <cstdlib>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {

namespace fs = std::filesystem;

namespace {

void writeScript(const fs::path& file, const std::string& text) {
    writeFile(file, "#!/bin/sh\n" + text + "\n");
    fs::permissions(file, fs::perms(0755));
}

/// A link for each program, because with one link for the folder a program would not find its libraries.
void linkPrograms(const fs::path& folder) {
    fs::create_directory(folder);
    for (const auto& program : fs::directory_iterator(toolFolder())) {
        fs::create_symlink(program.path(), folder / program.path().filename());
    }
}

}  // namespace

Checkout::Checkout() {
    fs::create_directory(folder_);
    copySources();
    linkBuild();
    addTools();
}

std::string Checkout::searchPath() const {
    const char* const inherited = std::getenv("PATH");
    return tools_.string() + ":" + toolFolder().string() + ":" +
           (inherited != nullptr ? inherited : "/usr/bin:/bin");
}

void Checkout::copySources() const {
    for (const char* const name : {"CMakePresets.json", "docs", "fuzz", "include", "src", "virtual_tv"}) {
        fs::copy(sourceFolder() / name, folder_ / name, fs::copy_options::recursive);
    }
    fs::create_directory(folder_ / "scripts");
    fs::copy_file(sourceFolder() / "scripts/demo", folder_ / "scripts/demo");
    writeScript(folder_ / "scripts/bootstrap", "exit 0");
}

/// ctest writes its log into the build folder, where the ctest that runs this test writes, too.
void Checkout::linkBuild() const {
    for (const char* const preset : {"debug", "release"}) {
        const fs::path build = folder_ / "build" / preset;
        fs::create_directories(build);
        linkPrograms(build / "bin");
        fs::create_symlink(libraryFolder(), build / "lib");
        writeFile(build / "CTestTestfile.cmake", "subdirs(\"" + buildFolder().string() + "\")\n");
    }
}

/// A program that is linked with a sanitizer's library needs the sanitizer itself.
void Checkout::addTools() const {
    writeScript(tools_ / "cmake", "exit 0");
    const std::string sanitize = VX_SANITIZE;
    if (!sanitize.empty()) {
        writeScript(tools_ / "g++", "exec " VX_COMPILER " -fsanitize=" + sanitize + " \"$@\"");
    }
}

}  // namespace vxtest
