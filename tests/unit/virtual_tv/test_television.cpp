#include "test_television.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vxtv::test {

namespace fs = std::filesystem;

TestFolder::TestFolder() {
    std::string name = (fs::temp_directory_path() / "vxtv-test.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder for the test: " + name);
    }
    path_ = name;
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

Profile smallProfile() {
    Profile profile;
    profile.identity = {"VX55", "VX-EU", 3};
    profile.features = {{"network", 1}, {"tuner", false}};
    profile.settings = {{"volume", 12, false},
                        {"dooreye", false, false},
                        {"welcome", std::string("hello"), false},
                        {"progress", 0, true}};
    return profile;
}

Television makeTelevision(const fs::path& place) {
    Result<Television> television = createTelevision(place, smallProfile());
    if (!television) {
        throw std::runtime_error(television.error().sentence);
    }
    return std::move(*television);
}

int inChild(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace vxtv::test
