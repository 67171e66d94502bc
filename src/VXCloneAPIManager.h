#pragma once

#include <memory>
#include <vector>

#include "VXCloneInterface.h"

/// Makes and owns the one engine, from the library's load to its unload.
class VXCloneAPIManager {
 public:
    /// Makes the engine. There is none afterwards when memory was short.
    VXCloneAPIManager();
    ~VXCloneAPIManager();
    VXCloneAPIManager(const VXCloneAPIManager&) = delete;
    VXCloneAPIManager& operator=(const VXCloneAPIManager&) = delete;

    /// Result: the engine, which stays the manager's, or null.
    VXCloneInterface* GetCloneInterface();

    /// Appends all categories, in the order of their values, to the caller's vector. The vector is filled
    /// through the reference to const: it must not be an object that was itself defined const.
    void GetCloneDataOrder(const std::vector<VXClone>& list);

 private:
    void CreateCloneInterface();

    std::unique_ptr<VXCloneInterface> m_cloneInterface;
};
