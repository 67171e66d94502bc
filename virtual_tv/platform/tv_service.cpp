#include "platform/tv_service.h"

#include <array>

#include "virtual_tv/channels/channel_archive.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/store/data_service.h"

using namespace vxtv;

namespace {

// The two operations of the channel map return 1 for success, unlike the others.
constexpr int kDone = 1;
constexpr int kNotDone = 0;
constexpr const char* kServiceLogTag = "tv-service";

ChannelArchive archiveOf(const Television& television) {
    return ChannelArchive(ChannelStore(television.database()));
}

/// Whether it succeeded. If not, the log has the reason.
bool noted(Television& television, const Result<void>& done) {
    return logged(television, kServiceLogTag, done).has_value();
}

class Util : public IUtil {
 public:
    int ExportChannelMap(std::string directory) override {
        return answer("IUtil::ExportChannelMap", {named("directory", directory)}, kNotDone,
                      [&directory](Television& television) {
                          return noted(television, archiveOf(television).exportMap(directory)) ? kDone
                                                                                               : kNotDone;
                      });
    }
    int ImportChannelMap(std::string directory) override {
        return answer("IUtil::ImportChannelMap", {named("directory", directory)}, kNotDone,
                      [&directory](Television& television) {
                          return noted(television, archiveOf(television).import(directory)) ? kDone
                                                                                            : kNotDone;
                      });
    }
};

class B2BControl : public IB2BControl {
 public:
    bool ExportChannelMap(std::string directory) override {
        return answer("IB2BControl::ExportChannelMap", {named("directory", directory)}, false,
                      [&directory](Television& television) {
                          return noted(television, archiveOf(television).exportHotelList(directory));
                      });
    }
};

class ServiceNavigation : public IServiceNavigation {};

/// Returns the service's one object of the class. Result: a status.
template <class Object, class Interface>
int handOut(Television& television, Interface** place) {
    static Object object;
    const Result<void> present = television.database().read(
        [](SQLite::Database& connection) { return requireDataService(connection, kChannelService.name); });
    if (!present) {
        return serviceStatus(present);
    }
    if (place == nullptr) {
        return serviceStatus(failure(ErrorCode::BadArgument, "no place for the object was named"));
    }
    *place = &object;
    return serviceStatus(present);
}

TvMode modeOf(TSTvMode mode) {
    return {mode.antennaMode, mode.serviceMode};
}

CCNavigationModeInfo infoOf(const NavigationEntry& entry) {
    return {entry.mode,
            entry.id,
            {entry.names.begin(), entry.names.end()},
            entry.order,
            static_cast<unsigned char>(entry.flag)};
}

}  // namespace

IUtil::~IUtil() = default;
IB2BControl::~IB2BControl() = default;
IServiceNavigation::~IServiceNavigation() = default;

int TVServiceAPI::CreateUtil(IUtil** util) {
    return answer("TVServiceAPI::CreateUtil", {}, kFailed,
                  [util](Television& television) { return handOut<Util>(television, util); });
}

int TVServiceAPI::CreateB2BControl(IB2BControl** control) {
    return answer("TVServiceAPI::CreateB2BControl", {}, kFailed,
                  [control](Television& television) { return handOut<B2BControl>(television, control); });
}

int TVServiceAPI::CreateServiceNavigation(EProfile profile, int id, IServiceNavigation** navigation) {
    return answer("TVServiceAPI::CreateServiceNavigation", {number("profile", profile), number("id", id)},
                  kFailed, [&](Television& television) {
                      const bool known =
                          (profile == PROFILE_MAIN || profile == PROFILE_NAVIGATION) && id == 0;
                      return handOut<ServiceNavigation>(television, known ? navigation : nullptr);
                  });
}

CCCategoryUtil* CCCategoryUtil::GetInstance() {
    // The contract says that the object always exists. Its operations report if the service does not.
    static CCCategoryUtil categories;
    return answer("CCCategoryUtil::GetInstance", {}, &categories, [](Television&) { return &categories; });
}

int CCCategoryUtil::GetNavigationList(TSTvMode mode, std::list<CCNavigationModeInfo>& list) {
    return answer("CCCategoryUtil::GetNavigationList",
                  {number("antennaMode", mode.antennaMode), number("serviceMode", mode.serviceMode)}, kFailed,
                  [&](Television& television) {
                      const NavigationLists lists(television.database());
                      return serviceStatus(
                          lists.list(modeOf(mode)).map([&](const std::vector<NavigationEntry>& entries) {
                              std::list<CCNavigationModeInfo> found;
                              for (const NavigationEntry& entry : entries) {
                                  found.push_back(infoOf(entry));
                              }
                              list.swap(found);
                          }));
                  });
}

bool CCCategoryUtil::RemoveNavigation(TSTvMode mode, CCNavigationModeInfo entry) {
    return answer("CCCategoryUtil::RemoveNavigation",
                  {number("antennaMode", mode.antennaMode), number("serviceMode", mode.serviceMode),
                   number("entryMode", entry.mode)},
                  false, [&](Television& television) {
                      NavigationLists lists(television.database());
                      return noted(television, lists.remove(modeOf(mode), entry.mode, entry.id));
                  });
}
