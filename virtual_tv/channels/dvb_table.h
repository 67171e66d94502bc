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

/// What one frequency of a network carries, as a table of initial scan data tells it.
struct Transponder {
    std::string system;                             ///< "DVBT", "DVBC/ANNEX_A", ...
    std::int64_t frequency = 0;                     ///< in Hz, of a satellite in kHz
    std::map<std::string, std::string> parameters;  ///< the table's other members: "SYMBOL_RATE", ...
};

/// What a transponder may hold, from whatever file it comes.
inline constexpr std::int64_t kHighestFrequency = 100'000'000'000;
inline constexpr std::size_t kMostParameters = 40;
inline constexpr std::size_t kLongestParameter = 64;  ///< of a parameter's name and of its value
inline constexpr std::size_t kMostTransponders = 1000;

/// Whether it is the name of a delivery system that a table may tell.
bool isDeliverySystem(std::string_view name);
/// Whether it can be a parameter's name or value: visible ASCII, and blanks inside.
bool isParameterText(std::string_view text);

/// Reads a table in the dvbv5 format: sections in brackets, each with lines `NAME = value`, of which
/// DELIVERY_SYSTEM and FREQUENCY must be there. Errors: BadProfile, with the line; `name` is for the
/// sentence.
Result<std::vector<Transponder>> parseDvbTable(std::string_view text, const std::string& name);

/// The file of a table that is named as "dvb-c/de-Muenchen": one that is shipped with this program, else one
/// of the distribution's package, if that is installed. Errors: BadArgument for what is no such name,
/// UnknownEntry when there is no such table.
Result<std::filesystem::path> findDvbTable(const std::string& name);

}  // namespace vxtv
