// Boot logo, set-top box icons and home menu: files that are copied between the package and the television's
// own directories.

#include <unistd.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "platform/source_api.h"
#include "platform/vx_paths.h"

namespace {

/// The icons of the set-top box, each a JPEG file or, without one, a PNG file.
constexpr char kSourceIconName[] = "stb_source_icon";
constexpr char kAppIconName[] = "stb_app_icon";
constexpr char kPreferredExtension[] = ".jpg";
constexpr char kOtherExtension[] = ".png";

/// The icon type of the source that takes custom icons.
constexpr int kCustomIconType = 0;

}  // namespace

bool VXCloneHandler::m_HospitalityLogoClone() {
    bool success = false;
    if (m_ecloneType == kDirectionRestore) {
        const std::string directory = vx_get_bootlogo_path();
        VX_LOGF(Error, "Logo Path: [%s]", directory.c_str());
        // Intended: if the package has no logo, the television's logo is removed, and the category is a
        // failure.
        const bool packed = m_IsDataFileExist(kLogoDirectory);
        m_DeleteDirectory(directory);
        sync();
        if (packed && m_CreateDir(directory)) {
            m_CopyDirectory(kLogoDirectory, directory);
            sync();
            success = true;
        }
    }
    m_AppendCloneResultVConf(success, VXCLONE_HOSPITALITY_LOGO);
    return success;
}

bool VXCloneHandler::m_MBRLogoClone() {
    VX_LOG(Error, "Start MBR Icon Clone");
    bool success = false;
    if (m_ecloneType != kDirectionRestore) {
        VX_LOG(Error, "Invalid Case!!!");
    } else {
        // Unlike the boot logo, the icons of this television stay if the package has none.
        if (m_IsDataFileExist(kMbrLogoDirectory)) {
            VX_LOG(Error, "MBR Icons Exist in Clone dir");
            const std::string directory = vx_get_mbrlogo_path();
            m_DeleteDirectory(directory);
            sync();
            if (m_CreateDir(directory)) {
                m_CopyDirectory(kMbrLogoDirectory, directory);
                sync();
            }
        }
        success = m_SetMBRCutomIcon();
    }
    m_AppendCloneResultVConf(success, VXCLONE_VXHOTEL_MBR_LOGO);
    return success;
}

bool VXCloneHandler::m_SetMBRCutomIcon() {
    const std::string directory = vx_get_mbrlogo_path() + "/";
    const auto iconPath = [&](const char* name) {
        const std::string preferred = directory + name + kPreferredExtension;
        return m_IsDataFileExist(preferred) ? preferred : directory + name + kOtherExtension;
    };
    const std::string sourceIcon = iconPath(kSourceIconName);
    const std::string appIcon = iconPath(kAppIconName);
    if (!m_IsDataFileExist(sourceIcon) || !m_IsDataFileExist(appIcon)) {
        VX_LOG(Error, "image icon not found");
        return false;
    }

    std::shared_ptr<std::multimap<int, CSourceItem>> sources;
    if (!CSourceAPI::Get()->GetSourceList(&sources)) {
        VX_LOG(Error, "SourceAPI GetSourceList fail");
        return false;
    }
    if (!sources) {
        return true;
    }
    for (const auto& [key, source] : *sources) {
        VX_LOGF(Debug, "GetSourceList %s %d %d", source.name.c_str(), source.id, source.iconType);
        if (source.iconType == kCustomIconType) {
            CSourceAPI::Get()->SetCustomIconPath(source.id, sourceIcon, {appIcon, appIcon}, source.iconType);
            break;
        }
    }
    return true;
}

bool VXCloneHandler::m_VXHotelHomeAppDataClone() {
    const std::string home = vx_get_homemenu_path() + "/";
    const bool backup = m_ecloneType == kDirectionBackup;
    // Intended: a restore, too, creates the package's directory and not the television's. The result does not
    // depend on whether anything was copied.
    const bool success = (backup || m_ecloneType == kDirectionRestore) && m_CreateDir(kHomeMenuDirectory);
    if (success) {
        if (backup) {
            m_CopyDirectory(home, kHomeMenuDirectory);
        } else {
            m_CopyDirectory(kHomeMenuDirectory, home);
        }
        sync();
    }
    m_AppendCloneResultVConf(success, VXCLONE_VXHOTEL_HOMEAPP_DATA);
    return success;
}
