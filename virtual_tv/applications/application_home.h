#pragma once

#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

// The applications of a television belong to no session. They live in a home, which exists as long as any
// session does. Programs in a session ask the home to start an application. The home listens at an abstract
// socket, so every session can reach it, and the length of the television's path does not matter.

/// A request to the home to start an application.
struct HomeRequest {
    std::string application;
    std::string bundle;                    ///< a JSON object, or empty
    std::vector<std::string> environment;  ///< of the requester, "NAME=VALUE" each
    Descriptor report;                     ///< to which the application's host writes its report
};

/// Asks the television's home to start the application with this process's environment, and waits until its
/// host has been started. Result: a descriptor from which the host's report can be read; empty if no home can
/// be reached. Threads: any.
std::optional<Descriptor> launchAtHome(const Folder& folder, const std::string& application,
                                       const std::string& bundle);

/// The home's end of the socket.
class HomeDoor {
 public:
    /// Listens at an address that cannot be guessed. Errors: CannotRun.
    static Result<HomeDoor> open();

    /// Takes over the descriptor of a listening socket that another process opened.
    explicit HomeDoor(Descriptor socket) : socket_(std::move(socket)) {}

    int descriptor() const { return socket_.get(); }
    const std::string& address() const { return address_; }

    /// The next connection; empty if the other side has closed it already.
    Descriptor accept() const;

 private:
    Descriptor socket_;
    std::string address_;
};

/// The request from the connection. Empty unless it arrives completely, in time, and from this user or root.
std::optional<HomeRequest> readRequest(const Descriptor& connection);

}  // namespace vxtv
