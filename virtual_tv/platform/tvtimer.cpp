#include "platform/tvtimer.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int tvtimer_init() {
    return answer("tvtimer_init", {}, kFailed, [](Television&) { return 0; });
}

int tvtimer_get_db(const char* directory) {
    return absent("tvtimer_get_db", {named("directory", directory)}, kFailed);
}

int tvtimer_set_db(const char* directory) {
    return absent("tvtimer_set_db", {named("directory", directory)}, kFailed);
}
