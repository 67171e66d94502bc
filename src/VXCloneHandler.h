#pragma once

#include <json/json.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "VXCloneInterface.h"

/// The clone engine.
///
/// An object has no data: all objects share the direction of the run, the settings snapshot and the result
/// list. So only one run is allowed at a time. A run calls the cloner of each category, the member function
/// that saves or loads it. A cloner reads the direction, adds its outcome to the result list and never stops
/// the run. Meanwhile the application data is cloned on another thread.
class VXCloneHandler : public VXCloneInterface {
 public:
    int RestoreCloneData(const std::vector<VXClone>& list) override;
    int BackupCloneData() override;
    int WriteDataToFile(std::string path) override;
    int CheckDataValidity(std::string path) override;
    int CheckHashValidity(std::vector<std::string> files, int mode, char* path) override;

    /// Direction of the current or last run: 0 backup, 1 restore. Set before the first cloner runs, and not
    /// changed while one runs.
    static std::int32_t m_ecloneType;

 private:
    // Cloners. They return true for success, but some report their outcome only in the result list.
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
    /// Result: how a restore loads the category, or null if the category has no cloner.
    static const RestoreRow* m_FindRestoreRow(VXClone category);

    // Reporting.

    /// Publishes the percentage without checking it.
    void m_updateProgressVconf(int percent);
    /// Result: the category's name in the result list; empty for an invalid value.
    std::string m_GetVconfLogString(VXClone category);
    /// Appends one outcome to the result list; every status except 0 is a success. Result: false if the list
    /// could not be read; the outcome is then lost. Threads: both threads of a run call this without a lock.
    bool m_AppendCloneResultVConf(int status, VXClone category);

    // Settings store, one key at a time. Result: true on success. After a failure, a getter leaves an int or
    // bool as the store left it, and makes a string empty.
    bool m_GetVConfBool(const std::string& key, int& value);
    bool m_SetVConfBool(const std::string& key, int value);
    bool m_GetVConfString(std::string key, std::string& value);
    bool m_SetVConfString(std::string key, std::string value);
    bool m_GetVConfInt(std::string key, int& value);
    bool m_SetVConfInt(std::string key, int value);

    // Files. None of these throws. Callers call sync().

    /// Removes the tree if it exists.
    void m_DeleteDirectory(std::string path);
    /// Result: whether the path can be opened for reading and is not a symbolic link. The path may be a
    /// directory.
    bool m_IsDataFileExist(std::string path);
    /// Copies the files directly inside `source` into `destination` and overwrites existing ones. Entries
    /// that cannot be copied, and entries that are neither files nor links to files, are skipped. Result:
    /// true if both were directories and all entries were visited.
    bool m_CopyDirectory(std::string source, std::string destination);
    /// Creates one directory, with mode 0764 during a restore. Its parent must exist. Result: true if the
    /// path exists afterwards, as any kind of file.
    bool m_CreateDir(const std::string& path);
    /// Removes everything in the clone directory, but not the directory.
    void m_CleanTVCloneDirectory();

    // Settings snapshot.

    /// Reads every listed key into the snapshot. A key that cannot be read is left out.
    void m_GetVconfValues();
    /// Writes every listed key. A key that the document lacks is set to 0 or the empty string.
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

    /// The settings snapshot while it is gathered. Empty between runs.
    static Json::Value m_jscloneParam;
};
