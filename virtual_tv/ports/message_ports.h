#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "virtual_tv/ports/bus_connection.h"
#include "virtual_tv/ports/delivery.h"
#include "virtual_tv/ports/local_port.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// How many ports one process may have.
inline constexpr std::size_t kMostPorts = 16;

/// The message ports of one application, on the bus of its television. Each operation looks for the bus anew,
/// so one that was down when a port was made, or went down since, is found again by the next call.
///
/// Threads: any. Nothing here waits for a receiver of this process, and receivers may call everything.
/// Processes: a process that forks leaves the child an object that refuses everything.
class MessagePorts {
 public:
    MessagePorts(Folder folder, std::string application);
    ~MessagePorts();
    MessagePorts(const MessagePorts&) = delete;
    MessagePorts& operator=(const MessagePorts&) = delete;

    /// For the end of the process: receivers are not called any more, and one that is being called has ended,
    /// unless it takes long. Threads that call the other operations are not disturbed.
    void hush();

    /// Makes a port, and takes its messages from now on. Result: its id, 1 or more. The same name again gives
    /// the same id, and the receiver replaces the one before.
    PortResult<int> open(const std::string& name, Delivery::Receiver receiver);

    /// Whether the application has the port now.
    PortResult<bool> exists(const std::string& application, const std::string& port);

    /// Sends the entries, with the port of the id as the address for answers. Returns when the receiving
    /// process has taken the message over, before its receiver runs.
    PortResult<void> send(const std::string& application, const std::string& port, const PortEntries& entries,
                          int localPort);

 private:
    struct Own {
        int id = 0;
        std::unique_ptr<LocalPort> port;
    };
    PortResult<std::string> checkedAddress() const;
    PortResult<std::string> nameOf(int localPort);
    PortResult<void> connect();
    template <class MakeCall>
    PortResult<BusMessage> call(MakeCall makeCall);
    bool isForked() const;

    Folder folder_;
    std::string application_;
    pid_t owner_;
    Delivery delivery_;

    std::mutex portsMutex_;
    std::map<std::string, Own> ports_;

    std::mutex callsMutex_;
    std::string callsAddress_;
    BusConnection calls_;  ///< for what this process sends: answers are read by the caller itself
};

}  // namespace vxtv
