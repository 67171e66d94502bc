#include "virtual_tv/applications/application_data.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <string_view>
#include <vector>

#include "virtual_tv/applications/applications.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDatabaseExtension = ".db";

std::string columnText(const SQLite::Column& column) {
    return column.isNull() ? "NULL" : column.getString();
}

/// The name quoted for an SQL statement. The application chose the names of its tables.
std::string quotedName(const std::string& name) {
    std::string quoted = "\"";
    for (const char letter : name) {
        quoted += letter;
        if (letter == '"') {
            quoted += letter;
        }
    }
    return quoted + "\"";
}

/// The rows in an order that depends only on their content.
SQLite::Statement sortedRows(SQLite::Database& database, const std::string& table) {
    const std::string all = "SELECT * FROM " + quotedName(table);
    const int columns = SQLite::Statement(database, all).getColumnCount();
    std::string order;
    for (int column = 1; column <= columns; ++column) {
        order += fmt::format("{}{}", order.empty() ? " ORDER BY " : ", ", column);
    }
    return {database, all + order};
}

void addRows(SQLite::Database& database, const std::string& table, const std::string& where, Texts& texts) {
    SQLite::Statement rows = sortedRows(database, table);
    while (rows.executeStep()) {
        std::string values;
        for (int column = 1; column < rows.getColumnCount(); ++column) {
            values += fmt::format("{}{}: {}", values.empty() ? "" : ", ", rows.getColumn(column).getName(),
                                  columnText(rows.getColumn(column)));
        }
        const std::string name = fmt::format("{}/{}/{}", where, table, columnText(rows.getColumn(0)));
        std::string unused = name;
        for (int number = 2; texts.count(unused) != 0; ++number) {
            unused = fmt::format("{} ({})", name, number);
        }
        texts[unused] = values;
    }
}

/// False if the file is not a readable database.
bool addDatabase(const fs::path& file, const std::string& where, Texts& texts) {
    Texts found;
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READONLY);
        database.exec("PRAGMA trusted_schema = OFF");
        SQLite::Statement tables(database,
                                 "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE "
                                 "'sqlite~_%' ESCAPE '~'");
        while (tables.executeStep()) {
            addRows(database, tables.getColumn(0).getString(), where, found);
        }
    } catch (const SQLite::Exception& exception) {
        return false;
    }
    texts.merge(found);
    return true;
}

struct FreeDigest {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

std::string fileText(const fs::path& file) {
    constexpr std::size_t kChunk = 64U << 10U;
    constexpr unsigned int kShownBytes = 8;
    std::ifstream stream(file, std::ios::binary);
    const std::unique_ptr<EVP_MD_CTX, FreeDigest> context(EVP_MD_CTX_new());
    bool isSound = stream.is_open() && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
    std::vector<char> chunk(kChunk);
    while (isSound && stream) {
        stream.read(chunk.data(), kChunk);
        isSound = !stream.bad() && EVP_DigestUpdate(context.get(), chunk.data(),
                                                    static_cast<std::size_t>(stream.gcount())) == 1;
    }
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    if (!isSound || EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1) {
        throw fs::filesystem_error("cannot be read", file, std::make_error_code(std::errc::io_error));
    }
    std::string text = fmt::format("{} bytes, SHA-256 ", fs::file_size(file));
    for (unsigned int at = 0; at < kShownBytes; ++at) {
        text += fmt::format("{:02x}", digest.at(at));
    }
    return text + "...";
}

void addEntry(const fs::directory_entry& entry, const std::string& id, const std::string& name,
              Texts& texts) {
    const fs::file_status status = entry.symlink_status();
    const std::string where = id + "/" + name;
    if (fs::is_symlink(status)) {
        texts[where] = "link to " + fs::read_symlink(entry.path()).string();
    } else if (fs::is_regular_file(status)) {
        const bool isDatabase = entry.path().extension() == kDatabaseExtension;
        if (!isDatabase || !addDatabase(entry.path(), id, texts)) {
            texts[where] = fileText(entry.path());
        }
    } else if (!fs::is_directory(status)) {
        texts[where] = "special file";
    }
}

void addApplication(const Applications& applications, const std::string& id, Texts& texts) {
    texts[id] = "installed";
    const fs::path data = applications.dataOf(id);
    if (fs::is_directory(fs::symlink_status(data))) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(data)) {
            addEntry(entry, id, entry.path().lexically_relative(data).string(), texts);
        }
    }
}

}  // namespace

Result<std::optional<Texts>> applicationTexts(const Folder& folder) {
    const Applications applications(folder);
    const auto ids = applications.ids();
    VX_RETURN_IF_FAILED(ids);
    if (ids->empty()) {
        return std::optional<Texts>();
    }
    try {
        Texts texts;
        for (const std::string& id : *ids) {
            addApplication(applications, id, texts);
        }
        return std::optional<Texts>(std::move(texts));
    } catch (const fs::filesystem_error& error) {
        return failure(ErrorCode::Io, fmt::format("{} cannot be compared: {}; check who may read it",
                                                  error.path1().string(), error.code().message()));
    }
}

}  // namespace vxtv
