// Messages between applications: sent messages, incoming calls of any form, and the answer to the library.

#include <sys/socket.h>
#include <unistd.h>

#include "VxMessagePortAPI.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/scripted/scripted_bundle_content.h"
#include "tests/support/scripted/scripted_platform.h"
#include "virtual_tv/ports/port.h"
#include "virtual_tv/ports/port_message.h"

namespace vxfuzz {
namespace {

using vxtv::BusMessage;
using vxtv::PortMessage;

constexpr std::size_t kMostDepth = 4;

/// A connection that creates messages but sends none.
sd_bus* connection() {
    static const vxtv::BusConnection bus = [] {
        int ends[2] = {-1, -1};
        sd_bus* made = nullptr;
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0 && sd_bus_new(&made) >= 0 &&
                    sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0,
                "a connection can be made");
        return vxtv::BusConnection(made);
    }();
    return bus.get();
}

/// Converts a message as its receiver does. Result: whether it can be sent.
bool send(sd_bus_message* call) {
    return sd_bus_message_seal(call, 1, 0) >= 0 && sd_bus_message_rewind(call, 1) >= 0;
}

/// The library uses the first entry with the name of the answer.
void answerLibrary(const PortMessage& message) {
    bundle answer;
    answer.entries.assign(message.entries.begin(), message.entries.end());
    VxMessagePortAPI::message_port_cb(0, message.application.c_str(), message.port.c_str(), message.trusted,
                                      &answer, nullptr);
    const std::string* const said = vxtest::findEntry(answer, "response_clone");
    require(VxMessagePortAPI::result_ == (said != nullptr && *said == "success"), "only success is success");
}

void exchange(Input input) {
    PortMessage message;
    message.trusted = input.byte() % 2 != 0;
    message.application = input.until('\0');
    message.port = input.until('\0');
    while (!input.isEmpty()) {
        const std::string key(input.until('\0'));
        message.entries.emplace_back(key, std::string(input.until('\0')));
    }
    const auto call = vxtv::toCall(connection(), "vxtv.org.example.app.Port", message);
    if (!call) {
        return;
    }
    require(send(call->get()), "a message can be sent");
    const auto arrived = vxtv::fromCall(call->get());
    require(arrived && arrived->application == message.application && arrived->port == message.port &&
                arrived->trusted == message.trusted && arrived->entries == message.entries,
            "a message arrives as it was sent");
    answerLibrary(*arrived);
}

/// Appends one complete type of the signature, with a value from the input. Result: 0 or more on success.
int append(sd_bus_message* call, std::string_view& signature, Input& input, std::size_t depth) {
    const char type = signature.empty() ? '\0' : signature.front();
    signature.remove_prefix(signature.empty() ? 0 : 1);
    if (type == 's') {
        return sd_bus_message_append_basic(call, type, std::string(input.until('\0')).c_str());
    }
    if (type == 'b' || type == 'i' || type == 'u') {
        const int number = input.byte() % (type == 'b' ? 2 : 256);
        return sd_bus_message_append_basic(call, type, &number);
    }
    if (type == 'y') {
        const unsigned char number = input.byte();
        return sd_bus_message_append_basic(call, type, &number);
    }
    if ((type != 'a' && type != 'v') || depth >= kMostDepth) {
        return -1;
    }
    const std::string inside(type == 'v' ? std::string_view("s") : std::string_view("{ss}"));
    int result = sd_bus_message_open_container(call, type, inside.c_str());
    for (int left = type == 'v' ? 1 : input.byte() % 8; result >= 0 && left > 0; --left) {
        std::string_view inner = "ss";
        if (type == 'a') {
            result = sd_bus_message_open_container(call, 'e', "ss");
        }
        for (const std::size_t end = type == 'v' ? 1 : 0; result >= 0 && inner.size() > end;) {
            result = append(call, inner, input, depth + 1);
        }
        if (result >= 0 && type == 'a') {
            result = sd_bus_message_close_container(call);
        }
    }
    return result >= 0 ? sd_bus_message_close_container(call) : result;
}

/// A call with arguments of any types.
void receive(Input input) {
    sd_bus_message* made = nullptr;
    require(
        sd_bus_message_new_method_call(connection(), &made, "vxtv.org.example.app.Port", vxtv::kPortObject,
                                       vxtv::kPortInterface, vxtv::kDeliverMethod) >= 0,
        "a message can be made");
    const BusMessage call(made);
    std::string_view signature = input.until('\0');
    while (!signature.empty()) {
        if (append(made, signature, input, 0) < 0) {
            return;
        }
    }
    const std::string types = sd_bus_message_get_signature(made, 1);
    if (!send(made)) {
        return;
    }
    const auto arrived = vxtv::fromCall(made);
    require(!arrived || (types == "ssba{ss}" && vxtv::sizeOf(arrived->entries) <= vxtv::kLargestMessage),
            "only calls of the right form are messages");
    require(arrived || types != "ssba{ss}", "a call of the right form is a message");
}

void name(Input input) {
    const std::string_view application = input.until('\0');
    const std::string_view port = input.rest();
    const auto busName = vxtv::portBusName(application, port);
    require(!busName || sd_bus_service_name_is_valid(busName->c_str()) > 0,
            "a port's name is one on the bus");
    require(!busName || *busName == "vxtv." + std::string(application) + "." + std::string(port),
            "a port's name tells application and port");
}

void run(std::string_view bytes) {
    vxtest::ScriptedPlatform::instance().reset();
    Input input(bytes);
    switch (input.byte()) {
        case 's':
            return exchange(input);
        case 'r':
            return receive(input);
        default:
            return name(input);
    }
}

const Target kMessage("message", run);

}  // namespace
}  // namespace vxfuzz
