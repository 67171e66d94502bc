#include "virtual_tv/ports/local_port.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "virtual_tv/ports/quiet_thread.h"

namespace vxtv {

LocalPort::LocalPort(std::string address, std::string busName, int id, Delivery& delivery)
    : address_(std::move(address)),
      busName_(std::move(busName)),
      id_(id),
      delivery_(delivery),
      stop_(eventfd(0, EFD_CLOEXEC)) {}

PortResult<std::unique_ptr<LocalPort>> LocalPort::open(const std::string& address, const std::string& busName,
                                                       int id, Delivery& delivery) {
    auto bus = connectToBus(address);
    VX_RETURN_IF_FAILED(bus);
    std::unique_ptr<LocalPort> port(new LocalPort(address, busName, id, delivery));
    port->bus_ = std::move(*bus);
    if (!port->stop_) return tl::make_unexpected(PortError::Failed);
    if (const int result = port->takeName(); result < 0) {
        return tl::make_unexpected(portErrorOf(result));
    }
    port->thread_ = quietThread([served = port.get()] { served->serve(); });
    return port;
}

LocalPort::~LocalPort() {
    if (!thread_.joinable()) return;
    eventfd_write(stop_.get(), 1);
    thread_.join();
    // The bus would notice the closed connection by itself, but a little later.
    sd_bus_release_name(bus_.get(), busName_.c_str());
}

int LocalPort::takeName() {
    const int result = sd_bus_add_object(bus_.get(), nullptr, kPortObject, &LocalPort::onCall, this);
    return result < 0 ? result : sd_bus_request_name(bus_.get(), busName_.c_str(), 0);
}

int LocalPort::onCall(sd_bus_message* call, void* port, sd_bus_error* /*error*/) noexcept {
    try {
        return static_cast<LocalPort*>(port)->answer(call);
    } catch (...) {
        return -ENOMEM;
    }
}

int LocalPort::answer(sd_bus_message* call) {
    if (sd_bus_message_is_method_call(call, kPortInterface, kDeliverMethod) <= 0) return 0;
    auto message = fromCall(call);
    if (!message) {
        return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_INVALID_ARGS, "that is no message for a port");
    }
    if (!delivery_.accept(id_, std::move(*message))) {
        return sd_bus_reply_method_errorf(call, kReceiverFullName, "too many messages wait already");
    }
    return sd_bus_reply_method_return(call, nullptr);
}

void LocalPort::serve() {
    int processed = 0;
    do {
        processed = sd_bus_process(bus_.get(), nullptr);
    } while (processed > 0 || (processed == 0 && waitForWork()));
    open_ = false;
}

bool LocalPort::waitForWork() {
    const int events = sd_bus_get_events(bus_.get());
    if (events < 0) return false;
    std::array<pollfd, 2> ready = {pollfd{stop_.get(), POLLIN, 0},
                                   pollfd{sd_bus_get_fd(bus_.get()), static_cast<short>(events), 0}};
    int polled = 0;
    do {
        polled = poll(ready.data(), ready.size(), -1);
    } while (polled < 0 && errno == EINTR);
    return polled > 0 && ready[0].revents == 0;
}

}  // namespace vxtv
