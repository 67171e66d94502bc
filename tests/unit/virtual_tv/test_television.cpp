#include "tests/unit/virtual_tv/test_television.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "tests/support/services/sample_channels.h"
#include "tests/support/services/sample_services.h"

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
    static const std::string secret(32, 's');
    static const std::string keyFile = sealKeyFile(smallCloneKey(), secret).value();
    profile.installationSecret = secret;
    profile.keyFile = keyFile;
    profile.packageKey = std::string(32, 'p');
    vxtest::addSampleServices(profile, vxtest::Sample::Lowest);
    vxtest::addSampleChannels(profile);
    return profile;
}

CloneKey smallCloneKey() {
    CloneKey key{std::string(32, 'K'), std::string(16, 'I'), {}};
    constexpr std::string_view kIdentifier = "test-credential-0001";
    std::copy(kIdentifier.begin(), kIdentifier.end(), key.credential.identifier.begin());
    key.credential.owner = 1;
    return key;
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

std::string flipped(std::string bytes, std::size_t bit) {
    bytes.at(bit / 8) = static_cast<char>(bytes.at(bit / 8) ^ (1 << (bit % 8)));
    return bytes;
}

std::string hex(const std::string& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) / 16U];
        text += kDigits[static_cast<unsigned char>(byte) % 16U];
    }
    return text;
}

}  // namespace vxtv::test
