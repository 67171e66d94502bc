#include "cloning_app/television/library_engine.h"

#include <algorithm>

namespace vxclone {

namespace {

// What `VXCloneAPI::CheckHashValidity` is asked to do.
constexpr int kMakeSeal = 0;
constexpr int kCheckSeal = 1;
constexpr int kFetchKeyOnly = 2;

/// The library takes the path as text that it may write to, though it does not.
Result<bool> askHash(const std::vector<std::string>& files, int mode, std::string path) {
    return askLibrary([&] { return VXCloneAPI::CheckHashValidity(files, mode, path.data()); })
        .map([](int answer) { return answer != 0; });
}

}  // namespace

Result<void> LibraryEngine::backUp() {
    return callLibrary(&VXCloneAPI::BackupCloneData, false);
}

Result<void> LibraryEngine::restore(const std::vector<VXClone>& list) {
    const bool withApps = std::find(list.begin(), list.end(), VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) != list.end();
    return callLibrary([&list] { return VXCloneAPI::RestoreCloneData(list); }, !withApps);
}

Result<int> LibraryEngine::checkIdentity(const std::string& folder) {
    return askLibrary([&folder] { return VXCloneAPI::CheckDataValidity(folder); });
}

Result<bool> LibraryEngine::hasKey() {
    return askHash({}, kFetchKeyOnly, "");
}

Result<bool> LibraryEngine::seal(const std::vector<std::string>& files, const std::string& seal) {
    return askHash(files, kMakeSeal, seal);
}

Result<bool> LibraryEngine::checkSeal(const std::vector<std::string>& files, const std::string& seal) {
    return askHash(files, kCheckSeal, seal);
}

}  // namespace vxclone
