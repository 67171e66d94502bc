#include "cloning_app/record/run_record.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <nlohmann/json.hpp>

#include "cloning_app/base/small_file.h"
#include "common/json_reading.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr const char* kRecordFile = "run.json";
/// The process with a current run has this file locked. The file stays after the run; only the lock counts.
constexpr const char* kLockFile = "run.lock";
constexpr mode_t kLockMode = 0644;
/// The number of attempts to lock the file if it is removed meanwhile.
constexpr int kMostAttempts = 100;
/// Much more than any record needs.
constexpr std::size_t kMostRecordBytes = std::size_t{256} << 10U;

// The first byte of the lock file is locked during a run. The second one is also locked if it is only a look,
// which has no record. The position of a lock on the other bytes shows the progress of a run. This needs no
// room on the disk and ends with the process. These locks do not touch the first bytes, because adjacent
// locks would be merged.
constexpr off_t kHold = 0;
constexpr off_t kMarkOfLook = 1;
constexpr off_t kLengthOfRun = 1;
constexpr off_t kLengthOfLook = 2;
constexpr off_t kPositions = 128;
constexpr off_t kPositionsOfAPhase = 128;

/// A lock on the bytes from `begin` on. A length of 0 means all of them.
struct flock lockOf(short type, off_t begin, off_t length) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = length;
    return lock;
}

off_t positionOf(const ToldProgress& progress) {
    return kPositions + static_cast<off_t>(progress.phase) * kPositionsOfAPhase + progress.percent;
}

std::optional<ToldProgress> progressAt(off_t position) {
    const off_t phase = (position - kPositions) / kPositionsOfAPhase;
    const off_t percent = (position - kPositions) % kPositionsOfAPhase;
    if (position < kPositions || phase >= static_cast<off_t>(kShownPhaseCount) || percent > kWholePercent) {
        return std::nullopt;
    }
    return ToldProgress{static_cast<ShownPhase>(phase), static_cast<int>(percent)};
}

/// Whether the open file is still the one with that name. The last holder may have removed the name.
bool isStillThere(const Descriptor& file, int folder) {
    struct stat held {};
    struct stat named {};
    return fstat(file.get(), &held) == 0 && fstatat(folder, kLockFile, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

/// Result: empty if another process has the lock.
Result<std::optional<Descriptor>> tryLock(int folder, const std::string& path, off_t length) {
    Descriptor file(openat(folder, kLockFile, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kLockMode));
    struct flock lock = lockOf(F_WRLCK, kHold, length);
    if (file.valid() && fcntl(file.get(), F_OFD_SETLK, &lock) == 0) {
        return std::optional(std::move(file));
    }
    if (file.valid() && (errno == EAGAIN || errno == EACCES)) {
        return std::optional<Descriptor>();
    }
    return tl::make_unexpected(writeError(Place::Television, path + "/" + kLockFile, errno));
}

Result<Descriptor> takeLock(int folder, const std::string& path, off_t length) {
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        auto file = tryLock(folder, path, length);
        VX_RETURN_IF_FAILED(file);
        if (!*file) {
            break;
        }
        if (isStillThere(**file, folder)) {
            return std::move(**file);
        }
    }
    return failure(ErrorCode::TelevisionBusy,
                   "another vxclone works on this television; wait for its end (vxclone status --follow)");
}

/// The position of the first locked byte in this range; empty if none is locked. Only queries, so a run that
/// begins at this moment is not disturbed.
std::optional<off_t> firstHeld(const Descriptor& file, off_t begin, off_t length) {
    struct flock lock = lockOf(F_WRLCK, begin, length);
    const bool held = file.valid() && fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    return held ? std::optional(lock.l_start) : std::nullopt;
}

Result<Descriptor> makeAndOpen(const std::filesystem::path& folder) {
    std::error_code reason;
    std::filesystem::create_directories(folder, reason);
    if (reason) {
        return tl::make_unexpected(writeError(Place::Television, folder.string(), reason.value()));
    }
    return openOnTelevision(folder);
}

/// The record in the folder; empty if there is none or it cannot be understood.
std::optional<RunRecord> recordIn(const Tree& folder) {
    const auto text = readSmallFile(folder, kRecordFile, kMostRecordBytes);
    if (!text || !*text) {
        return std::nullopt;
    }
    auto record = parseRecord(**text, kRecordFile);
    return record ? std::optional(*std::move(record)) : std::nullopt;
}

using Json = nlohmann::json;

constexpr std::int64_t kFormatVersion = 1;
constexpr std::size_t kMostRows = 100;
constexpr std::int64_t kMostExitStatus = 255;
/// The depth is that of a value in a row in the list in the record. Each row has five values and their names.
/// The limit leaves room for additions of a later vxclone.
constexpr vxcommon::JsonLimits kRecordLimits{4, kMostRows * 20 + 100};

constexpr std::array<std::string_view, 3> kRunKinds = {"backup", "restore", "undo"};
static_assert(kRunKinds.size() == static_cast<std::size_t>(RunKind::Undo) + 1);
constexpr std::array<std::string_view, 7> kPhases = {"staging",   "safety",       "saving", "writing",
                                                     "restoring", "reading-back", "done"};
static_assert(kPhases.size() == static_cast<std::size_t>(RunPhase::Done) + 1);

/// The text of a member, if it has one.
std::optional<std::string> text(const Json& object, const char* name) {
    const Json* const found = vxcommon::memberIfThere(object, name);
    return found != nullptr && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

/// The number of a member, if it is one from 0 to `most`.
std::optional<std::int64_t> number(const Json& object, const char* name, std::int64_t most) {
    const Json* const found = vxcommon::memberIfThere(object, name);
    return found == nullptr ? std::nullopt : vxcommon::wholeNumber(*found, 0, most);
}

/// A time that is only shown. It is limited to the range of times that can be shown.
std::optional<std::int64_t> shownTime(const Json& object, const char* name) {
    const Json* const found = vxcommon::memberIfThere(object, name);
    if (found == nullptr || !found->is_number_integer()) {
        return std::nullopt;
    }
    const bool late =
        found->is_number_unsigned() && found->get<std::uint64_t>() > static_cast<std::uint64_t>(kLatestTime);
    return late ? kLatestTime : std::clamp(found->get<std::int64_t>(), kEarliestTime, kLatestTime);
}

bool isTrue(const Json& object, const char* name) {
    const Json* const found = vxcommon::memberIfThere(object, name);
    return found != nullptr && *found == true;
}

/// The value whose name is in the member.
template <class Value, std::size_t count>
std::optional<Value> named(const Json& object, const char* name,
                           const std::array<std::string_view, count>& names) {
    const auto wanted = text(object, name);
    for (std::size_t index = 0; wanted && index < count; ++index) {
        if (names.at(index) == *wanted) {
            return static_cast<Value>(index);
        }
    }
    return std::nullopt;
}

nlohmann::ordered_json jsonOfRow(const Row& row) {
    return {{"category", categoryOf(row.category).enumerator},
            {"result", nameOf(row.verdict)},
            {"detail", row.detail},
            {"application", row.subject},
            {"readBack", nameOf(row.readBack)}};
}

std::optional<Row> rowOf(const Json& object) {
    const auto category = categoryNamed(text(object, "category").value_or(""));
    const auto verdict = verdictNamed(text(object, "result").value_or(""));
    const auto detail = text(object, "detail");
    const auto subject = text(object, "application");
    if (!category || !verdict || !detail || !subject) {
        return std::nullopt;
    }
    const auto readBack = readBackNamed(text(object, "readBack").value_or(""));
    return Row{*category, *verdict, *detail, *subject, readBack.value_or(ReadBack::None)};
}

std::optional<std::vector<Row>> rowsOf(const Json& object) {
    const Json* const found = vxcommon::memberIfThere(object, "rows");
    if (found == nullptr || !found->is_array() || found->size() > kMostRows) {
        return std::nullopt;
    }
    std::vector<Row> rows;
    for (const Json& entry : *found) {
        const auto row = rowOf(entry);
        if (!row) {
            return std::nullopt;
        }
        rows.push_back(*row);
    }
    return rows;
}

std::optional<RunRecord> recordOf(const Json& object) {
    if (number(object, "version", kFormatVersion) != kFormatVersion) {
        return std::nullopt;
    }
    const auto kind = named<RunKind>(object, "kind", kRunKinds);
    const auto phase = named<RunPhase>(object, "phase", kPhases);
    const auto package = text(object, "package");
    const auto digest = text(object, "digest");
    const auto begun = shownTime(object, "begun");
    const auto rows = rowsOf(object);
    if (!kind || !phase || !package || !digest || !begun || !rows) {
        return std::nullopt;
    }
    RunRecord record{.kind = *kind,
                     .phase = *phase,
                     .package = *package,
                     .digest = *digest,
                     .begun = *begun,
                     .ended = shownTime(object, "ended"),
                     .rows = *rows};
    if (const auto status = number(object, "exit", kMostExitStatus)) {
        record.exitStatus = static_cast<int>(*status);
    }
    record.brokeOffIn = named<RunPhase>(object, "brokeOffIn", kPhases);
    record.halfChanged = isTrue(object, "halfChanged");
    record.allLoaded = isTrue(object, "allLoaded");
    record.wayBack = isTrue(object, "wayBack");
    const bool done = *phase == RunPhase::Done;
    record.name = text(object, "name").value_or("");
    const bool ends = record.ended && record.exitStatus;
    const bool breaks = !record.brokeOffIn || (done && *record.brokeOffIn != RunPhase::Done);
    return ends == done && breaks ? std::optional(record) : std::nullopt;
}

std::optional<RunRecord> recordInText(const std::string& text) {
    try {
        return recordOf(vxcommon::parseStrictly(text, kRecordLimits));
    } catch (const vxcommon::WrongMember&) {
        return std::nullopt;
    } catch (const Json::parse_error&) {
        return std::nullopt;
    }
}

}  // namespace

std::filesystem::path recordFolderOf(const std::filesystem::path& cloneRoot) {
    const bool endsWithSlash = cloneRoot.filename().empty();
    return (endsWithSlash ? cloneRoot.parent_path() : cloneRoot).parent_path();
}

RunRecorder::RunRecorder(Descriptor folder, Descriptor lock, std::string path, RunRecord record)
    : folder_(std::move(folder)),
      lock_(std::move(lock)),
      path_(std::move(path)),
      record_(std::move(record)) {}

Result<RunRecorder> RunRecorder::begin(const std::filesystem::path& folder, RunRecord record) {
    auto opened = makeAndOpen(folder);
    VX_RETURN_IF_FAILED(opened);
    auto lock = takeLock(opened->get(), folder.string(), kLengthOfRun);
    VX_RETURN_IF_FAILED(lock);
    RunRecorder recorder(*std::move(opened), *std::move(lock), folder.string(), std::move(record));
    recorder.previous_ = recordIn(recorder.tree());
    if (auto before = unfinishedLoadIn(recorder.tree())) {
        recorder.before_ = *std::move(before);
    } else if (recorder.previous_ && recorder.previous_->halfChanged) {
        recorder.before_ = {allCategories(), recorder.previous_->wayBack};
    }
    if (!recorder.before_.categories.empty()) {
        recorder.record_.halfChanged = true;
        recorder.record_.allLoaded = recorder.previous_ && recorder.previous_->allLoaded;
        recorder.record_.wayBack = recorder.before_.wayBack;
    }
    VX_RETURN_IF_FAILED(recorder.write(recorder.record_));
    return recorder;
}

Result<void> RunRecorder::enter(RunPhase phase) {
    RunRecord next = record_;
    next.phase = phase;
    next.halfChanged = record_.halfChanged || phase == RunPhase::Restoring;
    next.allLoaded = phase == RunPhase::ReadingBack || (record_.allLoaded && phase != RunPhase::Restoring);
    if (phase == RunPhase::Restoring) {
        UnfinishedLoad load = before_.with(loaded_);
        load.wayBack = record_.wayBack;
        if (const auto kept = keepUnfinishedLoad(tree(), load); !kept) {
            return kept;
        }
    }
    auto written = write(next);
    if (!written && phase == RunPhase::Restoring) {
        static_cast<void>(keepUnfinishedLoad(tree(), before_));
    }
    return written;
}

void RunRecorder::tell(const ToldProgress& progress) {
    struct flock next = lockOf(F_WRLCK, positionOf(progress), 1);
    if (fcntl(lock_.get(), F_OFD_SETLK, &next) != 0) {
        return;
    }
    if (told_ && positionOf(*told_) != next.l_start) {
        struct flock last = lockOf(F_UNLCK, positionOf(*told_), 1);
        fcntl(lock_.get(), F_OFD_SETLK, &last);
    }
    told_ = progress;
}

Result<void> RunRecorder::end(int exitStatus, std::vector<Row> rows) {
    RunRecord next = record_;
    const bool hasLoaded = record_.phase == RunPhase::Restoring || record_.phase == RunPhase::ReadingBack;
    if (!hasLoaded) {
        return close(std::move(next), exitStatus, std::move(rows));
    }
    UnfinishedLoad left = before_.without(loaded_);
    left.wayBack = record_.wayBack;
    next.halfChanged = !left.categories.empty();
    next.allLoaded = false;
    next.wayBack = next.halfChanged && record_.wayBack;
    // The order matters: until the record says that the run has ended, the safety backup is needed.
    return close(std::move(next), exitStatus, std::move(rows)).and_then([&] {
        return keepUnfinishedLoad(tree(), left);
    });
}

Result<void> RunRecorder::breakOff(int exitStatus, std::vector<Row> rows) {
    RunRecord next = record_;
    next.brokeOffIn = record_.phase;
    return close(std::move(next), exitStatus, std::move(rows));
}

Result<void> RunRecorder::close(RunRecord record, int exitStatus, std::vector<Row> rows) {
    record.phase = RunPhase::Done;
    record.ended = secondsNow();
    record.exitStatus = exitStatus;
    record.rows = std::move(rows);
    return write(record);
}

void RunRecorder::setWayBack() {
    record_.wayBack = record_.kind == RunKind::Undo || !record_.halfChanged || record_.wayBack;
}

Result<void> RunRecorder::write(const RunRecord& record) {
    VX_RETURN_IF_FAILED(replaceSmallFile(tree(), kRecordFile, recordText(record), Flushed::ContentAndName));
    record_ = record;
    return {};
}

LookHold::LookHold(Descriptor folder, Descriptor lock, bool made)
    : folder_(std::move(folder)), lock_(std::move(lock)), made_(made) {}

LookHold::~LookHold() {
    if (lock_.valid() && made_) {
        unlinkat(folder_.get(), kLockFile, 0);
    }
}

Result<LookHold> LookHold::begin(const std::filesystem::path& folder) {
    auto opened = makeAndOpen(folder);
    VX_RETURN_IF_FAILED(opened);
    const auto before = hasEntry({opened->get(), folder.string(), Place::Television}, kLockFile);
    auto lock = takeLock(opened->get(), folder.string(), kLengthOfLook);
    VX_RETURN_IF_FAILED(lock);
    return LookHold(*std::move(opened), *std::move(lock), before && !*before);
}

bool isLookGoingOn(const std::filesystem::path& folder) {
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const Descriptor lock(opened.valid() ? openat(opened.get(), kLockFile, O_RDWR | O_NOFOLLOW | O_CLOEXEC)
                                         : -1);
    return firstHeld(lock, kMarkOfLook, 1).has_value();
}

Result<std::optional<LastRun>> readLastRun(const std::filesystem::path& folder) {
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid() && errno == ENOENT) {
        return std::optional<LastRun>();
    }
    if (!opened.valid()) {
        return tl::make_unexpected(readError(Place::Television, folder.string(), errno));
    }
    // The lock is queried before the record is read. If the run ends in between, the record says that it is
    // done.
    const Descriptor lock(openat(opened.get(), kLockFile, O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    const bool goingOn = firstHeld(lock, kHold, 1) && !firstHeld(lock, kMarkOfLook, 1);
    const auto position = firstHeld(lock, kPositions, 0);
    const Tree tree{opened.get(), folder.string(), Place::Television};
    const auto text = readSmallFile(tree, kRecordFile, kMostRecordBytes);
    VX_RETURN_IF_FAILED(text);
    if (!*text) {
        return std::optional<LastRun>();
    }
    auto record = parseRecord(**text, tree.path + "/" + kRecordFile);
    VX_RETURN_IF_FAILED(record);
    return std::optional(
        LastRun{*std::move(record), goingOn, position ? progressAt(*position) : std::nullopt});
}

std::string_view nameOf(RunKind kind) {
    return kRunKinds.at(static_cast<std::size_t>(kind));
}

std::string_view nameOf(RunPhase phase) {
    return kPhases.at(static_cast<std::size_t>(phase));
}

std::string recordText(const RunRecord& record) {
    using OrderedJson = nlohmann::ordered_json;
    OrderedJson object = {{"version", kFormatVersion},         {"kind", nameOf(record.kind)},
                          {"phase", nameOf(record.phase)},     {"package", record.package},
                          {"digest", record.digest},           {"begun", record.begun},
                          {"halfChanged", record.halfChanged}, {"allLoaded", record.allLoaded},
                          {"wayBack", record.wayBack},         {"rows", OrderedJson::array()}};
    if (record.brokeOffIn) {
        object["brokeOffIn"] = nameOf(*record.brokeOffIn);
    }
    if (!record.name.empty()) {
        object["name"] = record.name;
    }
    if (record.ended) {
        object["ended"] = *record.ended;
    }
    if (record.exitStatus) {
        object["exit"] = *record.exitStatus;
    }
    for (const Row& row : record.rows) {
        object["rows"].push_back(jsonOfRow(row));
    }
    return object.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

Result<RunRecord> parseRecord(const std::string& text, const std::string& path) {
    auto record = recordInText(text);
    if (!record) {
        return failure(ErrorCode::RecordDamaged,
                       "the record of the last run cannot be understood, so nothing is known of it; remove " +
                           vxcommon::printable(path));
    }
    return *std::move(record);
}

}  // namespace vxclone
