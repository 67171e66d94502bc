#pragma once

#include <string>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// Violations of the rules by the application, for tests of its callers.
struct Misbehaviour {
    int latePortMs = 0;   ///< how long after its start it has a port
    int lateReplyMs = 0;  ///< how long after its work it answers
    bool noReply = false;
    bool fail = false;       ///< does not do its work and says so
    bool wrongCase = false;  ///< answers "Success"
    bool noEntry = false;    ///< answers without the entry that tells the outcome
    bool crashInBackup = false;
    bool crashInRestore = false;
};

/// Reads NAME and NAME=MS. Errors: BadArgument, with the existing names.
Result<Misbehaviour> readMisbehaviour(const std::vector<std::string>& texts);

/// The names, for the help.
std::string misbehaviourNames();

}  // namespace vxtv::hotel
