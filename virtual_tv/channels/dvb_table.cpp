#include "virtual_tv/channels/dvb_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "virtual_tv/base/shipped_files.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 9> kDeliverySystems = {
    "DVBT", "DVBT2", "DVBC/ANNEX_A", "DVBC/ANNEX_B", "DVBC/ANNEX_C", "DVBS", "DVBS2", "ATSC", "ISDBT"};
constexpr std::string_view kSystemMember = "DELIVERY_SYSTEM";
constexpr std::string_view kFrequencyMember = "FREQUENCY";
constexpr const char* kPackageFolder = "/usr/share/dvb";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::optional<std::int64_t> frequencyIn(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && number > 0 && number <= kHighestFrequency ? std::optional(number) : std::nullopt;
}

/// Reads a table line by line and keeps the reason of the first error.
class TableReader {
 public:
    /// Empty, or what is wrong with the line.
    std::optional<std::string> take(std::string_view line) {
        line = trimmed(line);
        if (line.empty() || line.front() == '#') {
            return std::nullopt;
        }
        if (line.front() == '[') {
            return line.back() == ']' ? begin() : std::optional<std::string>("the bracket is not closed");
        }
        return member(line);
    }

    /// Empty, or what the section that ends here lacks.
    std::optional<std::string> end() const {
        if (transponders_.empty()) {
            return std::nullopt;
        }
        const Transponder& last = transponders_.back();
        const std::string_view missing = last.system.empty()   ? kSystemMember
                                         : last.frequency == 0 ? kFrequencyMember
                                                               : std::string_view();
        return missing.empty() ? std::nullopt
                               : std::optional(fmt::format("the section before has no {}", missing));
    }

    std::vector<Transponder> transponders() && { return std::move(transponders_); }

 private:
    std::optional<std::string> begin() {
        if (auto wrong = end()) {
            return wrong;
        }
        if (transponders_.size() == kMostTransponders) {
            return fmt::format("a table has at most {} sections", kMostTransponders);
        }
        transponders_.emplace_back();
        return std::nullopt;
    }

    std::optional<std::string> member(std::string_view line) {
        const std::size_t sign = line.find('=');
        if (sign == std::string_view::npos || transponders_.empty()) {
            return transponders_.empty() ? "no section has begun" : "it is no NAME = value";
        }
        const std::string_view name = trimmed(line.substr(0, sign));
        const std::string_view value = trimmed(line.substr(sign + 1));
        if (!isParameterText(name) || !isParameterText(value)) {
            return "its name or its value is none";
        }
        return store(transponders_.back(), name, value);
    }

    static std::optional<std::string> store(Transponder& transponder, std::string_view name,
                                            std::string_view value) {
        if (name == kSystemMember) {
            const bool good = transponder.system.empty() && isDeliverySystem(value);
            transponder.system = value;
            return good ? std::nullopt : std::optional<std::string>("it is no system, or the second one");
        }
        if (name == kFrequencyMember) {
            const auto frequency = frequencyIn(value);
            const bool good = transponder.frequency == 0 && frequency;
            transponder.frequency = frequency.value_or(0);
            return good ? std::nullopt : std::optional<std::string>("it is no frequency, or the second one");
        }
        const bool isNew = transponder.parameters.emplace(name, value).second;
        return isNew && transponder.parameters.size() <= kMostParameters
                   ? std::nullopt
                   : std::optional<std::string>("the section has it already, or has too many");
    }

    std::vector<Transponder> transponders_;
};

bool isTableName(const std::string& name) {
    const auto isAllowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view("-_./+,").find(c) != std::string_view::npos;
    };
    return std::count(name.begin(), name.end(), '/') == 1 && name.front() != '/' && name.back() != '/' &&
           name.find("..") == std::string::npos && std::all_of(name.begin(), name.end(), isAllowed);
}

}  // namespace

bool isDeliverySystem(std::string_view name) {
    return std::find(kDeliverySystems.begin(), kDeliverySystems.end(), name) != kDeliverySystems.end();
}

bool isParameterText(std::string_view text) {
    return !text.empty() && text.size() <= kLongestParameter && text.front() != ' ' && text.back() != ' ' &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

Result<std::vector<Transponder>> parseDvbTable(std::string_view text, const std::string& name) {
    TableReader reader;
    int number = 0;
    std::optional<std::string> wrong;
    while (!wrong && !text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        wrong = reader.take(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
        ++number;
    }
    wrong = wrong ? wrong : reader.end();
    if (wrong) {
        return failure(ErrorCode::BadProfile,
                       fmt::format("the table {} cannot be read: line {}: {}", name, number, *wrong));
    }
    std::vector<Transponder> transponders = std::move(reader).transponders();
    if (transponders.empty()) {
        return failure(ErrorCode::BadProfile, fmt::format("the table {} holds no transponder", name));
    }
    return transponders;
}

Result<fs::path> findDvbTable(const std::string& name) {
    if (!isTableName(name)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("{} is no name of a table, as \"dvb-t/de-Berlin\" is one", name));
    }
    const fs::path shipped = shippedData() / "dvb";
    for (const fs::path& folder : {shipped, fs::path(kPackageFolder)}) {
        std::error_code error;
        if (fs::is_regular_file(folder / name, error)) {
            return folder / name;
        }
    }
    return failure(ErrorCode::UnknownEntry,
                   fmt::format("there is no table {} in {} or {}; take one of the first, or install the "
                               "package dtv-scan-tables",
                               name, shipped.string(), kPackageFolder));
}

}  // namespace vxtv
