#pragma once

#include <string>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// Violations of the rules by the application, for tests of its callers.
struct Misbehaviour {
    int latePortMs = 0;   ///< the time from its start to its port
    int lateReplyMs = 0;  ///< the time from its work to its answer
    bool noReply = false;
    bool fail = false;       ///< does not do its work and reports that
    bool wrongCase = false;  ///< answers "Success"
    bool noEntry = false;    ///< answers without the entry for the result
    bool crashInBackup = false;
    bool crashInRestore = false;
};

/// Reads NAME and NAME=MS. Errors: BadArgument, with the existing names.
Result<Misbehaviour> readMisbehaviour(const std::vector<std::string>& texts);

/// The names, for the help.
std::string misbehaviourNames();

}  // namespace vxtv::hotel
