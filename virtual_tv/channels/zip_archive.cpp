#include "virtual_tv/channels/zip_archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

namespace vxtv {

namespace {

struct CloseWriter {
    void operator()(archive* writer) const { archive_write_free(writer); }
};
struct CloseReader {
    void operator()(archive* reader) const { archive_read_free(reader); }
};
struct FreeEntry {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};
using Writer = std::unique_ptr<archive, CloseWriter>;
using Reader = std::unique_ptr<archive, CloseReader>;
using Entry = std::unique_ptr<archive_entry, FreeEntry>;

la_ssize_t appendTo(archive* /*writer*/, void* target, const void* bytes, std::size_t size) {
    static_cast<std::string*>(target)->append(static_cast<const char*>(bytes), size);
    return static_cast<la_ssize_t>(size);
}

bool addMember(archive* writer, const std::string& name, const std::string& content) {
    const Entry entry(archive_entry_new());
    if (!entry) {
        return false;
    }
    constexpr mode_t kReadable = 0644;
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.size()));
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), kReadable);
    return archive_write_header(writer, entry.get()) == ARCHIVE_OK &&
           archive_write_data(writer, content.data(), content.size()) ==
               static_cast<la_ssize_t>(content.size());
}

// The end record of every zip archive: a signature, counts, size and place of the directory, and the length
// of a comment. All numbers are little-endian.
constexpr std::size_t kEndSize = 22;
constexpr std::string_view kEndSignature("PK\5\6", 4);
constexpr std::string_view kFirstSignature("PK\3\4", 4);
constexpr std::size_t kEndDisks = 4;
constexpr std::size_t kEndCountHere = 8;
constexpr std::size_t kEndCount = 10;
constexpr std::size_t kEndDirectorySize = 12;
constexpr std::size_t kEndDirectoryPlace = 16;
constexpr std::size_t kEndRemark = 20;

std::size_t numberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
    std::size_t number = 0;
    for (std::size_t place = size; place > 0; --place) {
        number = number << 8U | static_cast<unsigned char>(bytes[offset + place - 1]);
    }
    return number;
}

/// Whether the archive begins with its first member, ends with its directory and the end record, and has that
/// number of members.
bool hasPlainFrame(std::string_view archive, std::size_t members) {
    if (archive.size() < kEndSize || archive.substr(0, kFirstSignature.size()) != kFirstSignature) {
        return false;
    }
    const std::string_view end = archive.substr(archive.size() - kEndSize);
    return end.substr(0, kEndSignature.size()) == kEndSignature && numberAt(end, kEndDisks, 4) == 0 &&
           numberAt(end, kEndCountHere, 2) == members && numberAt(end, kEndCount, 2) == members &&
           numberAt(end, kEndDirectoryPlace, 4) + numberAt(end, kEndDirectorySize, 4) ==
               archive.size() - kEndSize &&
           numberAt(end, kEndRemark, 2) == 0;
}

/// The reason why the entry is refused, or empty.
std::optional<std::string> refusalOf(archive* reader, archive_entry* entry,
                                     const std::vector<std::string_view>& wanted, const ZipMembers& members) {
    const char* const name = archive_entry_pathname(entry);
    if (name == nullptr || std::find(wanted.begin(), wanted.end(), name) == wanted.end()) {
        return "a member that does not belong there";
    }
    if (members.count(name) != 0) {
        return "a member twice";
    }
    if (archive_entry_is_encrypted(entry) != 0) {
        return "a member that is enciphered";
    }
    if (archive_entry_filetype(entry) != AE_IFREG || archive_entry_symlink(entry) != nullptr ||
        archive_entry_hardlink(entry) != nullptr ||
        (archive_entry_perm(entry) & (S_ISUID | S_ISGID | S_ISVTX)) != 0) {
        return "a member that is no plain file";
    }
    // Fewer compression methods give an attacker fewer possibilities.
    const std::string_view format = archive_format_name(reader);
    const auto endsWith = [format](std::string_view text) {
        return format.size() >= text.size() && format.substr(format.size() - text.size()) == text;
    };
    if (!endsWith("(deflation)") && !endsWith("(uncompressed)")) {
        return "a member that is packed in another way";
    }
    return std::nullopt;
}

enum class Reading { Done, TooLarge, Broken };

/// Reads the reader's current member up to the limit.
Reading readMember(archive* reader, std::size_t limit, std::string& content) {
    constexpr std::size_t kPiece = std::size_t{64} * 1024;
    std::string piece(kPiece, '\0');
    for (;;) {
        const la_ssize_t count = archive_read_data(reader, piece.data(), piece.size());
        if (count <= 0) {
            return count == 0 && archive_errno(reader) == 0 ? Reading::Done : Reading::Broken;
        }
        content.append(piece, 0, static_cast<std::size_t>(count));
        if (content.size() > limit) {
            return Reading::TooLarge;
        }
    }
}

tl::unexpected<Error> damaged(const std::string& name) {
    return failure(ErrorCode::DamagedBackup,
                   fmt::format("the archive {} is damaged; copy it again, or make the backup anew", name));
}

tl::unexpected<Error> refused(const std::string& name, std::string_view why) {
    return failure(ErrorCode::BadBackup,
                   fmt::format("the archive {} is refused: it holds {}; make the backup anew", name, why));
}

}  // namespace

Result<std::string> packZip(const ZipMembers& members) {
    std::string packed;
    const Writer writer(archive_write_new());
    bool good = writer && archive_write_set_format_zip(writer.get()) == ARCHIVE_OK &&
                archive_write_set_bytes_per_block(writer.get(), 0) == ARCHIVE_OK &&
                archive_write_open(writer.get(), &packed, nullptr, appendTo, nullptr) == ARCHIVE_OK;
    for (const auto& [name, content] : members) {
        good = good && addMember(writer.get(), name, content);
    }
    if (!good || archive_write_close(writer.get()) != ARCHIVE_OK) {
        return failure(ErrorCode::Io, "the archive cannot be packed; see that memory is free and try again");
    }
    std::vector<std::string_view> names;
    for (const auto& [name, content] : members) {
        names.push_back(name);
    }
    if (!unpackZip(packed, names, "")) {
        return failure(
            ErrorCode::BadArgument,
            "the archive cannot be packed: it would be larger than one may be; leave something out");
    }
    return packed;
}

Result<ZipMembers> unpackZip(std::string_view archive, const std::vector<std::string_view>& wanted,
                             const std::string& name) {
    if (archive.size() > kLargestZip || !hasPlainFrame(archive, wanted.size())) {
        return failure(
            ErrorCode::NotABackupFile,
            fmt::format("{} is no archive of {} members and at most {} MiB; copy it again, or make the "
                        "backup anew",
                        name, wanted.size(), kLargestZip >> 20U));
    }
    const Reader reader(archive_read_new());
    if (!reader || archive_read_support_format_zip_seekable(reader.get()) != ARCHIVE_OK ||
        archive_read_open_memory(reader.get(), archive.data(), archive.size()) != ARCHIVE_OK) {
        return damaged(name);
    }
    ZipMembers members;
    std::size_t room = archive.size() * kMostZipRatio;
    archive_entry* entry = nullptr;
    int status = ARCHIVE_OK;
    // A warning is refused, too: libarchive warns if directory and member contradict each other.
    while ((status = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK) {
        if (const auto refusal = refusalOf(reader.get(), entry, wanted, members)) {
            return refused(name, *refusal);
        }
        std::string& content = members[archive_entry_pathname(entry)];
        const Reading reading = readMember(reader.get(), std::min(room, kLargestZipMember), content);
        if (reading != Reading::Done) {
            return reading == Reading::TooLarge ? refused(name, "more than it may") : damaged(name);
        }
        room -= content.size();
    }
    if (status != ARCHIVE_EOF || members.size() != wanted.size()) {
        return damaged(name);
    }
    return members;
}

}  // namespace vxtv
