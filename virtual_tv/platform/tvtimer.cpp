#include "platform/tvtimer.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/services/timer_store.h"

using namespace vxtv;

namespace {

constexpr const char* kTimerLogTag = "tv-timer";

/// Answers a call for a directory with an operation of the store.
template <class Operation>
int answerFor(KnownCall call, const char* directory, Operation operation) {
    return answer(call, {named("directory", directory)}, kFailed, [&](Television& television) {
        TimerStore timers(television.database());
        const bool isNamed = directory != nullptr && *directory != '\0';
        const Result<void> done = isNamed
                                      ? (timers.*operation)(directory)
                                      : failure(ErrorCode::BadArgument, "no directory was named; give one");
        return serviceStatus(logged(television, kTimerLogTag, done));
    });
}

}  // namespace

int tvtimer_init() {
    return answer("tvtimer_init", {}, kFailed, [](Television&) { return 0; });
}

int tvtimer_get_db(const char* directory) {
    return answerFor("tvtimer_get_db", directory, &TimerStore::exportTo);
}

int tvtimer_set_db(const char* directory) {
    return answerFor("tvtimer_set_db", directory, &TimerStore::importFrom);
}
