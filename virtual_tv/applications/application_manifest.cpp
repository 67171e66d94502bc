#include "virtual_tv/applications/application_manifest.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include "common/strict_json.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

constexpr std::size_t kLongestId = 128;
constexpr std::size_t kMostArguments = 64;
constexpr std::size_t kLargestManifest = 64 << 10;
constexpr int kDeepestManifest = 4;
constexpr int kIndent = 2;

bool isLetterOrDigit(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool staysInside(const fs::path& path) {
    return path.is_relative() && path.has_filename() &&
           std::none_of(path.begin(), path.end(), [](const fs::path& part) { return part == ".."; });
}

std::string filledStringIn(const Json& object, const std::string& where, const char* name) {
    const std::string text = stringIn(memberOf(object, where, name), within(where, name));
    if (text.empty()) {
        throw WrongMember{within(where, name), "is empty"};
    }
    return text;
}

tl::unexpected<Error> badManifest(const fs::path& file, std::string_view why) {
    return failure(
        ErrorCode::BadApplication,
        fmt::format("the manifest {} cannot be used: {}; correct it and try again", file.string(), why));
}

}  // namespace

bool isApplicationId(std::string_view id) {
    return !id.empty() && id.size() <= kLongestId && isLetterOrDigit(id.front()) &&
           std::all_of(id.begin(), id.end(),
                       [](char c) { return isLetterOrDigit(c) || c == '-' || c == '_' || c == '.'; });
}

ApplicationManifest manifestIn(const Json& object, const std::string& where) {
    expectObject(object, where);
    ApplicationManifest manifest;
    manifest.id = stringIn(memberOf(object, where, "id"), within(where, "id"));
    if (!isApplicationId(manifest.id)) {
        throw WrongMember{within(where, "id"), "is no application's id, such as org.example.app"};
    }
    manifest.title = filledStringIn(object, where, "title");
    manifest.program = filledStringIn(object, where, "program");
    if (!staysInside(manifest.program)) {
        throw WrongMember{within(where, "program"), "leads out of the application's folder"};
    }
    const std::string list = within(where, "arguments");
    const Json& arguments = memberOf(object, where, "arguments");
    expectArray(arguments, list);
    if (arguments.size() > kMostArguments) {
        throw WrongMember{list, fmt::format("has more than {} entries", kMostArguments)};
    }
    for (const Json& argument : arguments) {
        manifest.arguments.push_back(stringIn(argument, list));
    }
    manifest.autostart = boolIn(memberOf(object, where, "autostart"), within(where, "autostart"));
    return manifest;
}

Result<ApplicationManifest> readManifest(const fs::path& folder) {
    const fs::path file = folder / kManifestName;
    const auto text = readPlainFile(file, kLargestManifest + 1);
    if (!text && text.error().kind == ReadTrouble::Kind::Missing) {
        return failure(ErrorCode::UnknownApplication,
                       fmt::format("{} is no application: it holds no {}; name the application's folder",
                                   folder.string(), kManifestName));
    }
    if (!text) {
        return badManifest(file, text.error().reason);
    }
    if (text->size() > kLargestManifest) {
        return badManifest(file, "it is too long");
    }
    try {
        const Json document = vxcommon::parseStrictly(*text, {kDeepestManifest});
        expectOnly(document, "", {"id", "title", "program", "arguments", "autostart"});
        return manifestIn(document, "");
    } catch (const WrongMember& wrong) {
        return badManifest(file, fmt::format("\"{}\" {}", wrong.member, wrong.reason));
    } catch (const Json::exception& error) {
        return badManifest(file, "it is not JSON");
    }
}

std::string manifestText(const ApplicationManifest& manifest) {
    const nlohmann::ordered_json document = {{"id", manifest.id},
                                             {"title", manifest.title},
                                             {"program", manifest.program},
                                             {"arguments", manifest.arguments},
                                             {"autostart", manifest.autostart}};
    return document.dump(kIndent) + "\n";
}

}  // namespace vxtv
