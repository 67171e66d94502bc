#pragma once

#include <string>
#include <tl/expected.hpp>
#include <utility>

namespace vxcommon {

/// A failure as a value. `Code` is the program's own enumeration; `sentence` is for a person: it names
/// the thing, the cause and the next step, and ends without a line end.
template <class Code>
struct Error {
    Code code;
    std::string sentence;
};

/// A value, or the error because of which there is none.
template <class Value, class Code>
using Result = tl::expected<Value, Error<Code>>;

/// Makes the failed side of any `Result` with the same code type.
template <class Code>
tl::unexpected<Error<Code>> failure(Code code, std::string sentence) {
    return tl::make_unexpected(Error<Code>{code, std::move(sentence)});
}

}  // namespace vxcommon

/// Returns the error of a failed `Result` to the caller, and continues otherwise. The argument is evaluated
/// once: a variable, or a call whose value is not needed.
#define VX_RETURN_IF_FAILED(...)                            \
    do {                                                    \
        if (auto&& vxOutcome = (__VA_ARGS__); !vxOutcome) { \
            return tl::make_unexpected(vxOutcome.error());  \
        }                                                   \
    } while (false)
