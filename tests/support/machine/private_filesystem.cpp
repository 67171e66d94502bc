#include "tests/support/machine/private_filesystem.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "tests/support/machine/tool_paths.h"
#include "virtual_tv/process/isolation.h"
#include "virtual_tv/session/mounts.h"

namespace vxtest {

std::optional<std::string> enterPrivateFilesystem() {
    std::error_code deleted;
    const auto directory = std::filesystem::current_path(deleted);
    std::vector<std::filesystem::path> needed;
    for (const auto& kept : {buildFolder(), sourceFolder(), directory}) {
        for (const auto& name : vxtv::bothNames(kept)) needed.push_back(name);
    }
    std::vector<std::filesystem::path> roots;
    for (const auto& root : vxtv::coveredRoots()) roots.push_back(root.seenAs);
    std::vector<vxtv::Bind> binds;
    for (const auto& path : vxtv::pathsToExpose(needed, roots)) binds.push_back({path, path});

    const auto done =
        vxtv::enterMountNamespace().and_then([&] { return vxtv::doBindsOverMemory(roots, binds); });
    if (!done) return done.error().sentence;
    if (chdir(directory.c_str()) != 0 && chdir("/") != 0) return "cannot enter the root folder";
    return std::nullopt;
}

}  // namespace vxtest
