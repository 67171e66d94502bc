#include "virtual_tv/ports/message_ports.h"

#include <unistd.h>

#include <utility>

#include "virtual_tv/ports/port.h"
#include "virtual_tv/television/announcement.h"

namespace vxtv {

namespace {

constexpr const char* kBusItself = "org.freedesktop.DBus";
constexpr const char* kBusObject = "/org/freedesktop/DBus";

PortResult<BusMessage> askForOwner(sd_bus* bus, const std::string& busName) {
    sd_bus_message* made = nullptr;
    int result =
        sd_bus_message_new_method_call(bus, &made, kBusItself, kBusObject, kBusItself, "NameHasOwner");
    BusMessage call(made);
    if (result >= 0) result = sd_bus_message_append(made, "s", busName.c_str());
    if (result < 0) return tl::make_unexpected(portErrorOf(result));
    return call;
}

}  // namespace

MessagePorts::MessagePorts(Folder folder, std::string application)
    : folder_(std::move(folder)), application_(std::move(application)), owner_(getpid()) {}

MessagePorts::~MessagePorts() {
    // A running receiver may be sending a message.
    delivery_.end();
}

void MessagePorts::hush() {
    // A forked child does not have this thread, and the lock may be held by a thread that does not exist in
    // the child.
    if (!isForked()) delivery_.hush();
}

bool MessagePorts::isForked() const {
    return getpid() != owner_;
}

PortResult<std::string> MessagePorts::checkedAddress() const {
    const auto address = isForked() ? std::nullopt : busAddress(folder_);
    if (!address) return tl::make_unexpected(PortError::NoBus);
    return *address;
}

PortResult<int> MessagePorts::open(const std::string& name, Delivery::Receiver receiver) {
    const auto busName = portBusName(application_, name);
    VX_RETURN_IF_FAILED(busName);
    const auto address = checkedAddress();
    VX_RETURN_IF_FAILED(address);
    const std::lock_guard lock(portsMutex_);
    const bool isNew = ports_.find(name) == ports_.end();
    if (isNew && ports_.size() >= kMostPorts) return tl::make_unexpected(PortError::TooManyPorts);
    const int id = isNew ? static_cast<int>(ports_.size()) + 1 : ports_.at(name).id;
    std::unique_ptr<LocalPort> port = isNew ? nullptr : std::move(ports_.at(name).port);
    if (port && (!port->isOpen() || port->address() != *address)) port.reset();
    delivery_.setReceiver(id, std::move(receiver));
    if (!port) {
        auto opened = LocalPort::open(*address, *busName, id, delivery_);
        VX_RETURN_IF_FAILED(opened);
        port = std::move(*opened);
    }
    ports_[name] = {id, std::move(port)};
    return id;
}

PortResult<bool> MessagePorts::exists(const std::string& application, const std::string& port) {
    const auto busName = portBusName(application, port);
    VX_RETURN_IF_FAILED(busName);
    const auto answer = call([&](sd_bus* bus) { return askForOwner(bus, *busName); });
    VX_RETURN_IF_FAILED(answer);
    int hasOwner = 0;
    if (sd_bus_message_read(answer->get(), "b", &hasOwner) <= 0) {
        return tl::make_unexpected(PortError::Failed);
    }
    return hasOwner != 0;
}

PortResult<void> MessagePorts::send(const std::string& application, const std::string& port,
                                    const PortEntries& entries, int localPort) {
    const auto busName = portBusName(application, port);
    VX_RETURN_IF_FAILED(busName);
    const auto from = nameOf(localPort);
    VX_RETURN_IF_FAILED(from);
    const auto answer = call([&](sd_bus* bus) {
        return toCall(bus, *busName, {application_, *from, false, entries});
    });
    VX_RETURN_IF_FAILED(answer);
    return {};
}

PortResult<std::string> MessagePorts::nameOf(int localPort) {
    // In a forked child a thread that does not exist may hold the lock.
    if (isForked()) return tl::make_unexpected(PortError::NoBus);
    const std::lock_guard lock(portsMutex_);
    for (const auto& [name, own] : ports_) {
        if (own.id == localPort) return name;
    }
    return tl::make_unexpected(PortError::NoLocalPort);
}

PortResult<void> MessagePorts::connect() {
    const auto address = checkedAddress();
    VX_RETURN_IF_FAILED(address);
    if (calls_ && callsAddress_ == *address) return {};
    auto connected = connectToBus(*address);
    VX_RETURN_IF_FAILED(connected);
    calls_ = std::move(*connected);
    callsAddress_ = *address;
    return {};
}

template <class MakeCall>
PortResult<BusMessage> MessagePorts::call(MakeCall makeCall) {
    if (isForked()) return tl::make_unexpected(PortError::NoBus);
    const std::lock_guard lock(callsMutex_);
    if (const auto connected = connect(); !connected) return tl::make_unexpected(connected.error());
    const auto message = makeCall(calls_.get());
    VX_RETURN_IF_FAILED(message);
    auto answer = callOnBus(calls_.get(), message->get());
    const bool isUsable = answer || sd_bus_is_open(calls_.get()) > 0;
    // A late answer would stay in the connection forever, so the connection is dropped.
    if (!isUsable || (!answer && answer.error() == PortError::NoAnswer)) calls_.reset();
    return answer;
}

}  // namespace vxtv
