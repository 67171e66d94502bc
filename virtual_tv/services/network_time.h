#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <string_view>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The source of a television's time that is currently in effect. The settings with the same names belong to
/// the menu. They take effect here only when a program applies them.
///
/// Errors common to all: UnknownService if the television does not have this service, and those of
/// `Database`. Operations that change something: NotSupported. Threads and processes: any.
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
    /// Errors: BadArgument for an invalid host name.
    Result<void> setServer(const std::string& server) const;

    static bool isTimezone(int timezone);
    /// Whether the text is a host name (at most 253 bytes; its parts have letters, digits and inner hyphens,
    /// and at most 63 bytes), an IPv6 address, or empty.
    static bool isServer(std::string_view server);

 private:
    template <class Change>
    Result<void> change(Change change) const;

    Database& database_;
};

}  // namespace vxtv
