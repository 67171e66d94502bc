#include "virtual_tv/ports/bus_connection.h"

#include <array>
#include <cerrno>
#include <cstdint>

namespace vxtv {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

struct Meaning {
    int number;
    PortError error;
};

constexpr std::array kMeanings = {
    Meaning{EINVAL, PortError::BadArgument},
    Meaning{ETIMEDOUT, PortError::NoAnswer},
    Meaning{EEXIST, PortError::NameTaken},
    Meaning{ECONNREFUSED, PortError::NoBus},
    Meaning{ECONNRESET, PortError::NoBus},
    Meaning{ENOTCONN, PortError::NoBus},
    Meaning{EPIPE, PortError::NoBus},
    Meaning{ESHUTDOWN, PortError::NoBus},
    Meaning{EHOSTUNREACH, PortError::NoSuchPort},
};

struct Named {
    const char* name;
    PortError error;
};

constexpr std::array kNamed = {
    Named{SD_BUS_ERROR_SERVICE_UNKNOWN, PortError::NoSuchPort},
    Named{SD_BUS_ERROR_NAME_HAS_NO_OWNER, PortError::NoSuchPort},
    Named{SD_BUS_ERROR_UNKNOWN_OBJECT, PortError::NoSuchPort},
    // The bus answers this if a receiver ended before it replied.
    Named{SD_BUS_ERROR_NO_REPLY, PortError::NoSuchPort},
    Named{SD_BUS_ERROR_TIMEOUT, PortError::NoAnswer},
    Named{kReceiverFullName, PortError::ReceiverFull},
};

class CallError {
 public:
    CallError() = default;
    CallError(const CallError&) = delete;
    CallError& operator=(const CallError&) = delete;
    ~CallError() { sd_bus_error_free(&error_); }

    sd_bus_error* get() { return &error_; }
    PortError meaning(int negativeErrno) const {
        for (const auto& [name, error] : kNamed) {
            if (sd_bus_error_has_name(&error_, name) != 0) return error;
        }
        return portErrorOf(negativeErrno);
    }

 private:
    sd_bus_error error_ = {nullptr, nullptr, 0};
};

std::uint64_t toMicroseconds(Clock::duration time) {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<microseconds>(time).count());
}

/// The greeting is exchanged here, because the bus library itself would wait for it for more than a minute.
int finishGreeting(sd_bus* bus) {
    const auto deadline = Clock::now() + kLongestWait;
    while (true) {
        const int ready = sd_bus_is_ready(bus);
        if (ready != 0) return ready;
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) return processed;
        if (processed > 0) continue;
        const auto left = deadline - Clock::now();
        if (left <= Clock::duration::zero()) return -ETIMEDOUT;
        const int waited = sd_bus_wait(bus, toMicroseconds(left));
        if (waited < 0 && waited != -EINTR) return waited;
    }
}

}  // namespace

PortError portErrorOf(int negativeErrno) {
    for (const auto& [number, error] : kMeanings) {
        if (number == -negativeErrno) return error;
    }
    return PortError::Failed;
}

PortResult<BusConnection> connectToBus(const std::string& address) {
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) return tl::make_unexpected(PortError::Failed);
    BusConnection bus(made);
    int result = sd_bus_set_address(made, address.c_str());
    if (result >= 0) result = sd_bus_set_bus_client(made, 1);
    if (result >= 0) result = sd_bus_set_method_call_timeout(made, toMicroseconds(kLongestWait));
    if (result >= 0) result = sd_bus_start(made);
    if (result >= 0) result = finishGreeting(made);
    if (result >= 0) return bus;
    return tl::make_unexpected(result == -ETIMEDOUT ? PortError::NoAnswer : PortError::NoBus);
}

PortResult<BusMessage> callOnBus(sd_bus* bus, sd_bus_message* call) {
    CallError error;
    sd_bus_message* answer = nullptr;
    const int result = sd_bus_call(bus, call, 0, error.get(), &answer);
    if (result < 0) return tl::make_unexpected(error.meaning(result));
    return BusMessage(answer);
}

}  // namespace vxtv
