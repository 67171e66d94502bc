// The seal over a package: one hash of all its files, enciphered with the clone key.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "VXCloneFileHash.h"
#include "VXCloneHandler.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "VXCloneResources.h"
#include "VXCloneUtil.h"
#include "platform/tvtimer.h"

namespace fs = boost::filesystem;

namespace {

constexpr int kModeCreate = 0;
constexpr int kModeVerify = 1;
constexpr int kDecimal = 10;
constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

#define VX_TEXT_HASHES "hash value = %lu file hash %lu\n"

/// A file that is open for reading. Opening a FIFO does not wait for a writer.
class InputFile {
 public:
    explicit InputFile(const std::string& path)
        : m_descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
    ~InputFile() {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Result: whether it is open and a regular file. Sets `length` to its size then.
    bool isRegular(off_t& length) const {
        struct stat status {};
        const bool regular =
            m_descriptor >= 0 && fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode);
        length = status.st_size;
        return regular;
    }

    /// Result: the number of bytes read; 0 at the end or on an error.
    std::size_t next(std::vector<unsigned char>& block) const {
        const ssize_t count = read(m_descriptor, block.data(), block.size());
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }

 private:
    int m_descriptor;
};

std::uint32_t hashOf(const InputFile& file) {
    std::vector<unsigned char> block(kBlockSize);
    std::uint32_t hash = 0;
    for (std::size_t count = file.next(block); count > 0; count = file.next(block)) {
        hash = VXCloneFileHash(hash, block.data(), count);
    }
    return hash;
}

bool isSymbolicLink(const std::string& path) {
    boost::system::error_code ignored;
    return fs::is_symlink(fs::symlink_status(path, ignored));
}

/// The sum of the files' hashes. Missing files, links and other files that are not regular add nothing.
std::uint32_t hashOfAll(const char* function, const std::vector<std::string>& files) {
    VX_LOG_AS(function, Error, "Calculate hash of following files");
    std::uint32_t total = 0;
    const auto shown = [](std::uint32_t hash) { return static_cast<unsigned long>(hash); };
    for (const std::string& path : files) {
        VX_LOGF_AS(function, Error, "%s", path.c_str());
        if (isSymbolicLink(path)) {
            VX_LOGF_AS(function, Error, VX_TEXT_SYMBOLIC_LINK, path.c_str());
            continue;
        }
        const InputFile file(path);
        off_t length = 0;
        if (!file.isRegular(length)) {
            VX_LOGF_AS(function, Error, VX_TEXT_HASHES, shown(total), shown(0));
            continue;
        }
        VX_LOGF_AS(function, Error, "Length = %d", static_cast<int>(length));
        VX_LOGF_AS(function, Error, "hash value = %lu", shown(total));
        const std::uint32_t hash = hashOf(file);
        total += hash;
        VX_LOGF_AS(function, Debug, VX_TEXT_HASHES, shown(total), shown(hash));
    }
    VX_LOGF_AS(function, Error, "final hash calculated = %lu", shown(total));
    return total;
}

struct ClonePair {
    std::string key;
    std::string iv;
};

int createManifest(const char* function, const ClonePair& pair, const std::string& text,
                   const std::string& drive) {
    {
        const VXCloneFile plain(CVXCloneUtil::SafeFileOpen(kPlainManifest, "w"));
        if (plain == nullptr) {
            VX_LOG_AS(function, Error, "Error creating hash file on drive");
            return 0;
        }
        VX_LOG_AS(function, Error, "hash code written successfully");
        std::fputs(text.c_str(), plain.get());
    }
    if (!CVXCloneUtil::EncryptDecryptFile(kPlainManifest, kEncipheredManifest, pair.key, pair.iv,
                                          CRYPT_OP_ENCRYPT)) {
        VX_LOG_AS(function, Error, "Encryption Failed");
        return 0;
    }
    VX_LOG_AS(function, Error,
              "Encryption Success , Copying Validate file to USB .... Deleting temp & Encrypted file");
    // Intended: if the copy to the drive fails, the caller gets the exception of the file system.
    fs::copy_file(kEncipheredManifest, drive, kOverwriteExisting);
    fs::remove(kPlainManifest);
    fs::remove(kEncipheredManifest);
    return 1;
}

int verifyManifest(const char* function, const ClonePair& pair, std::uint32_t total,
                   const std::string& drive) {
    boost::system::error_code error;
    if (!fs::exists(fs::status(drive, error)) || isSymbolicLink(drive)) {
        VX_LOGF_AS(function, Error, "%s doesnt exist or, is symbolic link.", drive.c_str());
        return 0;
    }
    if (!CVXCloneUtil::EncryptDecryptFile(drive, kPlainManifest, pair.key, pair.iv, CRYPT_OP_DECRYPT)) {
        VX_LOG_AS(function, Error, " Decrypt Failed");
        return 0;
    }
    VX_LOG_AS(function, Error, "Decrypt Success");
    std::ifstream plain(kPlainManifest);
    if (!plain.good()) {
        VX_LOG_AS(function, Error, "Error opening temp validate file");
        return 0;
    }
    std::string line;
    std::getline(plain, line);
    VX_LOGF_AS(function, Error, "Hash from file = %s", line.c_str());
    plain.close();
    VX_LOG_AS(function, Error, "Removing temp decrypted file");
    fs::remove(kPlainManifest);

    // The number in the seal may be larger or signed. Only its low 32 bits count.
    if (static_cast<std::uint32_t>(std::strtoll(line.c_str(), nullptr, kDecimal)) != total) {
        VX_LOG_AS(function, Error, "Hash value did not match");
        return 0;
    }
    return 1;
}

}  // namespace

int VXCloneHandler::CheckHashValidity(std::vector<std::string> files, int mode, char* path) {
    VX_TRACE();
    if (tvtimer_init() < 0) {
        VX_LOG(Error, VX_TEXT_NO_TIMERS);
    }
    return m_checkHashValidity(files, mode, path);
}

int VXCloneHandler::m_checkHashValidity(std::vector<std::string>& files, int mode, char* path) {
    const std::uint32_t total = hashOfAll(__func__, files);

    VX_LOG(Error, "Get key and IV");
    ClonePair pair;
    if (!CVXCloneUtil::GetAESInfo(pair.key, pair.iv, kKeyFile)) {
        VX_LOG(Error, "Unable to Get AES Key-IV Pair, Encryption Failed");
        return 0;
    }

    int result = 1;
    if (mode == kModeCreate) {
        result = createManifest(__func__, pair, std::to_string(total), path);
    } else if (mode == kModeVerify) {
        result = verifyManifest(__func__, pair, total, path);
    }
    if (result != 0) {
        VX_LOG(Error, "Validation success!!");
    }
    return result;
}
