#pragma once

// The TV service: channel map and navigation lists.

#include <list>
#include <string>

enum EProfile : int { PROFILE_MAIN = 0, PROFILE_NAVIGATION = 1 };
enum EAntennaMode : int { ANTENNA_MODE_ALL = -1 };
enum EServiceMode : int { SERVICE_MODE_ALL = -1 };

/// Which antenna and which services; -1 stands for all of them.
struct TSTvMode {
    EAntennaMode antennaMode;
    EServiceMode serviceMode;
};

/// One stored navigation list. Only `mode` has a meaning to the library; the rest travels along unchanged.
struct CCNavigationModeInfo {
    int mode;
    long long id;
    std::list<std::string> names;
    int order;
    unsigned char flag;
};

/// The service's channel-map operations. Each returns non-zero on success.
class IUtil {
 public:
    virtual ~IUtil();
    /// Writes the channel map into the directory.
    virtual int ExportChannelMap(std::string directory) = 0;
    /// Replaces the channel map with the one in the directory.
    virtual int ImportChannelMap(std::string directory) = 0;
};

/// The hotel's own channel list.
class IB2BControl {
 public:
    virtual ~IB2BControl();
    /// Writes the hotel channel list into the directory. Result: true on success.
    virtual bool ExportChannelMap(std::string directory) = 0;
};

/// Exists so that the navigation lists may be changed.
class IServiceNavigation {
 public:
    virtual ~IServiceNavigation();
};

/// Hands out the service's objects. Each returns 0 on success; on failure the caller's pointer is as it was.
/// Ownership: the objects stay the service's, nobody deletes them. Threads: one at a time.
class TVServiceAPI {
 public:
    static int CreateUtil(IUtil** util);
    static int CreateB2BControl(IB2BControl** control);
    static int CreateServiceNavigation(EProfile profile, int id, IServiceNavigation** navigation);
};

/// The stored navigation lists.
class CCCategoryUtil {
 public:
    /// The one object, the service's own; never null.
    static CCCategoryUtil* GetInstance();
    /// Fills the list with the entries of the mode. Result: 0 on success.
    int GetNavigationList(TSTvMode mode, std::list<CCNavigationModeInfo>& list);
    /// Removes the entry for the mode. Result: true on success.
    bool RemoveNavigation(TSTvMode mode, CCNavigationModeInfo entry);
};
