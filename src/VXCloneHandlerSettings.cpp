// The settings snapshot: a fixed list of settings-store keys, saved in one JSON file.

#include <array>
#include <boost/filesystem.hpp>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"

Json::Value VXCloneHandler::m_jscloneParam;

namespace {

/// The types of the table. The file uses the same names for the members of a value.
constexpr char kInt[] = "int";
constexpr char kString[] = "string";
constexpr char kBool[] = "bool";

/// The saved keys with their types, in the order of reading and writing.
constexpr std::array<std::pair<const char*, const char*>, 54> kSettingKeys = {{
    {"db/vxhotel/hotelmenu/welcomemessage", kString},
    {"db/vxhotel/hotelmenu/serverurl", kString},
    {"db/hotel/dooreye", kBool},
    {"db/vxmenu/system/Alarm/Mode", kInt},
    {"db/vxmenu/system/Alarm/Time", kString},
    {"db/vxmenu/system/Alarm/Tone", kInt},
    {"db/vxmenu/system/Alarm/Volume", kInt},
    {"db/vxhotel/securitymode/changepin", kString},
    {"db/vxhotel/welmsg/welcomemsgtitle", kString},
    {"db/vxhotel/welmsg/welcomemsgbody", kString},
    {"db/vxhotel/hotelmenu/hotelid", kString},
    {"db/vxhotel/hotelmenu/hms_serverurl", kString},
    {"db/vxhotel/hotelmenu/reach_ipsetting", kString},
    {"db/home/url_launcher/change_url", kString},
    {"db/homesettings/URLLauncher/TimeOutSettings", kInt},
    {"db/homesettings/URLLauncher/AppTitle", kString},
    {"db/vxhotel/hotelmenu/solution_vlanid", kInt},
    {"db/vxhotel/hotelmenu/device_vlanid", kInt},
    {"db/menu/network/server_network_settings/ProxyAddress", kString},
    {"db/menu/network/server_network_settings/ProxyOn", kBool},
    {"db/home/url_launcher/AppID", kString},
    {"db/menu/system/hdmicec/on_off", kInt},
    {"file/private/sound/feature/SpeakerSelection", kInt},
    {"db/sdk/develop/mode", kInt},
    {"db/sdk/develop/ip", kString},
    {"db/menu/system/time/ontimer1/setup", kString},
    {"db/menu/system/time/ontimer2/setup", kString},
    {"db/menu/system/time/ontimer3/setup", kString},
    {"db/menu/system/time/ontimer1/time", kString},
    {"db/menu/system/time/ontimer2/time", kString},
    {"db/menu/system/time/ontimer3/time", kString},
    {"db/menu/system/time/ontimer1/manual", kInt},
    {"db/menu/system/time/ontimer2/manual", kInt},
    {"db/menu/system/time/ontimer3/manual", kInt},
    {"db/menu/system/time/ontimer1/timer_id", kInt},
    {"db/menu/system/time/ontimer2/timer_id", kInt},
    {"db/menu/system/time/ontimer3/timer_id", kInt},
    {"db/menu/system/time/offtimer1/setup", kString},
    {"db/menu/system/time/offtimer2/setup", kString},
    {"db/menu/system/time/offtimer3/setup", kString},
    {"db/menu/system/time/offtimer1/time", kString},
    {"db/menu/system/time/offtimer2/time", kString},
    {"db/menu/system/time/offtimer3/time", kString},
    {"db/menu/system/time/offtimer1/manual", kInt},
    {"db/menu/system/time/offtimer2/manual", kInt},
    {"db/menu/system/time/offtimer3/manual", kInt},
    {"db/menu/system/time/offtimer1/timer_id", kInt},
    {"db/menu/system/time/offtimer2/timer_id", kInt},
    {"db/menu/system/time/offtimer3/timer_id", kInt},
    {"db/source-list/source-name", kString},
    {"db/vxhotel/hotelmenu/appid", kString},
    {kNtpModeKey, kInt},
    {kNtpServerKey, kString},
    {"db/menu/system/time/ntp/timezone", kInt},
}};

std::string vconfFilePath() {
    return std::string(kVconfDirectory) + kVconfFileName;
}

/// Converts and stores one key. The file came from a stick and may hold anything, so a value that does not
/// convert fails only for its own key.
template <class Store>
bool stored(Store store) {
    try {
        return store();
    } catch (const Json::Exception&) {
        return false;
    }
}

/// Result: whether the stream held a JSON document. For extreme nesting the parser throws an exception.
bool parseDocument(std::ifstream& stream, Json::Value& document) {
    try {
        return Json::parseFromStream(Json::CharReaderBuilder(), stream, &document, nullptr);
    } catch (const Json::Exception&) {
        return false;
    }
}

}  // namespace

void VXCloneHandler::m_GetVconfValues() {
    for (const auto& [key, typeName] : kSettingKeys) {
        const std::string_view type = typeName;
        if (type == kInt) {
            int value = 0;
            if (m_GetVConfInt(key, value)) {
                m_jscloneParam[key][kInt] = value;
            } else {
                VX_LOG(Error, "GET VCONF INT FAILED!!!");
            }
        } else if (type == kString) {
            std::string value;
            if (m_GetVConfString(key, value)) {
                m_jscloneParam[key][kString] = value;
            } else {
                VX_LOG(Error, "GET VCONF STRING FAILED!!!");
            }
        } else if (type == kBool) {
            int value = 0;
            if (m_GetVConfBool(key, value)) {
                m_jscloneParam[key][kBool] = value;
            } else {
                VX_LOG(Error, "GET VCONF BOOL FAILED!!!");
            }
        }
    }
}

void VXCloneHandler::m_SetVconfValues(Json::Value document) {
    VX_TRACE();
    // A key that the document lacks is written, too: its null converts to 0 or the empty string.
    for (const auto& row : kSettingKeys) {
        const char* const key = row.first;
        const std::string_view type = row.second;
        if (type == kInt) {
            if (!stored([&] { return m_SetVConfInt(key, document[key][kInt].asInt()); })) {
                VX_LOG(Error, "SET VCONF INT FAILED!!!");
            }
        } else if (type == kString) {
            if (!stored([&] { return m_SetVConfString(key, document[key][kString].asString()); })) {
                VX_LOG(Error, "SET VCONF STRING FAILED!!!");
            }
        } else if (type == kBool) {
            if (!stored([&] { return m_SetVConfBool(key, document[key][kBool].asInt()); })) {
                VX_LOG(Error, "SET VCONF BOOL FAILED!!!");
            }
        }
    }
}

bool VXCloneHandler::m_VCONFDataClone() {
    const std::string path = vconfFilePath();
    if (m_ecloneType == kDirectionBackup) {
        if (!m_CreateDir(kVconfDirectory)) {
            VX_LOG(Error, "Vconf make directory failed");
            return false;
        }
        boost::system::error_code ignored;
        if (boost::filesystem::is_symlink(boost::filesystem::symlink_status(path, ignored))) {
            VX_LOGF(Error, VX_TEXT_SYMBOLIC_LINK, path.c_str());
            return false;
        }
        // Intended: if the file cannot be opened, the snapshot is lost without a message, and the run
        // continues.
        std::ofstream file(path);
        m_GetVconfValues();
        file << Json::writeString(Json::StreamWriterBuilder(), m_jscloneParam);
        file.close();
        m_jscloneParam.clear();
        // Intended: false even after a successful backup. No caller uses the result, and the category reports
        // nothing.
        return false;
    }
    if (m_ecloneType == kDirectionRestore) {
        VX_TRACE();
        std::ifstream file(path, std::ios::binary);
        if (!file.good()) {
            VX_LOG(Error, "FILE IS NULL");
            return false;
        }
        Json::Value document;
        if (!parseDocument(file, document)) {
            VX_LOG(Error, "Parse error");
            return false;
        }
        m_SetVconfValues(document);
        return true;
    }
    return false;
}
