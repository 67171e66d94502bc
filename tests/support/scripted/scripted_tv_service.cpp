#include "platform/tv_service.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

IUtil::~IUtil() = default;
IB2BControl::~IB2BControl() = default;
IServiceNavigation::~IServiceNavigation() = default;

namespace {

class ScriptedUtil : public IUtil {
 public:
    int ExportChannelMap(std::string directory) override {
        return answered("IUtil::ExportChannelMap", quoted(directory), [] { return 1; });
    }
    int ImportChannelMap(std::string directory) override {
        return answered("IUtil::ImportChannelMap", quoted(directory), [] { return 1; });
    }
};

class ScriptedB2BControl : public IB2BControl {
 public:
    bool ExportChannelMap(std::string directory) override {
        return answered("IB2BControl::ExportChannelMap", quoted(directory), [] { return true; });
    }
};

class ScriptedServiceNavigation : public IServiceNavigation {};

/// Hands out the one object of the class.
template <class Object, class Interface>
int create(const char* call, const std::string& arguments, Interface** out) {
    static Object object;
    return answered(call, arguments, [&] {
        *out = &object;
        return 0;
    });
}

std::string written(TSTvMode mode) {
    return fmt::format("{}, {}", static_cast<int>(mode.antennaMode), static_cast<int>(mode.serviceMode));
}

std::string written(const CCNavigationModeInfo& entry) {
    std::string names;
    for (const std::string& name : entry.names) {
        names += (names.empty() ? "" : ", ") + quoted(name);
    }
    return fmt::format("{{{}, {}, [{}], {}, {}}}", entry.mode, entry.id, names, entry.order,
                       static_cast<int>(entry.flag));
}

}  // namespace

int TVServiceAPI::CreateUtil(IUtil** util) {
    return create<ScriptedUtil>("TVServiceAPI::CreateUtil", "", util);
}

int TVServiceAPI::CreateB2BControl(IB2BControl** control) {
    return create<ScriptedB2BControl>("TVServiceAPI::CreateB2BControl", "", control);
}

int TVServiceAPI::CreateServiceNavigation(EProfile profile, int id, IServiceNavigation** navigation) {
    return create<ScriptedServiceNavigation>("TVServiceAPI::CreateServiceNavigation",
                                             fmt::format("{}, {}", static_cast<int>(profile), id),
                                             navigation);
}

CCCategoryUtil* CCCategoryUtil::GetInstance() {
    static CCCategoryUtil categories;
    platform().decide("CCCategoryUtil::GetInstance", "");
    return &categories;
}

int CCCategoryUtil::GetNavigationList(TSTvMode mode, std::list<CCNavigationModeInfo>& list) {
    return answered("CCCategoryUtil::GetNavigationList", written(mode), [&] {
        list = platform().locked([](ScriptedPlatform::State& state) { return state.navigation; });
        return 0;
    });
}

bool CCCategoryUtil::RemoveNavigation(TSTvMode mode, CCNavigationModeInfo entry) {
    return answered("CCCategoryUtil::RemoveNavigation", written(mode) + ", " + written(entry),
                    [] { return true; });
}
