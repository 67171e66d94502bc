#ifndef VX_CLONE_API_H
#define VX_CLONE_API_H

/*
 * Clones the configuration of one hotel television onto others.
 *
 * A backup gathers this television's settings and data, category by category, into the clone directory
 * "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/"; a restore loads them from there. The caller
 * provides that directory and carries it to and from the stick.
 *
 * A run is followed through two keys of the settings store: `db/hotel/clone_progress` (int, percent, written
 * by a restore only) and `db/hotel/clone_result` (string, emptied at the start of a run; each reported
 * outcome is one line, a category's enumerator name followed by "-SUCCESS" or "-FAIL").
 *
 * Threads: a run works in the calling thread and returns when it has finished. One run at a time in a
 * process; no operation may be called while a run is going on.
 */

#ifdef __cplusplus
#include <string>
#include <vector>
#define VX_CLONE_ENUM_BASE : int
extern "C" {
#else
#define VX_CLONE_ENUM_BASE
#endif

/** The categories of a clone. The names are also the texts of the result list. */
enum VXClone VX_CLONE_ENUM_BASE {
    VXCLONE_FACTORY_SETTINGS = 0,
    VXCLONE_AV_SETTINGS = 1,
    VXCLONE_HOME_INTERNAL_API_DATA = 2,
    VXCLONE_WAS_API_DATA = 3,
    VXCLONE_VCONF_DATA = 4,
    VXCLONE_BROADCAST_TVS = 5,
    VXCLONE_SETTINGS_DATA = 6,
    VXCLONE_BROADCAST_IPG_DATA = 7,
    VXCLONE_VXTV_TIMER_DATA = 8,
    VXCLONE_HOSPITALITY_LOGO = 9,
    VXCLONE_VXHOTEL_HOMEAPP_DATA = 10,
    VXCLONE_VXHOTEL_FIRSTSCREEN_DATA = 11,
    VXCLONE_VXHOTEL_MBR_LOGO = 12,
    VXCLONE_VXHOTEL_AMBIENT_APP_DATA = 13,
    VXCLONE_NTP_SETTINGS_DATA = 14
};
#undef VX_CLONE_ENUM_BASE
#ifndef __cplusplus
typedef enum VXClone VXClone;
#endif

#if defined(__GNUC__)
#define VX_CLONE_EXPORT __attribute__((visibility("default")))
#else
#define VX_CLONE_EXPORT
#endif

/**
 * Saves this television into the clone directory, which is emptied first.
 *
 * Result: always 0; the outcome stands in the result list. Returns when the backup has finished.
 */
VX_CLONE_EXPORT int vx_clone_backup_data(void);

/**
 * Loads every category of the clone directory into this television, in the order of their values.
 *
 * Result: always 0; the outcome stands in the result list. Returns when the restore has finished.
 */
VX_CLONE_EXPORT int vx_clone_restore_data(void);

#ifdef __cplusplus
}

/**
 * The same and more for callers in C++. There are no objects of this class.
 *
 * Where the engine could not be made when the library was loaded (memory was short), every operation logs
 * that and fails: `CheckDataValidity` with -1, the others with 0.
 */
class VX_CLONE_EXPORT VXCloneAPI {
 public:
    /** Saves this television into the clone directory. Result: 1. */
    static int BackupCloneData();

    /**
     * Loads the categories of the list, in the order of the list; a category listed twice is loaded twice,
     * an unknown one is logged and passed over.
     *
     * An empty list stands for all categories, and the caller's own vector is filled with them, although the
     * parameter is a reference to const.
     *
     * Result: 1 when the list was processed, whatever its categories reported.
     * Errors: with a list without VXCLONE_VXHOTEL_FIRSTSCREEN_DATA the call loads all of the list and then
     * throws std::system_error.
     */
    static int RestoreCloneData(const std::vector<VXClone>& list);

    /** Writes what kind of television this is to the file `path`. Result: 1, or 0 on failure. */
    static int WriteDataToFile(std::string path);

    /**
     * Says whether the package in the directory `path` (no trailing slash) fits this television.
     *
     * Result: 0 when it fits; any other value is the reason why it does not, or could not be judged.
     */
    static int CheckDataValidity(std::string path);

    /**
     * Seals the listed files in the validation file `path` (mode 0), or checks them against it (mode 1).
     *
     * Result: 1, or 0 on failure. Ownership: `path` stays the caller's.
     */
    static int CheckHashValidity(std::vector<std::string> files, int mode, char* path);
};
#endif

#endif
