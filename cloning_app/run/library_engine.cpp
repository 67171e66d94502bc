#include "cloning_app/run/library_engine.h"

#include <algorithm>

namespace vxclone {

Result<void> LibraryEngine::backUp() {
    return callLibrary(&VXCloneAPI::BackupCloneData, false);
}

Result<void> LibraryEngine::restore(const std::vector<VXClone>& list) {
    const bool withApps = std::find(list.begin(), list.end(), VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) != list.end();
    return callLibrary([&list] { return VXCloneAPI::RestoreCloneData(list); }, !withApps);
}

}  // namespace vxclone
