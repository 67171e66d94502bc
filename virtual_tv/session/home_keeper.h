#pragma once

#include <functional>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/isolation.h"
#include "virtual_tv/process/live_share.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// What a home of applications needs to know.
struct HomePlan {
    Folder folder;
    Isolation isolation = Isolation::Root;
    std::function<Result<void>()> furnish;  ///< called in the home, inside its namespaces
};

/// Starts the home of a television's applications: the first process of namespaces of its own, which starts
/// applications for whoever asks at its door, and a keeper, which outlives the caller and ends the home, with
/// all applications, as soon as it gets the lock exclusively. A keeper that is killed takes the home with it,
/// and a home that ends its keeper.
/// Result: the home, when programs may ask. On failure CannotRun, NoIsolation, or that of `furnish`.
/// Before: the caller holds the lock shared, and has one thread.
Result<StartedService> startHome(const HomePlan& plan, ServiceStart start);

}  // namespace vxtv
