#pragma once

#include <json/json.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "VXCloneInterface.h"

/// The clone engine.
///
/// An object carries no data: the direction of the run, the settings snapshot and the result list are shared
/// by all of them, so that one run at a time is the rule. A run dispatches each category to its cloner, the
/// member that saves or loads it; a cloner reads the direction, records its own outcome in the result list
/// and never stops the run. The application data is cloned on a thread of its own meanwhile.
class VXCloneHandler : public VXCloneInterface {
 public:
    int RestoreCloneData(const std::vector<VXClone>& list) override;
    int BackupCloneData() override;
    int WriteDataToFile(std::string path) override;
    int CheckDataValidity(std::string path) override;
    int CheckHashValidity(std::vector<std::string> files, int mode, char* path) override;

    /// Direction of the run in progress, or of the last one: 0 backup, 1 restore. Set before any cloner
    /// runs and not while one does.
    static std::int32_t m_ecloneType;

 private:
    // Cloners: true for success, although some tell their outcome through the result list alone.
    bool m_FactorySettingsClone();
    bool m_AudioVideoSettingsClone();
    bool m_HomeDataControlClone();
    bool m_WasAPIClone();
    bool m_VCONFDataClone();
    bool m_BroadcastTVSClone();
    bool m_SettingsDataClone();
    bool m_BroadcastIPGDataClone();
    bool m_VXTVTimerDataClone();
    bool m_HospitalityLogoClone();
    bool m_VXHotelHomeAppDataClone();
    bool m_VXHotelFirstScreenDataClone();
    bool m_MBRLogoClone();
    bool m_NTP_Settings_Clone();

    struct RestoreRow;
    /// Result: how a restore loads the category, or null for one that has no cloner of its own.
    static const RestoreRow* m_FindRestoreRow(VXClone category);

    // Reporting.

    /// Publishes the percentage, as it is.
    void m_updateProgressVconf(int percent);
    /// Result: the category's name in the result list, empty for a value that is no category.
    std::string m_GetVconfLogString(VXClone category);
    /// Appends one outcome, success for any status but 0, to the result list. Result: false when the list
    /// could not be read, and the outcome is lost. Threads: both of a run call it, without a lock.
    bool m_AppendCloneResultVConf(int status, VXClone category);

    // Settings store, one key at a time. Result: true on success; a getter that fails leaves an int or bool
    // as the store left it, and a string empty.
    bool m_GetVConfBool(const std::string& key, int& value);
    bool m_SetVConfBool(const std::string& key, int value);
    bool m_GetVConfString(std::string key, std::string& value);
    bool m_SetVConfString(std::string key, std::string value);
    bool m_GetVConfInt(std::string key, int& value);
    bool m_SetVConfInt(std::string key, int value);

    // Files. None of these throws; callers sync().

    /// Removes the tree, if it is there.
    void m_DeleteDirectory(std::string path);
    /// Result: whether the path, a directory included, can be opened for reading and is no symbolic link.
    bool m_IsDataFileExist(std::string path);
    /// Copies the files directly inside `source` into `destination`, over what is there. Entries that cannot
    /// be copied, and those that are neither files nor links to files, are passed over. Result: true when
    /// both were directories and all entries were seen.
    bool m_CopyDirectory(std::string source, std::string destination);
    /// Makes one level of directory, with mode 0764 during a restore. Result: true when the path exists
    /// afterwards, whatever it is.
    bool m_CreateDir(const std::string& path);
    /// Empties the clone directory, which itself stays.
    void m_CleanTVCloneDirectory();

    // Settings snapshot.

    /// Reads every listed key into the snapshot; a key that fails is left out.
    void m_GetVconfValues();
    /// Writes every listed key; one that the document lacks gets 0 or the empty string.
    void m_SetVconfValues(Json::Value document);

    // Set-top box icons, channel navigation, application data.
    bool m_SetMBRCutomIcon();
    bool m_ResetMyChannelNavigation();
    void m_GetMsgPortAppsName(std::vector<std::string>& applications);
    bool m_LaunchOrvelAppForClone();

    // Package integrity.
    int m_WriteCloneData(std::string path);
    int m_ReadCloneData(std::string path);
    std::string GetFileContent(std::ifstream& stream);
    int m_checkHashValidity(std::vector<std::string>& files, int mode, char* path);

    /// The settings snapshot while it is gathered; empty between runs.
    static Json::Value m_jscloneParam;
};
