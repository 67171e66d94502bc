#include "cloning_app/package/manifest.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <utility>

#include "cloning_app/package/manifest_reading.h"
#include "common/strict_json.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using Json = nlohmann::json;

/// The deepest value stands in an object of a list of the whole; each entry has four values and their names.
constexpr vxcommon::JsonLimits kManifestLimits{4, 12 * 10'000};
/// Far more than there are categories and applications on a television.
constexpr std::size_t kMostResults = 1'000;

Json jsonOf(const PackageEntry& entry) {
    if (entry.folder) {
        return {{"path", escaped(entry.path)}, {"type", "folder"}};
    }
    return {{"path", escaped(entry.path)}, {"type", "file"}, {"size", entry.bytes}, {"sha256", entry.digest}};
}

Json jsonOf(const ManifestResult& result) {
    Json json = {{"category", escaped(result.category)}, {"result", escaped(result.result)}};
    for (const auto& [name, text] :
         {std::pair("detail", &result.detail), std::pair("application", &result.application)}) {
        if (!text->empty()) {
            json[name] = escaped(*text);
        }
    }
    return json;
}

Json jsonOf(const ManifestLack& lack) {
    Json json = {{"category", escaped(lack.category)}, {"declared", lack.declared}};
    if (!lack.what.empty()) {
        json["what"] = escaped(lack.what);
    }
    return json;
}

/// The list of that name. It has no more elements than a package can give reason for.
const Json& listIn(const Json& json, const char* name, std::size_t most) {
    const Json& list = memberOf(json, name, Json::value_t::array);
    if (list.size() > most) {
        throw WrongManifest{fmt::format("lists more than {} things in \"{}\"", most, name)};
    }
    return list;
}

ManifestLack lackIn(const Json& json) {
    return {textIn(json, "category"), textOrNothingIn(json, "what"),
            memberOf(json, "declared", Json::value_t::boolean).get<bool>()};
}

ManifestResult resultIn(const Json& json) {
    return {.category = textIn(json, "category"),
            .result = textIn(json, "result"),
            .detail = textOrNothingIn(json, "detail"),
            .application = textOrNothingIn(json, "application")};
}

Identity sourceIn(const Json& json) {
    return {textIn(json, "model"), textIn(json, "productTag"), tunerIn(json)};
}

Manifest manifestFrom(const Json& json) {
    Manifest manifest;
    manifest.origin = {.name = nameIn(json),
                       .madeAt = timeIn(json, "madeAt"),
                       .madeBy = textIn(json, "madeBy"),
                       .source = sourceIn(memberOf(json, "source", Json::value_t::object))};
    for (const Json& result : listIn(json, "categories", kMostResults)) {
        manifest.origin.results.push_back(resultIn(result));
    }
    if (json.contains("lacks")) {
        manifest.origin.lacks.emplace();
        for (const Json& lack : listIn(json, "lacks", TreeLimits{}.entries)) {
            manifest.origin.lacks->push_back(lackIn(lack));
        }
    }
    if (json.contains("added")) {
        for (const Json& entry : listIn(json, "added", TreeLimits{}.entries)) {
            manifest.origin.added.push_back(entryIn(entry));
        }
    }
    for (const Json& entry : listIn(json, "entries", TreeLimits{}.entries)) {
        PackageEntry read = entryIn(entry);
        if (!manifest.entries.empty() && !(manifest.entries.back().path < read.path)) {
            throw WrongManifest{"does not list its entries in order, each once"};
        }
        manifest.entries.push_back(std::move(read));
    }
    return manifest;
}

}  // namespace

std::string manifestBody(const Manifest& manifest) {
    const PackageOrigin& origin = manifest.origin;
    Json json = {{"name", escaped(origin.name)},
                 {"madeAt", origin.madeAt},
                 {"madeBy", escaped(origin.madeBy)},
                 {"source",
                  {{"model", escaped(origin.source.model.value_or(""))},
                   {"productTag", escaped(origin.source.productTag.value_or(""))},
                   {"tuner", origin.source.tuner.value_or(0)}}},
                 {"categories", Json::array()},
                 {"entries", Json::array()}};
    for (const ManifestResult& result : origin.results) {
        json["categories"].push_back(jsonOf(result));
    }
    if (origin.lacks) {
        json["lacks"] = Json::array();
        for (const ManifestLack& lack : *origin.lacks) {
            json["lacks"].push_back(jsonOf(lack));
        }
    }
    for (const PackageEntry& entry : origin.added) {
        json["added"].push_back(jsonOf(entry));
    }
    for (const PackageEntry& entry : manifest.entries) {
        json["entries"].push_back(jsonOf(entry));
    }
    return json.dump();
}

tl::expected<Manifest, std::string> manifestIn(std::string_view body, const StopFlag* stop) {
    try {
        return manifestFrom(vxcommon::parseStrictly(body, kManifestLimits,
                                                    [stop] { return stop != nullptr && stop->raised(); }));
    } catch (const vxcommon::WrongMember& wrong) {
        return tl::make_unexpected("cannot be read: " + vxcommon::printable(wrong.member) + " " +
                                   wrong.reason);
    } catch (const Json::parse_error&) {
        return tl::make_unexpected(std::string("is no JSON"));
    } catch (const WrongManifest& wrong) {
        return tl::make_unexpected(wrong.why);
    }
}

}  // namespace vxclone
