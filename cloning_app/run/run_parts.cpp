#include "cloning_app/run/run_parts.h"

#include <fcntl.h>

#include <algorithm>
#include <system_error>

#include "cloning_app/base/descriptor.h"
#include "cloning_app/base/tree_walk.h"
#include "cloning_app/check/integrity.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/report/finding.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/own_folders.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// Whether one of the two lies in the other, or they are the same.
bool overlap(const std::filesystem::path& one, const std::filesystem::path& other) {
    const auto [oneEnd, otherEnd] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return oneEnd == one.end() || otherEnd == other.end();
}

std::filesystem::path canonicalFolder(const std::filesystem::path& path) {
    std::error_code unresolved;
    std::filesystem::path result = std::filesystem::weakly_canonical(path, unresolved);
    if (unresolved) {
        result = path.lexically_normal();
    }
    return result.filename().empty() ? result.parent_path() : result;
}

/// The folder, if it is none of the television's own.
Result<StickTarget> openForeign(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = StickTarget::open(folder, context.disk);
    if (!target) {
        return target;
    }
    const std::string path = vxcommon::printable(target->path());
    if (overlap(canonicalFolder(target->path()), canonicalFolder(context.cloneRoot))) {
        return failure(ErrorCode::BadArguments,
                       path + " is the television's own clone folder; name a folder on the stick");
    }
    if (isOwnFolder(target->parent(), target->name(), recordFolderOf(context.cloneRoot))) {
        return failure(ErrorCode::BadArguments,
                       path +
                           " lies where vxclone keeps its own data on this television; "
                           "name a folder on the stick, or go back with vxclone undo");
    }
    return target;
}

Result<StickTarget> withNotice(const CloneContext& context, StickTarget target,
                               const Result<std::optional<std::string>>& said) {
    VX_RETURN_IF_FAILED(said);
    if (*said) {
        context.view.notice(**said);
    }
    return target;
}

/// Whether the package is unaltered. One of another kind of television may be whole.
bool isWhole(const CloneContext& context, const Tree& package) {
    const auto seal = StagedPackage::sealOf(context, package);
    const auto found = seal ? examinePackage(context.engine, package, seal->tree(), context.stop)
                            : tl::make_unexpected(seal.error());
    return found && std::all_of(found->checks.begin(), found->checks.end(), [](const Check& check) {
               return problemOf(check).value_or(ErrorCode::DoesNotFit) == ErrorCode::DoesNotFit;
           });
}

/// Whether the row's category or application left something in the package.
bool hasSaved(const Tree& root, const Row& row) {
    const std::string entry = row.subject.empty() ? std::string(categoryOf(row.category).entry) : row.subject;
    return !entry.empty() && hasEntry(root, entry).value_or(false);
}

/// Whether something was saved of which the library's list does not tell: two outcomes that are appended at
/// the same moment can lose one, and so does a list that cannot be read or written once.
bool lostAnyOutcome(const Tree& root, const ResultList& results) {
    std::vector<Row> rows = tableRows(Direction::Backup, allCategories(), results.outcomes(), {});
    nameApplications(rows);
    return std::any_of(rows.begin(), rows.end(), [&root](const Row& row) {
        return row.verdict == Verdict::NotReported &&
               handlingOf(categoryOf(row.category), Direction::Backup) == Handling::Reported &&
               hasSaved(root, row);
    });
}

Result<ResultList> saveOnce(const CloneContext& context) {
    VX_RETURN_IF_FAILED(resetRunKeys(Direction::Backup));
    return runAndFollow(context, Direction::Backup, allCategories(), [&] { return context.engine.backUp(); });
}

}  // namespace

Result<StickTarget> openSource(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = openForeign(context, folder);
    if (!target) {
        return target;
    }
    const auto said = target->meanWhatWasSetAside();
    return withNotice(context, *std::move(target), said);
}

Result<StickTarget> openTarget(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = openForeign(context, folder);
    if (!target) {
        return target;
    }
    const auto said = target->recover([&context](const Tree& package) { return isWhole(context, package); });
    return withNotice(context, *std::move(target), said);
}

Result<ResultList> runAndFollow(const CloneContext& context, Direction direction,
                                const std::vector<VXClone>& list, const std::function<Result<void>()>& run) {
    Follower follower(direction, list, context.view, context.stop);
    const auto ended = run();
    ResultList results = follower.finish();
    VX_RETURN_IF_FAILED(ended);
    return results;
}

Result<ResultList> saveTelevision(const CloneContext& context) {
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    auto results = saveOnce(context);
    // The caller holds the folder's lock.
    const Descriptor root(open(context.cloneRoot.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!results || context.stop.raised() ||
        !lostAnyOutcome({root.get(), context.cloneRoot.string(), Place::Television}, *results)) {
        return results;
    }
    return saveOnce(context);
}

}  // namespace vxclone
