#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "virtual_tv/factory/creation.h"
#include "virtual_tv/television/key_file.h"
#include "virtual_tv/television/television.h"

namespace vxtv::test {

/// A folder for the test; the destructor removes it.
class TestFolder {
 public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }

 private:
    std::filesystem::path path_;
};

/// A small profile: an int `volume` 12, a bool `dooreye` false, a string `welcome` "hello", and the status
/// key `progress` 0; a feature of each type; no pictures; a key file; the services of sample_services.h with
/// each value at its lowest.
Profile smallProfile();

/// The clone key of the small profile, for the identifier "test-credential-0001", owner 1 and group 0.
CloneKey smallCloneKey();

/// Makes a television of the small profile at the place; the test fails if that fails.
Television makeTelevision(const std::filesystem::path& place);

/// Runs `work` in a child process. Result: the child's exit status, or minus the signal that ended it. 0
/// means that `work` returned true.
int inChild(const std::function<bool()>& work);

void writeFile(const std::filesystem::path& path, const std::string& content);
std::string readFile(const std::filesystem::path& path);

/// The bytes with one bit inverted.
std::string flipped(std::string bytes, std::size_t bit);

/// The bytes as pairs of hexadecimal digits.
std::string hex(const std::string& bytes);

}  // namespace vxtv::test
