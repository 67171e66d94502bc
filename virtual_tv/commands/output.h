#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "common/terminal_table.h"
#include "common/writer.h"
#include "virtual_tv/store/settings_store.h"

namespace vxtv {

/// A value in JSON's own type.
nlohmann::ordered_json toJson(const SettingValue& value);

/// What a table on standard output has to fit: the terminal; where there is none, nothing, so that each row
/// is one line, which programs search.
vxcommon::Screen outputScreen();

/// Writes the text on standard output.
void print(vxcommon::PrintableView text);

/// Writes the sentence on standard output, printable, and a line feed.
void say(std::string_view sentence);

/// Writes the document on standard output, indented.
void printJson(const nlohmann::ordered_json& document);

/// Writes the document on standard output as one line.
void printJsonLine(const nlohmann::ordered_json& document);

/// Writes out what standard output still holds. Result: whether all that was ever written there is out.
bool flushOutput();

/// Writes out what standard output still holds. Result: kExitOk, or kExitFailed with a sentence on standard
/// error when not all of it could be written, as on a full disk. Whoever closes a pipe has read enough, and
/// that is no failure.
int finishOutput();

}  // namespace vxtv
