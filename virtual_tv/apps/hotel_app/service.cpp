#include "virtual_tv/apps/hotel_app/service.h"

#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <utility>

#include "platform/dlog.h"
#include "platform/message_port.h"
#include "virtual_tv/apps/hotel_app/data_package.h"

namespace vxtv::hotel {

namespace {

// The words of the protocol between cloning applications and applications with data of their own.
constexpr const char* kPort = "VxCloneMessagePort";
constexpr const char* kRequestKey = "externalRequest";
constexpr const char* kPathKey = "path";
constexpr const char* kBackup = "request_clone_backup";
constexpr const char* kRestore = "request_clone_restore";
constexpr const char* kReplyKey = "response_clone";
constexpr const char* kSuccess = "success";
constexpr const char* kFail = "fail";

constexpr int kForever = -1;
constexpr int kCannotServe = 1;

struct FreeBundle {
    void operator()(bundle* content) const { bundle_free(content); }
};

std::string entryOf(bundle* message, const char* key) {
    char* value = nullptr;
    return bundle_get_str(message, key, &value) == 0 && value != nullptr ? value : "";
}

std::string orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

Descriptor endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    // Blocked before the platform starts its threads, which inherit the mask.
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC));
}

}  // namespace

Service::Service(std::string id, DataFolder data, Misbehaviour misbehaviour)
    : id_(std::move(id)),
      data_(std::move(data)),
      misbehaviour_(misbehaviour),
      ending_(endingSignals()),
      waiting_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

int Service::run() {
    if (waitsFor(misbehaviour_.latePortMs)) {
        return 0;
    }
    const int port = message_port_register_local_port(kPort, receive, this);
    if (port < 0) {
        log(DLOG_ERROR, fmt::format("cannot have the port {}: error {}", kPort, port));
        return kCannotServe;
    }
    log(DLOG_INFO, fmt::format("serves at the port {}", kPort));
    std::array<pollfd, 2> ready = {pollfd{ending_.get(), POLLIN, 0}, pollfd{waiting_.get(), POLLIN, 0}};
    while (true) {
        if (poll(ready.data(), ready.size(), kForever) < 0) {
            continue;
        }
        if (ready[0].revents != 0) {
            return 0;
        }
        serveAll();
    }
}

/// The platform's thread only queues the request, because a caller may wait until its port is free again.
void Service::receive(int localPort, const char* application, const char* port, bool /*trusted*/,
                      bundle* message, void* service) {
    auto& self = *static_cast<Service*>(service);
    Request request{.localPort = localPort,
                    .application = orEmpty(application),
                    .port = orEmpty(port),
                    .wanted = entryOf(message, kRequestKey),
                    .path = entryOf(message, kPathKey)};
    {
        const std::lock_guard lock(self.mutex_);
        self.requests_.push_back(std::move(request));
    }
    eventfd_write(self.waiting_.get(), 1);
}

/// Waits. True if the application is told to end meanwhile.
bool Service::waitsFor(int milliseconds) const {
    pollfd ending = {ending_.get(), POLLIN, 0};
    return milliseconds > 0 && poll(&ending, 1, milliseconds) > 0;
}

void Service::serveAll() {
    eventfd_t count = 0;
    eventfd_read(waiting_.get(), &count);
    while (true) {
        Request request;
        {
            const std::lock_guard lock(mutex_);
            if (requests_.empty()) {
                return;
            }
            request = std::move(requests_.front());
            requests_.pop_front();
        }
        serve(request);
    }
}

void Service::serve(const Request& request) {
    log(DLOG_INFO, fmt::format("{} asks for {} at {}", request.application, request.wanted, request.path));
    const bool succeeded = !misbehaviour_.fail && carryOut(request);
    if (!misbehaviour_.noReply && !waitsFor(misbehaviour_.lateReplyMs)) {
        reply(request, succeeded);
    }
}

bool Service::carryOut(const Request& request) const {
    const auto dieIf = [](bool dies) {
        return [dies] {
            if (dies) {
                raise(SIGKILL);
            }
        };
    };
    Result<void> done = failure(ErrorCode::BadArgument, "this is no request that the application knows");
    if (request.wanted == kBackup) {
        done = writePackage(data_, request.path, id_, dieIf(misbehaviour_.crashInBackup));
    } else if (request.wanted == kRestore) {
        done = loadPackage(data_, request.path, id_, dieIf(misbehaviour_.crashInRestore));
    }
    log(done ? DLOG_INFO : DLOG_ERROR, done ? "done" : done.error().sentence);
    return done.has_value();
}

void Service::reply(const Request& request, bool succeeded) const {
    const std::unique_ptr<bundle, FreeBundle> message(bundle_create());
    const char* const good = misbehaviour_.wrongCase ? "Success" : kSuccess;
    const char* const key = misbehaviour_.noEntry ? "answer" : kReplyKey;
    bundle_add_str(message.get(), key, succeeded ? good : kFail);
    const int status = message_port_send_message_with_local_port(
        request.application.c_str(), request.port.c_str(), message.get(), request.localPort);
    if (status != 0) {
        log(DLOG_ERROR,
            fmt::format("the reply to {} could not be sent: error {}", request.application, status));
    }
}

void Service::log(int priority, const std::string& text) const {
    __dlog_print(LOG_ID_MAIN, priority, id_.c_str(), "%s", text.c_str());
}

}  // namespace vxtv::hotel
