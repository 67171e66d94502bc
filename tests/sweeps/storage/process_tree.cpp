#include "tests/sweeps/storage/process_tree.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace vxtest {

namespace {

/// The content of a file in /proc; empty for a process that has ended.
std::string factOf(pid_t process, const char* fact) {
    std::ifstream file("/proc/" + std::to_string(process) + "/" + fact, std::ios::binary);
    std::ostringstream text;
    // With a stream, a process that ends meanwhile is an error and not an exception as with iterators.
    text << file.rdbuf();
    return text.str();
}

std::vector<pid_t> processes() {
    std::vector<pid_t> all;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (std::all_of(name.begin(), name.end(), [](unsigned char digit) { return std::isdigit(digit); })) {
            all.push_back(std::stoi(name));
        }
    }
    return all;
}

pid_t parentOf(pid_t process) {
    const std::string facts = factOf(process, "stat");
    const std::size_t afterName = facts.rfind(") ");
    // After the name: the state, a letter, and the parent.
    return afterName == std::string::npos ? 0 : std::stoi(facts.substr(afterName + 4));
}

bool descends(pid_t process, pid_t ancestor) {
    while (process > 1 && process != ancestor) {
        process = parentOf(process);
    }
    return process == ancestor;
}

}  // namespace

std::optional<pid_t> findDescendant(pid_t ancestor, const std::string& name, const std::string& environment) {
    for (const pid_t process : processes()) {
        if (factOf(process, "comm") == name + "\n" && descends(process, ancestor) &&
            factOf(process, "environ").find(environment) != std::string::npos) {
            return process;
        }
    }
    return std::nullopt;
}

bool isAnywhere(const std::string& environment) {
    const std::vector<pid_t> all = processes();
    return std::any_of(all.begin(), all.end(), [&environment](pid_t process) {
        return factOf(process, "environ").find(environment) != std::string::npos;
    });
}

}  // namespace vxtest
