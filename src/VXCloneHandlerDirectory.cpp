// The clone directory and the file operations that the cloners share.

#include <sys/stat.h>

#include <boost/filesystem.hpp>
#include <fstream>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "VXCloneResources.h"

namespace fs = boost::filesystem;

namespace {

/// The owner may do everything, the group may read and write, others may read.
constexpr auto kRestoredDirectoryMode = static_cast<fs::perms>(0764);

bool isDirectory(const std::string& path) {
    boost::system::error_code error;
    return fs::is_directory(fs::status(path, error));
}

/// Copies a file, or the target of a link to a file. Anything else is not opened, because opening a FIFO
/// would block the run.
void copyEntry(const fs::path& entry, const fs::path& destination) {
    boost::system::error_code ignored;
    if (fs::is_regular_file(fs::status(entry, ignored))) {
        fs::copy_file(entry, destination / entry.filename(), kOverwriteExisting, ignored);
    }
}

/// Runs the action. An exception of the file system ends it and is logged in the name of `function`.
template <class Action>
void withErrorsLogged(const char* function, Action action) {
    try {
        action();
    } catch (const fs::filesystem_error& error) {
        VX_LOGF_AS(function, Error, " Error : [%s]", error.what());
    }
}

}  // namespace

void VXCloneHandler::m_DeleteDirectory(std::string path) {
    VX_LOGF(Error, "Remove - %s", path.c_str());
    const char* const function = __func__;
    withErrorsLogged(function, [&] {
        boost::system::error_code error;
        fs::remove_all(path, error);
        if (!error) {
            VX_LOGF_AS(function, Error, "Successfully removed [%s]", path.c_str());
        }
    });
}

bool VXCloneHandler::m_IsDataFileExist(std::string path) {
    VX_LOGF(Error, "IsDataFileExist strPath.c_str() %s\n", path.c_str());
    boost::system::error_code ignored;
    if (fs::is_symlink(fs::symlink_status(path, ignored))) {
        VX_LOGF(Error, VX_TEXT_SYMBOLIC_LINK, path.c_str());
        return false;
    }
    // A directory can be opened for reading, too. Cloners use this to check for directories of the package.
    return std::ifstream(path).is_open();
}

bool VXCloneHandler::m_CopyDirectory(std::string source, std::string destination) {
    VX_LOGF(Error, "src = %s, dst = %s", source.c_str(), destination.c_str());
    if (!isDirectory(source)) {
        VX_LOGF(Error, "srcPath(%s) does not exist or is not a directory.", source.c_str());
        return false;
    }
    if (!isDirectory(destination)) {
        VX_LOGF(Error, "dstPath(%s) does not exist or is not a directory.", destination.c_str());
        return false;
    }
    VX_LOG(Error, "Directories Checked");

    boost::system::error_code error;
    fs::directory_iterator entry(source, error);
    while (!error && entry != fs::directory_iterator()) {
        copyEntry(entry->path(), destination);
        VX_LOG(Error, "-----------file copying------------");
        entry.increment(error);
    }
    if (error) {
        return false;
    }
    VX_LOG(Error, "-----------reached end------------");
    return true;
}

bool VXCloneHandler::m_CreateDir(const std::string& path) {
    try {
        if (fs::exists(fs::status(path))) {
            return true;
        }
        fs::create_directory(path);
        if (m_ecloneType == kDirectionRestore) {
            fs::permissions(path, kRestoredDirectoryMode);
        }
        VX_LOGF(Error, "Directory Path[%s]", path.c_str());
        return true;
    } catch (const fs::filesystem_error& error) {
        VX_LOGF(Error, "Filesystem error: %s", error.what());
        return false;
    }
}

void VXCloneHandler::m_CleanTVCloneDirectory() {
    VX_LOG(Error, "starting deleting stuff");
    struct stat status {};
    if (stat(kCloneDirectory, &status) == 0) {
        VX_LOG(Error, "deleting stuff");
        withErrorsLogged(__func__, [] {
            for (const fs::directory_entry& entry : fs::directory_iterator(kCloneDirectory)) {
                fs::remove_all(entry.path());
            }
        });
    }
    VX_LOGF(Error, "++++++++++++++++++++++++++++ %s", kCloneDirectory);
}
