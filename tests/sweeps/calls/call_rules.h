#pragma once

#include <optional>
#include <string>

namespace vxtest {

enum class Direction { Backup, Restore };

/// The results of a call that are a failure.
enum class Fails { Never, Always, NotZero, Zero, BelowOne };

/// The effect of a failed call on the result of the run. `Failed` affects the rule's category.
enum class Effect {
    None,            ///< the run does not ask, or does not look
    Failed,          ///< the category is reported as failed
    NoNetwork,       ///< the two categories of the network are not reported
    NoApplication,   ///< one application less takes part
    ExchangeFailed,  ///< the exchange under way is reported as failed
    NoPort,          ///< the same, unless an earlier exchange has registered the port
    PortUnseen,      ///< the same, once every check of the exchange has failed
    SettingLost      ///< the setting does not travel, and nobody reports it
};

/// The expected effect of a failure of one call.
struct CallRule {
    const char* call;
    const char* argument;  ///< what the recorded arguments hold: tells calls of one name apart
    Fails fails;
    Effect effect;
    const char* category;

    /// Whether this status is a failure.
    bool isFailure(int status) const;
    /// A status that means a failure.
    int failure() const { return fails == Fails::Zero ? 0 : -1; }
};

/// The rule of a call, or null: every call of a run has one.
const CallRule* findRule(Direction direction, const std::string& call, const std::string& arguments);

}  // namespace vxtest
