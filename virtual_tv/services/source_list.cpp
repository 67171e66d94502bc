#include "virtual_tv/services/source_list.h"

#include <fmt/format.h>

#include <filesystem>
#include <initializer_list>
#include <set>
#include <string_view>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

using Json = nlohmann::json;

namespace {

constexpr const char* kSourcesName = "sources";
constexpr std::string_view kPngStart = "\x89PNG\r\n\x1a\n";
constexpr std::string_view kJpegStart = "\xFF\xD8\xFF";

std::vector<Source> loadSources(SQLite::Database& connection) {
    SQLite::Statement row(connection,
                          "SELECT list_key, id, name, sources.icon_type, icon, first_app_icon, "
                          "second_app_icon, source_icons.icon_type FROM sources LEFT JOIN source_icons USING "
                          "(id) ORDER BY list_key, position");
    std::vector<Source> sources;
    while (row.executeStep()) {
        Source source = {row.getColumn(0).getInt(), row.getColumn(1).getInt(), row.getColumn(2).getString(),
                         row.getColumn(3).getInt(), std::nullopt};
        if (!row.getColumn(4).isNull()) {
            source.icons = {row.getColumn(4).getString(), row.getColumn(5).getString(),
                            row.getColumn(6).getString(), row.getColumn(7).getInt()};
        }
        sources.push_back(std::move(source));
    }
    return sources;
}

void storeIcons(SQLite::Database& connection, int id, const SourceIcons& icons) {
    SQLite::Statement row(connection, "INSERT OR REPLACE INTO source_icons VALUES (?, ?, ?, ?, ?)");
    row.bind(1, id);
    row.bind(2, icons.icon);
    row.bind(3, icons.firstAppIcon);
    row.bind(4, icons.secondAppIcon);
    row.bind(5, icons.iconType);
    row.exec();
}

SourceIcons iconsIn(const Json& entry, const std::string& where) {
    const auto pathAt = [&](const char* name) {
        const std::string path = stringIn(memberOf(entry, where, name), within(where, name));
        if (!std::filesystem::path(path).is_absolute()) {
            throw WrongMember{within(where, name), "is no absolute path"};
        }
        return path;
    };
    expectOnly(entry, where, {"icon", "firstAppIcon", "secondAppIcon", "iconType"});
    return {pathAt("icon"), pathAt("firstAppIcon"), pathAt("secondAppIcon"),
            intIn(memberOf(entry, where, "iconType"), within(where, "iconType"))};
}

Source sourceIn(const Json& entry, const std::string& where) {
    expectOnly(entry, where, {"key", "id", "name", "iconType", "icons"});
    const auto intAt = [&](const char* name) {
        return intIn(memberOf(entry, where, name), within(where, name));
    };
    Source source = {intAt("key"), intAt("id"),
                     stringIn(memberOf(entry, where, "name"), within(where, "name")), intAt("iconType"),
                     std::nullopt};
    if (const Json& icons = memberOf(entry, where, "icons"); !icons.is_null()) {
        source.icons = iconsIn(icons, within(where, "icons"));
    }
    return source;
}

bool isPicture(const std::string& path) {
    const auto start = readPlainFile(path, kPngStart.size());
    return std::filesystem::path(path).is_absolute() && start &&
           (*start == kPngStart || start->compare(0, kJpegStart.size(), kJpegStart) == 0);
}

Result<void> expectPictures(std::initializer_list<std::string_view> paths) {
    for (const std::string_view path : paths) {
        if (!isPicture(std::string(path))) {
            return failure(
                ErrorCode::BadArgument,
                fmt::format("{} is no picture; give the absolute path of a PNG or JPEG file", path));
        }
    }
    return {};
}

}  // namespace

void SourceList::create(SQLite::Database& connection, const ServiceSection& section) {
    expectArray(section.content, section.where);
    connection.exec(
        "CREATE TABLE sources (id INTEGER PRIMARY KEY, list_key INTEGER NOT NULL, position INTEGER NOT NULL, "
        "name TEXT NOT NULL, icon_type INTEGER NOT NULL)");
    connection.exec(
        "CREATE TABLE source_icons (id INTEGER PRIMARY KEY REFERENCES sources, icon TEXT NOT NULL, "
        "first_app_icon TEXT NOT NULL, second_app_icon TEXT NOT NULL, icon_type INTEGER NOT NULL)");
    SQLite::Statement insert(connection, "INSERT INTO sources VALUES (?, ?, ?, ?, ?)");
    std::set<int> ids;
    int position = 0;
    for (const Json& entry : section.content) {
        const std::string where = within(section.where, std::to_string(++position));
        const Source source = sourceIn(entry, where);
        if (!ids.insert(source.id).second) {
            throw WrongMember{within(where, "id"), "stands there twice"};
        }
        insert.reset();
        insert.bind(1, source.id);
        insert.bind(2, source.key);
        insert.bind(3, position);
        insert.bind(4, source.name);
        insert.bind(5, source.iconType);
        insert.exec();
        if (source.icons) {
            storeIcons(connection, source.id, *source.icons);
        }
    }
}

Texts SourceList::texts(SQLite::Database& connection) {
    Texts texts;
    for (const Source& source : loadSources(connection)) {
        if (source.icons) {
            const std::string prefix = std::to_string(source.id);
            texts[prefix + "/icon"] = source.icons->icon;
            texts[prefix + "/firstAppIcon"] = source.icons->firstAppIcon;
            texts[prefix + "/secondAppIcon"] = source.icons->secondAppIcon;
            texts[prefix + "/iconType"] = std::to_string(source.icons->iconType);
        }
    }
    return texts;
}

Texts SourceList::keptTexts(SQLite::Database& connection) {
    Texts texts;
    for (const Source& source : loadSources(connection)) {
        texts[std::to_string(source.id)] = source.name;
    }
    return texts;
}

Result<std::vector<Source>> SourceList::list() const {
    return database_.read([](SQLite::Database& connection) {
        return requireDataService(connection, kSourcesName).map([&connection] {
            return loadSources(connection);
        });
    });
}

Result<void> SourceList::setIcons(int id, const SourceIcons& icons) const {
    return database_.write([id, &icons](SQLite::Database& connection) -> Result<void> {
        if (const auto present = requireDataService(connection, kSourcesName); !present) {
            return present;
        }
        SQLite::Statement source(connection, "SELECT 1 FROM sources WHERE id = ?");
        source.bind(1, id);
        if (!source.executeStep()) {
            return failure(ErrorCode::UnknownEntry,
                           fmt::format("there is no source {}; `vxtv sources` lists those there are", id));
        }
        return expectPictures({icons.icon, icons.firstAppIcon, icons.secondAppIcon}).map([&] {
            storeIcons(connection, id, icons);
        });
    });
}

}  // namespace vxtv
