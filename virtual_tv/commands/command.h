#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

struct Setting;
class Television;

/// Exit statuses of vxtv. `run` and `shell` end with their command's own status instead.
inline constexpr int kExitOk = 0;
inline constexpr int kExitDiffers = 1;  ///< `compare` found a difference
inline constexpr int kExitFailed = 2;   ///< the sentence is on standard error

/// What the parsed command line asks for; the result is the exit status.
using Action = std::function<int()>;

/// Each adds its verb to the application; parsing the verb sets `chosen`, which main then runs.
void addCreateCommand(CLI::App& app, Action& chosen);
void addDestroyCommand(CLI::App& app, Action& chosen);
void addRunCommand(CLI::App& app, Action& chosen);
void addShellCommand(CLI::App& app, Action& chosen);
void addGetCommand(CLI::App& app, Action& chosen);
void addSetCommand(CLI::App& app, Action& chosen);
void addSettingsCommand(CLI::App& app, Action& chosen);
void addInfoCommand(CLI::App& app, Action& chosen);
void addCompareCommand(CLI::App& app, Action& chosen);
void addFaultCommand(CLI::App& app, Action& chosen);
void addCallsCommand(CLI::App& app, Action& chosen);
void addLogCommand(CLI::App& app, Action& chosen);
void addKeyfileCommand(CLI::App& app, Action& chosen);
void addAppCommand(CLI::App& app, Action& chosen);
void addServicesCommand(CLI::App& app, Action& chosen);
void addShowCommand(CLI::App& app, Action& chosen);
void addSourcesCommand(CLI::App& app, Action& chosen);
void addChannelsCommand(CLI::App& app, Action& chosen);
void addTimersCommand(CLI::App& app, Action& chosen);

/// Prints "vxtv: " and the sentence on standard error. Result: kExitFailed.
int complain(const Error& error);

/// The error with a question behind its sentence: which of the names was meant by what was typed. Unchanged
/// where none is like it.
Error asking(Error error, std::string_view typed, const std::vector<std::string>& names);

/// The setting that a person typed the key of. Errors: those of `SettingsStore::get`; an unknown key comes
/// with the one that was likely meant.
Result<Setting> lookUpSetting(const Television& television, const std::string& key);

}  // namespace vxtv
