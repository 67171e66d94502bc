#include "VXCloneInterface.h"

#include "VXCloneAPIManager.h"
#include "VXCloneLog.h"
#include "vx_clone_api.h"

namespace {

/// The one manager of the process. It is made when the library is loaded and destroyed when it is unloaded.
VXCloneAPIManager manager;

enum class OnZero { Silent, Logged };

/// Calls the engine. Without an engine the result is `withoutEngine`, and nothing else happens.
template <class Call>
int callEngine(const char* function, int withoutEngine, OnZero onZero, Call call) {
    VXCloneInterface* const engine = manager.GetCloneInterface();
    if (engine == nullptr) {
        VX_LOG_AS(function, Error, "Fail to GetCloneInterface!!!!");
        return withoutEngine;
    }
    const int result = call(*engine);
    if (result == 0 && onZero == OnZero::Logged) {
        VX_LOG_AS(function, Error, "API Failed!!!!");
    }
    return result;
}

}  // namespace

int VXCloneAPI::BackupCloneData() {
    return callEngine(__func__, 0, OnZero::Logged,
                      [](VXCloneInterface& engine) { return engine.BackupCloneData(); });
}

int VXCloneAPI::RestoreCloneData(const std::vector<VXClone>& list) {
    VX_TRACE();
    const char* const function = __func__;
    return callEngine(function, 0, OnZero::Logged, [&](VXCloneInterface& engine) {
        if (list.empty()) {
            // Intended: the default order is written into the caller's vector.
            manager.GetCloneDataOrder(list);
            VX_LOGF_AS(function, Error, "Getting Default Clone Data- size %zu", list.size());
        }
        return engine.RestoreCloneData(list);
    });
}

int VXCloneAPI::WriteDataToFile(std::string path) {
    return callEngine(__func__, 0, OnZero::Logged,
                      [&](VXCloneInterface& engine) { return engine.WriteDataToFile(path); });
}

int VXCloneAPI::CheckDataValidity(std::string path) {
    // 0 means "fits" here. So a missing engine needs another value, and 0 is not logged as a failure.
    return callEngine(__func__, -1, OnZero::Silent,
                      [&](VXCloneInterface& engine) { return engine.CheckDataValidity(path); });
}

int VXCloneAPI::CheckHashValidity(std::vector<std::string> files, int mode, char* path) {
    return callEngine(__func__, 0, OnZero::Logged,
                      [&](VXCloneInterface& engine) { return engine.CheckHashValidity(files, mode, path); });
}

int vx_clone_backup_data(void) {
    VXCloneAPI::BackupCloneData();
    return 0;
}

int vx_clone_restore_data(void) {
    std::vector<VXClone> list;
    VXCloneAPI::RestoreCloneData(list);
    return 0;
}
