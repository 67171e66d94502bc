#include "packaging/pages.h"

#include <fstream>
#include <iostream>

namespace vxpages {

int writePages(const Manual& manual, const std::filesystem::path& share) {
    const std::string& name = manual.program.name;
    const std::pair<std::filesystem::path, std::string> pages[] = {
        {share / "man/man1" / (name + ".1"), manPage(manual)},
        {share / "bash-completion/completions" / name, bashCompletion(manual.program)},
        {share / "zsh/site-functions" / ("_" + name), zshCompletion(manual.program)}};
    for (const auto& [path, text] : pages) {
        std::error_code reason;
        std::filesystem::create_directories(path.parent_path(), reason);
        std::ofstream file(path, std::ios::binary);
        file << text;
        file.close();
        if (!file) {
            std::cerr << "cannot write " << path << '\n';
            return 1;
        }
    }
    return 0;
}

}  // namespace vxpages
