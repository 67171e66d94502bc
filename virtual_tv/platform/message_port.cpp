#include "platform/message_port.h"

#include <cstdlib>
#include <memory>

#include "virtual_tv/applications/applications.h"
#include "virtual_tv/platform/bundle_content.h"
#include "virtual_tv/platform/passage.h"
#include "virtual_tv/ports/message_ports.h"

using namespace vxtv;

namespace {

constexpr int kPortFailed = static_cast<int>(PortError::Failed);
constexpr int kBadPortArgument = static_cast<int>(PortError::BadArgument);

template <class Value>
int statusOf(const PortResult<Value>& failed) {
    return static_cast<int>(failed.error());
}

std::string ownApplication() {
    const char* const named = std::getenv(kApplicationIdVariable);
    return named != nullptr ? named : kCloningApplication;
}

MessagePorts& portsOf(const Television& television) {
    // Never destroyed, because other threads may call it while the process ends. Receivers are no longer
    // called then, because the data that they use may be destroyed already.
    static MessagePorts* const ports =
        std::make_unique<MessagePorts>(television.folder(), ownApplication()).release();
    struct Farewell {
        ~Farewell() { ports->hush(); }
    };
    static const Farewell farewell;
    return *ports;
}

std::int64_t lengthOf(const bundle* message) {
    return message != nullptr ? static_cast<std::int64_t>(sizeOf(message->entries)) : 0;
}

std::int64_t countOf(const bundle* message) {
    return message != nullptr ? static_cast<std::int64_t>(message->entries.size()) : 0;
}

}  // namespace

int message_port_register_local_port(const char* local_port_name, message_port_message_cb callback,
                                     void* user_data) {
    return answer("message_port_register_local_port", {named("localPort", local_port_name)}, kPortFailed,
                  [=](Television& television) {
                      if (local_port_name == nullptr || callback == nullptr) return kBadPortArgument;
                      const auto receive = [=](int port, PortMessage message) {
                          bundle content{std::move(message.entries)};
                          callback(port, message.application.c_str(), message.port.c_str(), message.trusted,
                                   &content, user_data);
                      };
                      const auto port = portsOf(television).open(local_port_name, receive);
                      return port ? *port : statusOf(port);
                  });
}

int message_port_check_remote_port(const char* remote_app_id, const char* remote_port_name, bool* exist) {
    return answer("message_port_check_remote_port",
                  {named("remoteApp", remote_app_id), named("remotePort", remote_port_name)}, kPortFailed,
                  [=](Television& television) {
                      if (remote_app_id == nullptr || remote_port_name == nullptr || exist == nullptr) {
                          return kBadPortArgument;
                      }
                      const auto found = portsOf(television).exists(remote_app_id, remote_port_name);
                      if (!found) return statusOf(found);
                      *exist = *found;
                      return 0;
                  });
}

int message_port_send_message_with_local_port(const char* remote_app_id, const char* remote_port_name,
                                              bundle* message, int local_port_id) {
    return answer(
        "message_port_send_message_with_local_port",
        {named("remoteApp", remote_app_id), named("remotePort", remote_port_name),
         number("localPortId", local_port_id), number("entries", countOf(message)),
         number("bytes", lengthOf(message))},
        kPortFailed, [=](Television& television) {
            if (remote_app_id == nullptr || remote_port_name == nullptr || message == nullptr) {
                return kBadPortArgument;
            }
            const auto sent =
                portsOf(television).send(remote_app_id, remote_port_name, message->entries, local_port_id);
            return sent ? 0 : statusOf(sent);
        });
}
