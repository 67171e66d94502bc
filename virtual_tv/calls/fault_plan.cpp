#include "virtual_tv/calls/fault_plan.h"

#include <fmt/format.h>

#include "virtual_tv/calls/contract_calls.h"

namespace vxtv {

namespace {

// All columns, because televisions made by an earlier version have no column for the key.
constexpr const char* kSelectAll = "SELECT * FROM faults ORDER BY id";
constexpr const char* kSelectOfCall = "SELECT * FROM faults WHERE call = ? ORDER BY id";
constexpr int kKeyColumn = 7;

bool hasKeys(const SQLite::Statement& rows) {
    return rows.getColumnCount() > kKeyColumn;
}

std::optional<std::string> keyIn(SQLite::Statement& row) {
    if (!hasKeys(row) || row.getColumn(kKeyColumn).isNull()) {
        return std::nullopt;
    }
    return row.getColumn(kKeyColumn).getString();
}

void makeRoomForKeys(SQLite::Database& connection) {
    if (!hasKeys(SQLite::Statement(connection, kSelectAll))) {
        connection.exec("ALTER TABLE faults ADD COLUMN key TEXT");
    }
}

std::optional<int> optionalInt(const SQLite::Column& column) {
    return column.isNull() ? std::nullopt : std::optional<int>(column.getInt());
}

Fault faultIn(SQLite::Statement& row) {
    return {row.getColumn(0).getInt64(),   row.getColumn(1).getString(),
            row.getColumn(2).getInt64(),   row.getColumn(3).getInt() != 0,
            optionalInt(row.getColumn(4)), optionalInt(row.getColumn(5)),
            row.getColumn(6).getInt64(),   keyIn(row)};
}

std::vector<Fault> faultsIn(SQLite::Statement& rows) {
    std::vector<Fault> faults;
    while (rows.executeStep()) {
        faults.push_back(faultIn(rows));
    }
    return faults;
}

template <class Value>
void bindOptional(SQLite::Statement& statement, int index, const std::optional<Value>& value) {
    if (value) {
        statement.bind(index, *value);
    } else {
        statement.bind(index);
    }
}

Result<void> checkKey(const Fault& fault, const ContractCall& call) {
    if (fault.key && call.firstArgument == FirstArgument::NoText) {
        return failure(
            ErrorCode::BadArgument,
            fmt::format("the first argument of {} is no text, so no key can choose among its calls; leave "
                        "--key out",
                        fault.call));
    }
    if (fault.key && fault.key->empty()) {
        return failure(ErrorCode::BadArgument,
                       "a key cannot be empty; give a text, or leave --key out for every call");
    }
    return {};
}

Result<void> check(const Fault& fault) {
    const std::optional<ContractCall> call = findCall(fault.call);
    if (!call) {
        return failure(
            ErrorCode::UnknownCall,
            fmt::format(
                "the platform has no call {} that a fault can reach; `vxtv fault DIR add --help` lists "
                "the calls",
                fault.call));
    }
    if (fault.nth < 1) {
        return failure(ErrorCode::OutOfRange,
                       fmt::format("there is no call number {}; the first call is 1", fault.nth));
    }
    if (fault.delayMs.value_or(0) < 0) {
        return failure(ErrorCode::OutOfRange,
                       fmt::format("a call cannot wait {} ms; give 0 or more", *fault.delayMs));
    }
    if (!fault.status && !fault.delayMs) {
        return failure(ErrorCode::BadArgument,
                       "a fault needs a status or a delay; give one of them, or both");
    }
    if (fault.status && call->kind == CallKind::NeverFails) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("{} has no way to fail; give it a delay only", fault.call));
    }
    return checkKey(fault, *call);
}

bool matches(const Fault& fault, const std::optional<std::string_view>& key) {
    return !fault.key || (key && *fault.key == *key);
}

/// Counts the call in the plan. Result: the faults that match it.
std::vector<Fault> countCall(SQLite::Database& connection, const std::string& call,
                             const std::optional<std::string_view>& key) {
    SQLite::Statement rows(connection, kSelectOfCall);
    rows.bind(1, call);
    std::vector<Fault> matching;
    for (Fault& fault : faultsIn(rows)) {
        if (matches(fault, key)) {
            ++fault.seen;
            matching.push_back(std::move(fault));
        }
    }
    for (const Fault& fault : matching) {
        SQLite::Statement count(connection, "UPDATE faults SET seen = ? WHERE id = ?");
        count.bind(1, fault.seen);
        count.bind(2, fault.id);
        count.exec();
    }
    return matching;
}

bool actsNow(const Fault& fault) {
    return fault.seen == fault.nth || (fault.fromThenOn && fault.seen > fault.nth);
}

std::optional<FaultAction> combine(const std::vector<Fault>& faults) {
    std::optional<FaultAction> action;
    for (const Fault& fault : faults) {
        if (!actsNow(fault)) {
            continue;
        }
        if (!action) {
            action = FaultAction{fault.id, std::nullopt, 0};
        }
        if (!action->status) {
            action->status = fault.status;
        }
        action->delayMs += fault.delayMs.value_or(0);
    }
    return action;
}

}  // namespace

void FaultPlan::create(SQLite::Database& connection) {
    connection.exec(
        "CREATE TABLE faults (id INTEGER PRIMARY KEY AUTOINCREMENT, call TEXT NOT NULL, nth INTEGER NOT "
        "NULL, "
        "from_then_on INTEGER NOT NULL, status INTEGER, delay_ms INTEGER, seen INTEGER NOT NULL, key TEXT)");
}

Result<std::int64_t> FaultPlan::add(const Fault& fault) {
    if (const Result<void> checked = check(fault); !checked) {
        return tl::make_unexpected(checked.error());
    }
    return database_.write([&fault](SQLite::Database& connection) -> Result<std::int64_t> {
        makeRoomForKeys(connection);
        SQLite::Statement insert(connection,
                                 "INSERT INTO faults (call, nth, from_then_on, status, delay_ms, seen, key) "
                                 "VALUES (?, ?, ?, ?, ?, 0, ?)");
        insert.bind(1, fault.call);
        insert.bind(2, fault.nth);
        insert.bind(3, fault.fromThenOn ? 1 : 0);
        bindOptional(insert, 4, fault.status);
        bindOptional(insert, 5, fault.delayMs);
        bindOptional(insert, 6, fault.key);
        insert.exec();
        return connection.getLastInsertRowid();
    });
}

Result<std::vector<Fault>> FaultPlan::list() const {
    return database_.read([](SQLite::Database& connection) -> Result<std::vector<Fault>> {
        SQLite::Statement rows(connection, kSelectAll);
        return faultsIn(rows);
    });
}

Result<int> FaultPlan::clear() {
    return database_.write(
        [](SQLite::Database& connection) -> Result<int> { return connection.exec("DELETE FROM faults"); });
}

Result<std::optional<FaultAction>> FaultPlan::onCall(std::string_view call,
                                                     std::optional<std::string_view> key) {
    const std::string name(call);
    const Result<bool> planned = database_.read([&name](SQLite::Database& connection) -> Result<bool> {
        SQLite::Statement row(connection, "SELECT 1 FROM faults WHERE call = ? LIMIT 1");
        row.bind(1, name);
        return row.executeStep();
    });
    VX_RETURN_IF_FAILED(planned);
    if (!*planned) {
        return std::nullopt;
    }
    return database_.write([&](SQLite::Database& connection) -> Result<std::optional<FaultAction>> {
        return combine(countCall(connection, name, key));
    });
}

}  // namespace vxtv
