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

/// Exit statuses of vxtv. `run` and `shell` return the status of their command instead.
inline constexpr int kExitOk = 0;
inline constexpr int kExitDiffers = 1;  ///< `compare` found a difference
inline constexpr int kExitFailed = 2;   ///< the sentence is on standard error

/// The action that the command line asks for. Result: the exit status.
using Action = std::function<int()>;

/// Each function adds its verb to the application. Parsing the verb sets `chosen`, which main then runs.
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

/// The error with a question after its sentence: which of the names was probably meant by `typed`. Unchanged
/// if no name is similar.
Error asking(Error error, std::string_view typed, const std::vector<std::string>& names);

/// The setting with the typed key. Errors: those of `SettingsStore::get`; for an unknown key the sentence
/// suggests a similar one.
Result<Setting> lookUpSetting(const Television& television, const std::string& key);

}  // namespace vxtv
