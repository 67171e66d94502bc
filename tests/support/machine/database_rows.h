#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>

#include "tests/support/machine/file_tree.h"

namespace vxtest {

/// Every row of a television's database for an exact comparison, except the fault plan, which counts calls.
inline FileTree databaseRows(const std::filesystem::path& television) {
    FileTree rows;
    // Another reader may be closing it at this moment, and then has exclusive access.
    constexpr int kMostMilliseconds = 20'000;
    SQLite::Database database((television / "tv.db").string(), SQLite::OPEN_READONLY, kMostMilliseconds);
    SQLite::Statement tables(database, "SELECT name FROM sqlite_master WHERE type = 'table'");
    while (tables.executeStep()) {
        const std::string table = tables.getColumn(0).getString();
        if (table == "faults" || table == "sqlite_sequence") {
            continue;
        }
        SQLite::Statement all(database, "SELECT * FROM " + table);
        for (int row = 0; all.executeStep(); ++row) {
            std::string& text = rows[table + " " + std::to_string(row)];
            for (int column = 0; column < all.getColumnCount(); ++column) {
                text += all.getColumn(column).getString() + "|";
            }
        }
    }
    return rows;
}

}  // namespace vxtest
