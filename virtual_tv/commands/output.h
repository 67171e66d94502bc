#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "common/terminal_table.h"
#include "common/writer.h"
#include "virtual_tv/store/settings_store.h"

namespace vxtv {

/// A value in JSON's own type.
nlohmann::ordered_json toJson(const SettingValue& value);

/// The width for a table on standard output: the terminal's. Without a terminal there is no limit, so that
/// each row is one line for programs such as grep.
vxcommon::Screen outputScreen();

/// Writes the text on standard output.
void print(vxcommon::PrintableView text);

/// Writes the sentence on standard output, printable, and a line feed.
void say(std::string_view sentence);

/// Writes the document on standard output, indented.
void printJson(const nlohmann::ordered_json& document);

/// Writes the document on standard output as one line.
void printJsonLine(const nlohmann::ordered_json& document);

/// Writes out what standard output still buffers. Result: whether everything was written.
bool flushOutput();

/// Writes out what standard output still buffers. Result: kExitOk, or kExitFailed with a sentence on standard
/// error if not everything could be written, for example on a full disk. A closed pipe is no failure, because
/// its reader has read enough.
int finishOutput();

}  // namespace vxtv
