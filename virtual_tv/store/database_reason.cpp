#include "virtual_tv/store/database_reason.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>

namespace vxtv {

namespace {

struct ReasonFact {
    int sqliteCode;
    const char* words;
};

// The last entry is for every other code.
constexpr std::array kReasons = {
    ReasonFact{SQLITE_BUSY, "another process uses it"},
    ReasonFact{SQLITE_LOCKED, "another process uses it"},
    ReasonFact{SQLITE_CORRUPT, "its content is damaged"},
    ReasonFact{SQLITE_NOTADB, "it is no database"},
    // Our statements are fixed, so this error means that a table does not have its original form.
    ReasonFact{SQLITE_ERROR, "a table in it is not as it was made"},
    ReasonFact{SQLITE_SCHEMA, "a table in it is not as it was made"},
    ReasonFact{SQLITE_CONSTRAINT, "a table in it is not as it was made"},
    ReasonFact{SQLITE_MISMATCH, "a table in it is not as it was made"},
    ReasonFact{SQLITE_READONLY, "it may not be written"},
    ReasonFact{SQLITE_CANTOPEN, "it cannot be opened"},
    ReasonFact{SQLITE_TOOBIG, "a value in it is too large"},
    ReasonFact{SQLITE_IOERR, "its disk failed"},
    ReasonFact{SQLITE_FULL, "its disk is full"},
    ReasonFact{SQLITE_NOMEM, "memory is too short"},
    ReasonFact{SQLITE_OK, "a fault in a program's library"},
};

}  // namespace

std::string databaseReason(const SQLite::Exception& exception) {
    const int code = exception.getErrorCode();
    return std::find_if(kReasons.begin(), kReasons.end() - 1,
                        [code](const ReasonFact& fact) { return fact.sqliteCode == code; })
        ->words;
}

}  // namespace vxtv
