#include "virtual_tv/process/program.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <system_error>

namespace vxtv {

namespace {

bool isProgram(const std::filesystem::path& file) {
    std::error_code absent;
    return std::filesystem::is_regular_file(file, absent) && access(file.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<std::filesystem::path> findProgram(const std::string& name) {
    std::error_code error;
    if (name.find('/') != std::string::npos) {
        if (!std::filesystem::exists(name, error)) return std::nullopt;
        return std::filesystem::absolute(name, error);
    }
    const char* const searched = std::getenv("PATH");
    std::istringstream directories(searched == nullptr ? "/usr/bin:/bin" : searched);
    for (std::string directory; std::getline(directories, directory, ':');) {
        const auto file = std::filesystem::absolute(std::filesystem::path(directory) / name, error);
        if (!error && isProgram(file)) return file;
    }
    return std::nullopt;
}

}  // namespace vxtv
