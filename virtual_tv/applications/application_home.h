#pragma once

#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

// The applications of a television belong to none of its sessions: they live in a home, which is there as
// long as any session is. Programs in a session ask the home to start one. The home listens at a socket that
// is no file, so it is reached from every session, however deep the television lies.

/// What somebody asks the home for: an application to be started.
struct HomeRequest {
    std::string application;
    std::string bundle;                    ///< a JSON object, or empty
    std::vector<std::string> environment;  ///< of who asks, "NAME=VALUE" each
    Descriptor report;                     ///< where the application's host writes its report
};

/// Asks the television's home to start the application, with this process's environment, and waits until its
/// host has been started. Result: where the host's report can be read, or nothing when there is no home that
/// can be reached. Threads: any.
std::optional<Descriptor> launchAtHome(const Folder& folder, const std::string& application,
                                       const std::string& bundle);

/// The home's end of the socket.
class HomeDoor {
 public:
    /// Listens at an address that nobody can guess. Errors: CannotRun.
    static Result<HomeDoor> open();

    /// Takes over the descriptor of a door that another process opened.
    explicit HomeDoor(Descriptor socket) : socket_(std::move(socket)) {}

    int descriptor() const { return socket_.get(); }
    const std::string& address() const { return address_; }

    /// The next connection; empty when whoever asked has gone again.
    Descriptor accept() const;

 private:
    Descriptor socket_;
    std::string address_;
};

/// The request that comes over the connection, if it comes whole, in time, and from this user or root.
std::optional<HomeRequest> readRequest(const Descriptor& connection);

}  // namespace vxtv
