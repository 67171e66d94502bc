#include "platform/wqd.h"

#include <array>

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/television/key_installation.h"

using namespace vxtv;

namespace {

constexpr int kInstalledNow = 0;
constexpr int kInstalledBefore = 2;
constexpr int kTarget = 2;
constexpr int kOption = 0;

// Callers treat 2 as success and test only the other bits, so a failure must have one of those set.
constexpr std::array kInstallStatuses = {
    StatusOf{ErrorCode::BadArgument, -2},  StatusOf{ErrorCode::NoKeyFile, -3},
    StatusOf{ErrorCode::NotAKeyFile, -4},  StatusOf{ErrorCode::OtherVersion, -5},
    StatusOf{ErrorCode::ShortKeyFile, -6}, StatusOf{ErrorCode::BrokenSeal, -7},
    StatusOf{ErrorCode::NoDeviceKey, -8},  StatusOf{ErrorCode::NoFleetSecret, -9},
    StatusOf{ErrorCode::NoSpace, -10}};

}  // namespace

int wqd_install_from_file(const char* path, int target, int option) {
    return answer("wqd_install_from_file",
                  {named("path", path), number("target", target), number("option", option)}, kFailed,
                  [&](Television& television) {
                      if (path == nullptr || target != kTarget || option != kOption) {
                          return statusOf(kInstallStatuses, ErrorCode::BadArgument, kFailed);
                      }
                      const auto installed = installKeyFile(television.folder(), path);
                      if (!installed) {
                          return statusOf(kInstallStatuses, installed.error().code, kFailed);
                      }
                      return *installed == Installed::Now ? kInstalledNow : kInstalledBefore;
                  });
}
