#pragma once

#include <deque>
#include <mutex>
#include <string>

#include "platform/bundle.h"
#include "virtual_tv/apps/hotel_app/data_folder.h"
#include "virtual_tv/apps/hotel_app/misbehaviour.h"
#include "virtual_tv/base/descriptor.h"

namespace vxtv::hotel {

/// The running application. It has the port at which cloning applications ask for its data, and serves one
/// request after the other until a signal ends it.
class Service {
 public:
    /// Before: the data folder has been recovered. From then on SIGTERM and SIGINT are blocked and end `run`.
    Service(std::string id, DataFolder data, Misbehaviour misbehaviour);

    /// Result: the exit status; 0 if it was told to end.
    int run();

 private:
    struct Request {
        int localPort = 0;
        std::string application;
        std::string port;
        std::string wanted;
        std::string path;
    };

    static void receive(int localPort, const char* application, const char* port, bool trusted,
                        bundle* message, void* service);
    bool waitsFor(int milliseconds) const;
    void serveAll();
    void serve(const Request& request);
    bool carryOut(const Request& request) const;
    void reply(const Request& request, bool succeeded) const;
    void log(int priority, const std::string& text) const;

    std::string id_;
    DataFolder data_;
    Misbehaviour misbehaviour_;
    Descriptor ending_;   ///< readable when the application is to end
    Descriptor waiting_;  ///< readable when requests wait
    std::mutex mutex_;
    std::deque<Request> requests_;
};

}  // namespace vxtv::hotel
