#include "platform/message_port.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int message_port_register_local_port(const char* local_port_name, message_port_message_cb /*callback*/,
                                     void* /*user_data*/) {
    return absent("message_port_register_local_port", {named("localPort", local_port_name)}, kFailed);
}

int message_port_check_remote_port(const char* remote_app_id, const char* remote_port_name, bool* /*exist*/) {
    return absent("message_port_check_remote_port",
                  {named("remoteApp", remote_app_id), named("remotePort", remote_port_name)}, kFailed);
}

int message_port_send_message_with_local_port(const char* remote_app_id, const char* remote_port_name,
                                              bundle* /*message*/, int local_port_id) {
    return absent("message_port_send_message_with_local_port",
                  {named("remoteApp", remote_app_id), named("remotePort", remote_port_name),
                   number("localPortId", local_port_id)},
                  kFailed);
}
