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

/// The maximum number of ports of one process.
inline constexpr std::size_t kMostPorts = 16;

/// The message ports of one application on its television's bus. Each operation looks for the bus again, so
/// if the bus was down or has been restarted, the next call finds it.
///
/// Threads: any. No operation waits for a receiver of this process, and receivers may call all of them.
/// Processes: after a fork, the child's object refuses every operation.
class MessagePorts {
 public:
    MessagePorts(Folder folder, std::string application);
    ~MessagePorts();
    MessagePorts(const MessagePorts&) = delete;
    MessagePorts& operator=(const MessagePorts&) = delete;

    /// For the end of the process: receivers are no longer called, and a running one has ended, unless it
    /// takes long. Threads in other operations are not disturbed.
    void hush();

    /// Makes a port and begins to receive its messages. Result: its id, 1 or more. The same name again gives
    /// the same id, and replaces the receiver.
    PortResult<int> open(const std::string& name, Delivery::Receiver receiver);

    /// Whether the application has the port now.
    PortResult<bool> exists(const std::string& application, const std::string& port);

    /// Sends the entries, with the port `id` as the address for answers. Returns when the receiving process
    /// has accepted the message, before its receiver runs.
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
    BusConnection calls_;  ///< for sent messages; the caller reads the answers itself
};

}  // namespace vxtv
