#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "virtual_tv/calls/contract_calls.h"
#include "virtual_tv/platform/process_television.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// The result of most platform calls that failed.
inline constexpr int kFailed = -1;

/// One argument of a platform call as the call log shows it.
struct Argument {
    enum class Kind { Number, Name, Secret };
    const char* name = nullptr;
    Kind kind = Kind::Number;
    std::int64_t number = 0;
    std::optional<std::string_view> text;  ///< empty for a null pointer
};

Argument number(const char* name, std::int64_t value);
/// A text that names the subject of the call: a key, a path, a port.
Argument named(const char* name, const char* text);
Argument named(const char* name, const std::string& text);
/// A text that may be secret, such as a PIN. Only its length is logged.
Argument secret(const char* name, const char* text);

using Arguments = std::initializer_list<Argument>;

/// A platform call with its entry in the television's call log, and the effect of the fault plan.
class Passage {
 public:
    /// Counts the call in the fault plan of this process's television, and waits as long as the plan says.
    Passage(KnownCall call, Arguments arguments);

    /// Null if there is no television.
    Television* television() const { return television_; }
    /// The status that the call must return instead of doing its work.
    const std::optional<int>& imposedStatus() const { return imposedStatus_; }
    /// Writes the call to the log.
    void log(nlohmann::ordered_json result);

 private:
    KnownCall call_;
    Arguments arguments_;
    Television* television_;
    std::optional<std::int64_t> fault_;
    std::optional<int> imposedStatus_;
};

/// The status as the type that the call returns. For a bool, every status except 0 is true. For a type that
/// is not a number, a status means failure.
template <class Value>
Value fromStatus(int status, const Value& failed) {
    if constexpr (std::is_same_v<Value, bool>) {
        return status != 0;
    } else if constexpr (std::is_same_v<Value, int>) {
        return status;
    } else {
        return failed;
    }
}

/// A result as the call log shows it: the length of a string that may be secret, and only the existence of an
/// object.
template <class Value>
nlohmann::ordered_json toLog(const Value& value) {
    if constexpr (std::is_same_v<Value, char*>) {
        return value != nullptr ? nlohmann::ordered_json{{"length", std::string_view(value).size()}}
                                : nullptr;
    } else if constexpr (std::is_pointer_v<Value>) {
        return value != nullptr ? nlohmann::ordered_json("object") : nullptr;
    } else if constexpr (std::is_arithmetic_v<Value> || std::is_same_v<Value, std::string>) {
        return value;
    } else {
        return "object";
    }
}

/// Answers a platform call: first the fault plan, then `work(television)`, then the call log. Does not throw.
/// Result: that of the work, or `failed` without a television or without enough memory.
template <class Value, class Work>
Value answer(KnownCall call, Arguments arguments, Value failed, Work work) noexcept {
    try {
        Passage passage(call, arguments);
        if (passage.television() == nullptr) {
            return failed;
        }
        const std::optional<int>& imposed = passage.imposedStatus();
        Value result = imposed ? fromStatus(*imposed, failed) : Value(work(*passage.television()));
        passage.log(toLog(result));
        return result;
    } catch (...) {
        return failed;
    }
}

/// Answers a call of a service that this television does not have.
template <class Value>
Value absent(KnownCall call, Arguments arguments, Value failed) noexcept {
    return answer(call, arguments, failed, [&failed](Television&) { return failed; });
}

}  // namespace vxtv
