#include "cloning_app/run/package_completion.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/compared_state.h"
#include "cloning_app/check/sealing.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/television/foreign_text.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

bool isTooLarge(const Tree& root) {
    struct stat facts {};
    return fstatat(root.descriptor, kSettingsFile.data(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           static_cast<std::uintmax_t>(facts.st_size) > kMostSettingsBytes;
}

Error tooLargeSettings() {
    const LongText longest = longestText();
    return {ErrorCode::SettingsNotSaved,
            fmt::format("the settings of this television are larger than 16 MiB, which no package holds: {} "
                        "alone has {}; make it shorter and back up again",
                        longest.key, sizeText(longest.bytes))};
}

/// What the backup holds of the settings.
struct SavedSettings {
    std::size_t count;
    std::vector<std::string> foreign;  ///< the keys of the texts that were taken out
};

/// The library says nothing of the settings file, and writes an empty one on a full disk. A text that is not
/// what the television holds is taken out: it is no content to restore.
Result<SavedSettings> judgeSettingsFile(const Tree& root) {
    const auto settings = readSettings(root);
    if (settings && *settings) {
        SavedSettings saved{(*settings)->size(), textsThatCannotTravel(**settings)};
        saved.count -= saved.foreign.size();
        const auto out = saved.foreign.empty() ? Result<void>() : takeOutSettings(root, saved.foreign);
        return out ? Result<SavedSettings>(std::move(saved)) : tl::make_unexpected(out.error());
    }
    if (isTooLarge(root)) {
        return tl::make_unexpected(tooLargeSettings());
    }
    return failure(
        ErrorCode::SettingsNotSaved,
        fmt::format("the backup left no good {}: the television's disk may be full; free some space on "
                    "it and back up again",
                    kSettingsFile));
}

void fail(std::vector<Row>& rows, VXClone category, const std::string& why) {
    for (Row& row : rows) {
        if (row.category == category) {
            row.verdict = Verdict::Failed;
            addDetail(row, why);
        }
    }
}

/// The library copies the home menu and says that it went well, whatever the disk answered. A file that did
/// not arrive whole is taken out: half of it is no content to restore.
void judgeHomeMenu(const Tree& root, std::vector<Row>& rows, std::vector<Lack>& lacks) {
    const auto missing = homeMenuFilesNotIn(root);
    if (!missing) {
        fail(rows, VXCLONE_VXHOTEL_HOMEAPP_DATA, missing.error().sentence);
        return;
    }
    for (const std::string& path : *missing) {
        if (unlinkat(root.descriptor, path.c_str(), 0) == 0 || meansAbsent(errno)) {
            lacks.push_back({VXCLONE_VXHOTEL_HOMEAPP_DATA, path});
        } else {
            fail(rows, VXCLONE_VXHOTEL_HOMEAPP_DATA,
                 writeError(root.place, root.path + "/" + path, errno).sentence);
        }
    }
}

/// Names what the library leaves out of the home menu without a word.
void sayLeftOut(std::vector<Row>& rows) {
    const auto folders = homeMenuFoldersLeftOut();
    if (!folders) {
        fail(rows, VXCLONE_VXHOTEL_HOMEAPP_DATA, folders.error().sentence);
        return;
    }
    std::string names;
    for (const std::string& name : *folders) {
        names += (names.empty() ? "" : ", ") + vxcommon::printable(name).text();
    }
    for (Row& row : rows) {
        if (row.category == VXCLONE_VXHOTEL_HOMEAPP_DATA && !names.empty()) {
            addDetail(row,
                      (folders->size() == 1 ? "not carried, a folder: " : "not carried, folders: ") + names);
        }
    }
}

bool tellsOf(const Row& row, const Lack& lack) {
    return row.category == lack.category &&
           (row.subject.empty() || lack.what.empty() || row.subject == lack.what);
}

std::string namesOf(const std::vector<Lack>& lacks) {
    std::string names;
    for (const Lack& lack : lacks) {
        names += (names.empty() ? "" : ", ") + vxcommon::printable(lack.what).text();
    }
    return names;
}

/// Says in the row what its category lacks; `lacks` are of this row and either all declared or none is.
void sayLacks(Row& row, const std::vector<Lack>& lacks) {
    const bool declared = lacks.front().declared;
    const bool partly = !lacks.front().what.empty() && row.subject.empty();
    if (!declared) {
        row.verdict = Verdict::Failed;
        addDetail(row, partly ? "not saved: " + namesOf(lacks) : std::string("the television saved none"));
    } else if (partly) {
        addDetail(row, "declared as not there: " + namesOf(lacks));
    } else {
        row.verdict = Verdict::NotThere;
        row.detail = "declared";
    }
}

/// Adds to the rows what is lacking: what the library reported does not count against that.
void judgeCompleteness(std::vector<Row>& rows, const std::vector<Lack>& lacks) {
    for (Row& row : rows) {
        for (const bool declared : {true, false}) {
            std::vector<Lack> own;
            std::copy_if(lacks.begin(), lacks.end(), std::back_inserter(own),
                         [&](const Lack& lack) { return lack.declared == declared && tellsOf(row, lack); });
            if (!own.empty()) {
                sayLacks(row, own);
            }
        }
    }
}

/// An application that left data in the package ran, whether the library reported it or not.
void judgeApplications(const Tree& root, std::vector<Row>& rows) {
    const auto hasSaved = [&root](const Row& row) {
        return !row.subject.empty() && hasEntry(root, row.subject).value_or(false);
    };
    if (!lostAnOutcome(rows, hasSaved)) {
        return;
    }
    for (Row& row : rows) {
        if (hasSaved(row)) {
            sayThatItRuns(row);
        }
        if (row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            doubt(row);
        }
    }
}

void sayForeignTexts(std::vector<Row>& rows, const std::vector<std::string>& keys) {
    for (Row& row : rows) {
        if (row.category == VXCLONE_VCONF_DATA && !keys.empty()) {
            addDetail(row, fmt::format("cannot be carried, because it is not UTF-8 text: {}",
                                       fmt::join(keys, ", ")));
        }
    }
}

/// What was saved, and what is lacking.
struct Judgement {
    std::vector<Row> rows;  ///< of all categories
    std::vector<Lack> lacks;
    std::vector<std::string> foreignTexts;
};

/// Looks at what the library left, before anything is made of it.
Result<Judgement> judgeBackup(const CloneContext& context, const Tree& root, const ResultList& results,
                              const Means& means) {
    auto settings = judgeSettingsFile(root);
    VX_RETURN_IF_FAILED(settings);
    std::vector<Row> own = saveLogos(root, context.stop);
    own.push_back({VXCLONE_VCONF_DATA, Verdict::Done, "saved, " + countText(settings->count, "setting")});
    Judgement made{tableRows(Direction::Backup, allCategories(), results.outcomes(), own),
                   {},
                   std::move(settings->foreign)};
    nameApplications(made.rows);
    judgeApplications(root, made.rows);
    const auto holdings = Holdings::of(root);
    VX_RETURN_IF_FAILED(holdings);
    made.lacks = lacksOf(*holdings, applicationsOf(made.rows));
    judgeHomeMenu(root, made.rows, made.lacks);
    sayLeftOut(made.rows);
    for (Lack& lack : made.lacks) {
        lack.declared = means.mayLack(lack);
    }
    judgeCompleteness(made.rows, made.lacks);
    sayForeignTexts(made.rows, made.foreignTexts);
    for (const Row& row : made.rows) {
        if (handlingOf(categoryOf(row.category), Direction::Backup) == Handling::Added ||
            row.category == VXCLONE_VCONF_DATA) {
            context.view.category(row);
        }
    }
    return made;
}

}  // namespace

Result<Means> readyToSeal(CloneEngine& engine, const std::string& name) {
    auto key = requireKeys(engine);
    VX_RETURN_IF_FAILED(key);
    auto origin = originOfBackup(name);
    VX_RETURN_IF_FAILED(origin);
    Means means{std::move(*key), std::move(*origin)};
    return means;
}

Result<Report> completePackage(const CloneContext& context, const Tree& root, const ResultList& results,
                               const Means& means) {
    context.view.progress({ShownPhase::Sealing});
    const auto made = judgeBackup(context, root, results, means);
    VX_RETURN_IF_FAILED(made);
    PackageOrigin origin = means.origin;
    origin.results = resultsOf(made->rows);
    origin.lacks = manifestLacksOf(made->lacks);
    const auto sealed = sealPackage(context.engine, root, origin, means.key);
    VX_RETURN_IF_FAILED(sealed);
    return Report{.rows = made->rows,
                  .exitStatus = exitStatusFor(made->rows, results),
                  .closing = unknownLineSentences(results),
                  .checks = sealed->checks,
                  .digest = sealed->digest,
                  .lacks = made->lacks,
                  .foreignTexts = made->foreignTexts};
}

}  // namespace vxclone
