#include "platform/avoc.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/services/value_services.h"

using namespace vxtv;

namespace {

tl::unexpected<Error> noDirectory() {
    return failure(ErrorCode::BadArgument, "no directory was named; give one");
}

}  // namespace

int avoc_backup_all_settings(const char* directory) {
    return answer("avoc_backup_all_settings", {named("directory", directory)}, kFailed,
                  [directory](Television& television) {
                      const ServiceValues values(television.database(), avService());
                      return serviceStatus(directory != nullptr ? values.backUp(directory) : noDirectory());
                  });
}

int avoc_restore_all_settings(const char* directory) {
    return answer("avoc_restore_all_settings", {named("directory", directory)}, kFailed,
                  [directory](Television& television) {
                      const ServiceValues values(television.database(), avService());
                      return serviceStatus(directory != nullptr ? values.restore(directory) : noDirectory());
                  });
}
