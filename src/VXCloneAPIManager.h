#pragma once

#include <memory>
#include <vector>

#include "VXCloneInterface.h"

/// Owns the one engine from the loading of the library to its unloading.
class VXCloneAPIManager {
 public:
    /// Makes the engine. If there is not enough memory, there is no engine.
    VXCloneAPIManager();
    ~VXCloneAPIManager();
    VXCloneAPIManager(const VXCloneAPIManager&) = delete;
    VXCloneAPIManager& operator=(const VXCloneAPIManager&) = delete;

    /// Result: the engine, owned by the manager, or null.
    VXCloneInterface* GetCloneInterface();

    /// Appends all categories, in the order of their values, to the caller's vector. The vector is filled
    /// through the reference to const, so the object itself must not be const.
    void GetCloneDataOrder(const std::vector<VXClone>& list);

 private:
    void CreateCloneInterface();

    std::unique_ptr<VXCloneInterface> m_cloneInterface;
};
