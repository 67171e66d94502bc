#include "platform/tv_service.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

IUtil::~IUtil() = default;
IB2BControl::~IB2BControl() = default;
IServiceNavigation::~IServiceNavigation() = default;

int TVServiceAPI::CreateUtil(IUtil** /*util*/) {
    return absent("TVServiceAPI::CreateUtil", {}, kFailed);
}

int TVServiceAPI::CreateB2BControl(IB2BControl** /*control*/) {
    return absent("TVServiceAPI::CreateB2BControl", {}, kFailed);
}

int TVServiceAPI::CreateServiceNavigation(EProfile profile, int id, IServiceNavigation** /*navigation*/) {
    return absent("TVServiceAPI::CreateServiceNavigation", {number("profile", profile), number("id", id)},
                  kFailed);
}

CCCategoryUtil* CCCategoryUtil::GetInstance() {
    // Promised to be there in any case; its operations say that the service is not.
    static CCCategoryUtil categories;
    return answer("CCCategoryUtil::GetInstance", {}, &categories, [](Television&) { return &categories; });
}

int CCCategoryUtil::GetNavigationList(TSTvMode mode, std::list<CCNavigationModeInfo>& /*list*/) {
    return absent("CCCategoryUtil::GetNavigationList",
                  {number("antennaMode", mode.antennaMode), number("serviceMode", mode.serviceMode)},
                  kFailed);
}

bool CCCategoryUtil::RemoveNavigation(TSTvMode mode, CCNavigationModeInfo entry) {
    return absent("CCCategoryUtil::RemoveNavigation",
                  {number("antennaMode", mode.antennaMode), number("serviceMode", mode.serviceMode),
                   number("entryMode", entry.mode)},
                  false);
}
