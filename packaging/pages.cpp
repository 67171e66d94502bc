#include "packaging/pages.h"

#include <fstream>
#include <iostream>

namespace vxpages {

std::string withProgramName(std::string text, const std::string& name) {
    const std::string placeholder = "NAME";
    for (std::size_t at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at)) {
        text.replace(at, placeholder.size(), name);
    }
    return text;
}

std::string inOneLine(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

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
