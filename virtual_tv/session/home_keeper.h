#pragma once

#include <functional>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/isolation.h"
#include "virtual_tv/process/live_share.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The data for starting a home of applications.
struct HomePlan {
    Folder folder;
    Isolation isolation = Isolation::Root;
    std::function<Result<void>()> furnish;  ///< called in the home, inside its namespaces
};

/// Starts the home of a television's applications, and a keeper. The home is the first process of its own
/// namespaces and starts applications on request. The keeper outlives the caller. As soon as it gets the
/// exclusive lock, it ends the home with all applications. If the keeper is killed, the home ends; if the
/// home ends, the keeper ends. Result: the home, when it accepts requests. On failure CannotRun, NoIsolation,
/// or the error of `furnish`. Before: the caller holds the shared lock and has one thread.
Result<StartedService> startHome(const HomePlan& plan, ServiceStart start);

}  // namespace vxtv
