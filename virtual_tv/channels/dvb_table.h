#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// One frequency of a network and its parameters, as in a table of initial scan data.
struct Transponder {
    std::string system;                             ///< "DVBT", "DVBC/ANNEX_A", ...
    std::int64_t frequency = 0;                     ///< in Hz; for a satellite in kHz
    std::map<std::string, std::string> parameters;  ///< the table's other members: "SYMBOL_RATE", ...
};

/// The limits of a transponder from any file.
inline constexpr std::int64_t kHighestFrequency = 100'000'000'000;
inline constexpr std::size_t kMostParameters = 40;
inline constexpr std::size_t kLongestParameter = 64;  ///< of a parameter's name and of its value
inline constexpr std::size_t kMostTransponders = 1000;

/// Whether the text names a delivery system that a table may contain.
bool isDeliverySystem(std::string_view name);
/// Whether the text may be a parameter's name or value: visible ASCII, and blanks inside.
bool isParameterText(std::string_view text);

/// Reads a table in the dvbv5 format: sections in brackets, each with lines `NAME = value`. DELIVERY_SYSTEM
/// and FREQUENCY are required. Errors: BadProfile, with the line; `name` is used in the sentence.
Result<std::vector<Transponder>> parseDvbTable(std::string_view text, const std::string& name);

/// The file of a table with a name such as "dvb-c/de-Muenchen": one that is shipped with this program, or
/// else one of the distribution's package, if that is installed. Errors: BadArgument for an invalid name,
/// UnknownEntry if there is no such table.
Result<std::filesystem::path> findDvbTable(const std::string& name);

}  // namespace vxtv
