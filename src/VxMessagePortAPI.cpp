#include "VxMessagePortAPI.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>

#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "VXCloneResources.h"
#include "platform/message_port.h"

bool VxMessagePortAPI::result_ = false;
std::atomic<bool> VxMessagePortAPI::waiting_ = false;
std::mutex VxMessagePortAPI::mutex_;
std::condition_variable VxMessagePortAPI::condition_;
bool VxMessagePortAPI::busy_ = false;
std::condition_variable VxMessagePortAPI::turn_;
unsigned VxMessagePortAPI::replies_ = 0;

namespace {

/// The name of this library's port. Every cooperating application registers a port of the same name.
constexpr char kPortName[] = "VxCloneMessagePort";
constexpr char kReplyKey[] = "response_clone";
constexpr char kReplySuccess[] = "success";

constexpr int kPortChecks = 11;
constexpr timespec kPortCheckPause = {0, 500'000'000};
constexpr std::chrono::seconds kReplyTimeout(4);

void pause(timespec left) {
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

/// A string for the log; it may be null.
const char* shown(const char* text) {
    return text != nullptr ? text : "(null)";
}

}  // namespace

/// The right to be the current exchange. The mutex alone is not enough, because the wait for a reply releases
/// it.
class VxMessagePortAPI::Turn {
 public:
    explicit Turn(std::unique_lock<std::mutex>& lock) {
        turn_.wait(lock, [] { return !busy_; });
        busy_ = true;
    }
    ~Turn() {
        busy_ = false;
        turn_.notify_one();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
};

bool VxMessagePortAPI::Backup(char const* application) {
    return Exchange(application, kRequestBackup);
}

bool VxMessagePortAPI::Restore(char const* application) {
    return Exchange(application, kRequestRestore);
}

bool VxMessagePortAPI::Exchange(char const* application, char const* request) {
    waiting_ = true;
    std::unique_lock<std::mutex> lock(mutex_);
    const Turn turn(lock);
    // Set again: the reply of the previous exchange may have cleared it while this one waited for its turn.
    waiting_ = true;
    const int port = RegisterPort();
    return port >= 0 && SendMessage(port, request, application) && waitReply(lock) && result_;
}

int VxMessagePortAPI::RegisterPort() {
    const int port = message_port_register_local_port(kPortName, message_port_cb, nullptr);
    if (port < 0) {
        VX_LOGF(Error, "Port register error: %d", port);
    } else {
        VX_LOGF(Error, "port_id: %d", port);
    }
    return port;
}

bool VxMessagePortAPI::SendMessage(int localPort, char const* request, char const* application) {
    VX_LOGF(Debug, "appName [%s]", application);
    for (int attempt = 0; attempt < kPortChecks; ++attempt) {
        if (test_check_remote_port(application)) {
            const VXCloneBundle message(bundle_create());
            bundle_add_str(message.get(), kRequestKey, request);
            bundle_add_str(message.get(), kPathKey, kCloneDirectoryWithSlash);
            return send_message_with_local_port(localPort, message.get(), application);
        }
        VX_LOG(Error, "Remote port check fail, retry in 0.5s");
        pause(kPortCheckPause);
    }
    VX_LOGF(Fatal, "Unable to reach [%s]!!!", application);
    return false;
}

bool VxMessagePortAPI::test_check_remote_port(char const* application) {
    bool exists = false;
    const int status = message_port_check_remote_port(application, kPortName, &exists);
    if (status != 0) {
        VX_LOGF(Error, "message_port_check_remote_port error: %d", status);
    }
    return exists;
}

bool VxMessagePortAPI::send_message_with_local_port(int localPort, _bundle_t* message,
                                                    char const* application) {
    const int status = message_port_send_message_with_local_port(application, kPortName, message, localPort);
    if (status != 0) {
        VX_LOGF(Error, "message_port_send_message_with_local_port error: %d", status);
        return false;
    }
    VX_LOG(Error, "Send message done");
    return true;
}

bool VxMessagePortAPI::waitReply(std::unique_lock<std::mutex>& lock) {
    VX_LOG(Error, "Clone waitReply");
    // A waiting caller sets `waiting_` again, so only the count shows that the reply arrived.
    const unsigned repliesBefore = replies_;
    return condition_.wait_for(lock, kReplyTimeout, [repliesBefore] {
        const bool waiting = waiting_ && replies_ == repliesBefore;
        VX_LOGF(Error, "Clone check waiting %d", waiting ? 1 : 0);
        return !waiting;
    });
}

void VxMessagePortAPI::message_port_cb(int, char const* remoteApplication, char const*, bool,
                                       _bundle_t* message, void*) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        result_ = false;
        waiting_ = false;
        ++replies_;
        char* reply = nullptr;
        bundle_get_str(message, kReplyKey, &reply);
        VX_LOGF(Error, "Message from %s, result %s", shown(remoteApplication), shown(reply));
        result_ = reply != nullptr && std::strcmp(reply, kReplySuccess) == 0;
    }
    condition_.notify_all();
}
