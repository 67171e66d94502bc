#pragma once

namespace vxtv {

/// The environment variable that tells the platform libraries which application a process is: whoever
/// launches an application sets it to the application's id.
inline constexpr const char* kApplicationIdVariable = "VXTV_APP_ID";

/// The application that a process is for which nobody set the variable: what the installer runs.
inline constexpr const char* kCloningApplication = "org.vorta.vxhotel-cloning";

}  // namespace vxtv
