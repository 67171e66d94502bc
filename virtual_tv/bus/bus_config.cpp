#include "virtual_tv/bus/bus_config.h"

#include <fmt/format.h>

#include <random>

namespace vxtv {

namespace {

// By default the daemon accepts only its own user. This policy does not mention users, so that default holds.
constexpr const char* kConfig =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>{}</listen>
  <auth>EXTERNAL</auth>
  <apparmor mode="disabled"/>
  <policy context="default">
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
  <limit name="max_message_size">1048576</limit>
  <limit name="max_incoming_bytes">4194304</limit>
  <limit name="max_outgoing_bytes">4194304</limit>
  <limit name="max_message_unix_fds">0</limit>
  <limit name="max_completed_connections">512</limit>
  <limit name="max_connections_per_user">512</limit>
  <limit name="max_names_per_connection">4</limit>
  <limit name="auth_timeout">5000</limit>
</busconfig>
)";

}  // namespace

std::string newBusAddress() {
    std::random_device random;
    return fmt::format("unix:abstract=vxtv-{:08x}{:08x}{:08x}{:08x}", random(), random(), random(), random());
}

std::string busConfig(const std::string& address) {
    return fmt::format(kConfig, address);
}

}  // namespace vxtv
