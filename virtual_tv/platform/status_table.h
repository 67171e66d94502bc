#pragma once

#include "virtual_tv/television/error.h"

namespace vxtv {

/// The status with which a service answers for an error. The tables stand in virtual_tv/README.md as well.
struct StatusOf {
    ErrorCode code;
    int status;
};

/// The status for the error, or `otherwise` when the table has none.
template <class Table>
int statusOf(const Table& table, ErrorCode code, int otherwise) {
    for (const StatusOf& entry : table) {
        if (entry.code == code) {
            return entry.status;
        }
    }
    return otherwise;
}

}  // namespace vxtv
