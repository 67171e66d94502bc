#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <string_view>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// Where a television has its time from, as it is in effect now. The settings of the same names are the
/// menu's: they come into effect here only when a program says so.
///
/// Errors common to all: UnknownService when the television does not have it, and those of `Database`. Errors
/// of what changes it: NotSupported. Threads and processes: any.
class NetworkTime {
 public:
    struct State {
        bool supported = false;
        bool on = false;
        int timezone = 0;
        std::string server;  ///< a host name or an address; empty: the television chooses one
    };

    explicit NetworkTime(Database& database) : database_(database) {}

    /// As in DataService.
    static void create(SQLite::Database& connection, const ServiceSection& section);
    static Texts texts(SQLite::Database& connection);
    static Texts keptTexts(SQLite::Database& connection);

    Result<State> state() const;
    Result<void> setOn(bool on) const;
    /// Errors: OutOfRange.
    Result<void> setTimezone(int timezone) const;
    /// Errors: BadArgument for what is no host name.
    Result<void> setServer(const std::string& server) const;

    static bool isTimezone(int timezone);
    /// Letters, digits and inner hyphens in parts of at most 63, joined by dots, 253 bytes in all; or an IPv6
    /// address; or nothing.
    static bool isServer(std::string_view server);

 private:
    template <class Change>
    Result<void> change(Change change) const;

    Database& database_;
};

}  // namespace vxtv
