#include "tests/unit/cloning_app/fake_paths.h"

#include "platform/vx_paths.h"

FakePaths& FakePaths::instance() {
    static FakePaths paths;
    return paths;
}

std::string vx_get_bootlogo_path() {
    return FakePaths::instance().bootLogo.string();
}

std::string vx_get_mbrlogo_path() {
    return FakePaths::instance().mbrLogo.string();
}

std::string vx_get_homemenu_path() {
    return FakePaths::instance().homeMenu.string();
}
