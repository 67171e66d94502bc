// The symbols of the two libraries: those that callers may use, and those that a television must provide.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

using Symbols = std::set<std::string>;

/// Every operation of the platform, as a television's libraries must export it. The library calls all of
/// them.
const Symbols kContract = {
    "__dlog_print",
    "vconf_get_int",
    "vconf_set_int",
    "vconf_get_bool",
    "vconf_set_bool",
    "vconf_get_str",
    "vconf_set_str",
    "system_info_get_value_string",
    "system_info_get_value_int",
    "system_info_get_custom_int",
    "system_info_get_custom_bool",
    "bundle_create",
    "bundle_add_str",
    "bundle_add",
    "bundle_get_str",
    "bundle_free",
    "message_port_register_local_port",
    "message_port_check_remote_port",
    "message_port_send_message_with_local_port",
    "aul_app_is_running",
    "aul_launch_app",
    "ss_init_credential",
    "ss_read",
    "ss_free_buffer",
    "wqd_install_from_file",
    "tvtimer_init",
    "tvtimer_get_db",
    "tvtimer_set_db",
    "TVServiceAPI::CreateUtil(IUtil**)",
    "TVServiceAPI::CreateB2BControl(IB2BControl**)",
    "TVServiceAPI::CreateServiceNavigation(EProfile, int, IServiceNavigation**)",
    "CCCategoryUtil::GetInstance()",
    "CCCategoryUtil::GetNavigationList(TSTvMode, std::__cxx11::list<CCNavigationModeInfo, "
    "std::allocator<CCNavigationModeInfo> >&)",
    "CCCategoryUtil::RemoveNavigation(TSTvMode, CCNavigationModeInfo)",
    "factory_clone_tv_to_usb",
    "factory_clone_usb_to_tv",
    "avoc_backup_all_settings",
    "avoc_restore_all_settings",
    "was_clone_backup",
    "was_clone_restore",
    "SettingsDataCloneAPI::BackupSettingsData(std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> >)",
    "SettingsDataCloneAPI::RestoreSettingsData(std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> >, SettingsDataCloneAPI::RESTORE_TYPE)",
    "CHomeDataControlAPI::GetInstance()",
    "CHomeDataControlAPI::Destroy()",
    "CHomeDataControlAPI::CopyCloneDataTVtoUSB(std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> >, std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> "
    ">)",
    "CHomeDataControlAPI::CopyCloneDataUSBtoTV(std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> >, std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> "
    ">)",
    "VXSystemAPI::nsVXSystemInfoAPI::CheckNTPSupport(bool&)",
    "VXSystemAPI::nsVXSystemInfoAPI::SetNTPMode(bool)",
    "VXSystemAPI::nsVXSystemInfoAPI::GetCurrentTimezone(VX_TIMEZONE&)",
    "VXSystemAPI::nsVXSystemInfoAPI::SetTimezoneInfo(VX_TIMEZONE)",
    "VXSystemAPI::nsVXSystemInfoAPI::SetNTPServerAddr(char const*)",
    "CSourceAPI::Get()",
    "CSourceAPI::GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem, std::less<int>, "
    "std::allocator<std::pair<int const, CSourceItem> > > >*)",
    "CSourceAPI::SetCustomIconPath(int, std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> > const&, std::pair<std::__cxx11::basic_string<char, std::char_traits<char>, "
    "std::allocator<char> >, std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > "
    ">, "
    "int)",
    "vx_get_bootlogo_path[abi:cxx11]()",
    "vx_get_mbrlogo_path[abi:cxx11]()",
    "vx_get_homemenu_path[abi:cxx11]()",
};

/// The classes whose destructor, virtual table and type information are part of the platform.
const Symbols kInterfaceClasses = {"IUtil", "IB2BControl", "IServiceNavigation"};

std::string outputOf(const std::vector<std::string>& command) {
    Program program;
    program.command = command;
    const Finished finished = run(program);
    EXPECT_EQ(finished.status, 0) << command.front() << ": " << finished.errors;
    return finished.output;
}

/// The dynamic symbols of a file, demangled, without a version.
Symbols dynamicSymbols(const std::string& file, const std::string& which) {
    std::istringstream lines(outputOf({VX_NM, "-D", "-C", which, file}));
    Symbols symbols;
    for (std::string line; std::getline(lines, line);) {
        // "0000000000003abc T name" or "                 U name@VERSION"
        constexpr std::size_t kNameColumn = 19;
        if (line.size() > kNameColumn) {
            symbols.insert(line.substr(kNameColumn, line.find('@') - kNameColumn));
        }
    }
    return symbols;
}

/// The symbols that the libraries of the file define.
Symbols symbolsOfItsLibraries(const std::string& file) {
    std::istringstream lines(outputOf({VX_LDD, file}));
    Symbols symbols;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t begin = line.find('/');
        if (begin == std::string::npos) {
            continue;
        }
        const std::string path = line.substr(begin, line.find(" (", begin) - begin);
        symbols.merge(dynamicSymbols(path, "--defined-only"));
    }
    return symbols;
}

Symbols without(const Symbols& from, const Symbols& taken) {
    Symbols left;
    std::set_difference(from.begin(), from.end(), taken.begin(), taken.end(),
                        std::inserter(left, left.end()));
    return left;
}

TEST(CloneLibrary, showsTheTwoFunctionsAndTheFacadeAlone) {
    EXPECT_THAT(dynamicSymbols(VX_CLONE_LIBRARY, "--defined-only"),
                UnorderedElementsAreArray(
                    {"vx_clone_backup_data", "vx_clone_restore_data", "VXCloneAPI::BackupCloneData()",
                     "VXCloneAPI::RestoreCloneData(std::vector<VXClone, std::allocator<VXClone> > const&)",
                     "VXCloneAPI::WriteDataToFile(std::__cxx11::basic_string<char, std::char_traits<char>, "
                     "std::allocator<char> >)",
                     "VXCloneAPI::CheckDataValidity(std::__cxx11::basic_string<char, std::char_traits<char>, "
                     "std::allocator<char> >)",
                     "VXCloneAPI::CheckHashValidity(std::vector<std::__cxx11::basic_string<char, "
                     "std::char_traits<char>, std::allocator<char> >, "
                     "std::allocator<std::__cxx11::basic_string<char, std::char_traits<char>, "
                     "std::allocator<char> > > >, int, char*)"}));
}

TEST(CloneLibrary, needsOfTheTelevisionTheWholeContractAndNothingElse) {
    if (VX_SANITIZED) {
        GTEST_SKIP() << "a sanitizer adds symbols of its own";
    }
    const Symbols ownNeeds = without(dynamicSymbols(VX_CLONE_LIBRARY, "--undefined-only"),
                                     symbolsOfItsLibraries(VX_CLONE_LIBRARY));
    const Symbols weakMarks = {"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__gmon_start__"};
    EXPECT_EQ(without(ownNeeds, weakMarks), kContract);
}

TEST(CloneLibrary, carriesItsSonameWithTheMajorVersion) {
    EXPECT_THAT(outputOf({"readelf", "-d", VX_CLONE_LIBRARY}),
                testing::HasSubstr("Library soname: [libvx-clone-api.so.1]"));
}

TEST(VirtualTelevision, providesTheWholeContract) {
    EXPECT_THAT(without(kContract, dynamicSymbols(VX_VIRTUAL_TV_LIBRARY, "--defined-only")), IsEmpty());
}

TEST(VirtualTelevision, showsNothingButTheContract) {
    Symbols shown = without(dynamicSymbols(VX_VIRTUAL_TV_LIBRARY, "--defined-only"), kContract);
    for (const std::string& name : kInterfaceClasses) {
        for (const std::string& part : {"vtable for " + name, "typeinfo for " + name,
                                        "typeinfo name for " + name, name + "::~" + name + "()"}) {
            shown.erase(part);
        }
    }
    EXPECT_THAT(shown, IsEmpty());
}

TEST(PublicHeader, programInCUsesTheTwoFunctionsAndTheCategories) {
    const TemporaryDirectory directory;
    const std::string source = (directory / "caller.c").string();
    writeFile(source,
              "#include \"vx_clone_api.h\"\n"
              "int main(void) {\n"
              "    VXClone category = VXCLONE_NTP_SETTINGS_DATA;\n"
              "    int (*backup)(void) = vx_clone_backup_data;\n"
              "    int (*restore)(void) = vx_clone_restore_data;\n"
              "    return sizeof(category) == 4 && category == 14 && backup && restore ? 0 : 1;\n"
              "}\n");
    outputOf({VX_C_COMPILER, "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only",
              std::string("-I") + VX_INCLUDE, source});
}

}  // namespace
}  // namespace vxtest
