#pragma once

#include <string>
#include <string_view>

#include "virtual_tv/bus/port_error.h"

namespace vxtv {

/// The name on the bus that stands for the application's port: "vxtv.APPLICATION.PORT". An application's id
/// is made of parts between dots, a port's name is one part; a part has letters, digits, "-" and "_", and
/// does not begin with a digit.
/// On failure BadArgument or NameTooLong.
PortResult<std::string> portBusName(std::string_view application, std::string_view port);

}  // namespace vxtv
