#include "virtual_tv/ports/port_message.h"

namespace vxtv {

namespace {

constexpr const char* kEntry = "{ss}";
constexpr const char* kSignature = "ssba{ss}";

int write(sd_bus_message* call, const PortMessage& message) {
    int result = sd_bus_message_append(call, "ssb", message.application.c_str(), message.port.c_str(),
                                       message.trusted ? 1 : 0);
    if (result >= 0) result = sd_bus_message_open_container(call, SD_BUS_TYPE_ARRAY, kEntry);
    for (const auto& [key, value] : message.entries) {
        if (result >= 0) result = sd_bus_message_append(call, kEntry, key.c_str(), value.c_str());
    }
    return result >= 0 ? sd_bus_message_close_container(call) : result;
}

int readEntries(sd_bus_message* call, PortEntries& entries) {
    int result = sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, kEntry);
    while (result > 0) {
        const char* key = nullptr;
        const char* value = nullptr;
        result = sd_bus_message_read(call, kEntry, &key, &value);
        if (result > 0) entries.emplace_back(key, value);
    }
    return result;
}

}  // namespace

std::size_t sizeOf(const PortEntries& entries) {
    std::size_t size = 0;
    for (const auto& [key, value] : entries) size += key.size() + value.size();
    return size;
}

PortResult<BusMessage> toCall(sd_bus* bus, const std::string& busName, const PortMessage& message) {
    if (sizeOf(message.entries) > kLargestMessage) return tl::make_unexpected(PortError::MessageTooLarge);
    sd_bus_message* made = nullptr;
    int result = sd_bus_message_new_method_call(bus, &made, busName.c_str(), kPortObject, kPortInterface,
                                                kDeliverMethod);
    BusMessage call(made);
    if (result >= 0) result = sd_bus_message_set_auto_start(made, 0);
    if (result >= 0) result = write(made, message);
    if (result < 0) return tl::make_unexpected(portErrorOf(result));
    return call;
}

std::optional<PortMessage> fromCall(sd_bus_message* call) {
    if (sd_bus_message_has_signature(call, kSignature) <= 0) return std::nullopt;
    const char* application = nullptr;
    const char* port = nullptr;
    int trusted = 0;
    if (sd_bus_message_read(call, "ssb", &application, &port, &trusted) <= 0) return std::nullopt;
    PortMessage message = {application, port, trusted != 0, {}};
    const bool isRead = readEntries(call, message.entries) >= 0 && sizeOf(message.entries) <= kLargestMessage;
    return isRead ? std::optional(std::move(message)) : std::nullopt;
}

}  // namespace vxtv
