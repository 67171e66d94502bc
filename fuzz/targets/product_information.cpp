// ProductCloneInfo.txt, as the library checks it and writes its own form.

#include <climits>
#include <filesystem>
#include <fstream>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "cloning_app/package/identity.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxfuzz {
namespace {

using vxtest::ScriptedPlatform;

constexpr const char* kFolder = "/tmp/area";
constexpr const char* kFile = "/tmp/area/ProductCloneInfo.txt";
constexpr const char* kModel = "VX55";
constexpr const char* kTag = "VX-EU";
constexpr int kTuner = 3;
constexpr std::size_t kLongestLine = 255;

/// A line as the check reads it: limited in length, including its end, and up to a NUL.
std::string lineIn(Input& input) {
    const std::string_view line = Input(input).take(kLongestLine);
    const std::size_t end = line.find('\n');
    const std::string_view whole = input.take(end == std::string_view::npos ? line.size() : end + 1);
    const std::string text = upToNul(whole);
    return !text.empty() && text.back() == '\n' ? text.substr(0, text.size() - 1) : text;
}

/// The number at the start of the line, limited to the range of int; 0 without a number.
int numberIn(const std::string& line) {
    std::size_t at = line.find_first_not_of(" \t\n\v\f\r");
    if (at == std::string::npos) {
        return 0;
    }
    const bool negative = line[at] == '-';
    at += negative || line[at] == '+' ? 1U : 0U;
    long long number = 0;
    for (; at < line.size() && line[at] >= '0' && line[at] <= '9'; ++at) {
        number = std::min(number * 10 + (line[at] - '0'), 2LL * INT_MAX);
    }
    return static_cast<int>(std::clamp<long long>(negative ? -number : number, INT_MIN, INT_MAX));
}

/// The expected result of the check for such a file.
int verdictOn(std::string_view bytes, int tuner) {
    Input input(bytes);
    if (lineIn(input) != kTag) {
        return 3;
    }
    if (lineIn(input) != kModel) {
        return 1;
    }
    return input.isEmpty() || numberIn(lineIn(input)) == tuner ? 0 : 4;
}

void checkFile(std::string_view bytes, bool regional) {
    ScriptedPlatform& tv = ScriptedPlatform::instance();
    tv.setModel(kModel);
    tv.setProductTag(kTag);
    tv.setTunerType(kTuner);
    tv.setFeature(kTunerSupportFeature, regional ? 1 : 0);
    vxtest::writeFile(kFile, bytes);
    VXCloneHandler engine;
    const int verdict = engine.CheckDataValidity(kFolder);
    require(verdict == verdictOn(bytes, regional ? kTuner | 0x80 : kTuner),
            "the check says what is in the file");

    const auto package = vxclone::parseIdentity(std::string(bytes));
    const auto own = vxclone::televisionIdentity();
    const bool same =
        package.model == own.model && package.productTag == own.productTag && package.tuner == own.tuner;
    require(!same || verdict == 0, "what vxclone takes for this television the library does, too");

    std::ifstream stream(kFile, std::ios::binary);
    const std::string content = engine.GetFileContent(stream);
    require(content == upToNul(bytes.substr(0, bytes.empty() ? 0 : bytes.size() - 1)),
            "a file's content is its text but for the last byte");
}

void writeFile(Input input) {
    ScriptedPlatform& tv = ScriptedPlatform::instance();
    const std::string model = upToNul(input.until('\n'));
    const std::string tag = upToNul(input.rest());
    tv.setModel(model);
    tv.setProductTag(tag);
    tv.setTunerType(kTuner);
    std::filesystem::remove(kFile);
    VXCloneHandler engine;
    require(engine.WriteDataToFile(kFile) == 1, "the information can be written");
    require(vxtest::readFile(kFile) == "<swModel>" + model + "</swModel>\n<swTag>" + tag +
                                           "</swTag>\n<tuner>" + std::to_string(kTuner) + "</tuner>\n",
            "the information is written as the television gives it");
}

void run(std::string_view bytes) {
    ScriptedPlatform::instance().reset();
    std::filesystem::create_directories(kFolder);
    Input input(bytes);
    const unsigned char mode = input.byte();
    mode == 'w' ? writeFile(input) : checkFile(input.rest(), mode == 'r');
}

const Target kProductInformation("product_information", run);

}  // namespace
}  // namespace vxfuzz
