#include "cloning_app/record/run_remains.h"

#include <fmt/format.h>

#include <array>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// The state after an interrupted run, and the next step: with a safety backup from before the load, without
/// one, and after an undo.
struct RemainsFact {
    Remains remains;
    std::string_view name;
    std::string_view what;
    std::string_view next;
    std::string_view nextWithoutWayBack;
    std::string_view nextAfterUndo;
};

constexpr std::string_view kStartAgain = "start again when ready";

constexpr std::array kRemains = {
    RemainsFact{Remains::Nothing, "unchanged", "nothing was changed", kStartAgain, kStartAgain, kStartAgain},
    RemainsFact{Remains::OldOrNew, "old-or-new", "the stick holds the old package or the new one, whole",
                "back up again", "back up again", ""},
    RemainsFact{Remains::HalfChanged, "half-changed",
                "the load had begun, so the television may be half changed",
                "restore again, or go back with vxclone undo", "restore again", "run vxclone undo again"},
    RemainsFact{Remains::NotReadBack, "not-read-back", "everything was loaded, only the read-back is missing",
                "restore again to have it compared, or go back with vxclone undo",
                "restore again to have it compared", "run vxclone undo again to have it compared"},
};
static_assert(kRemains.size() == static_cast<std::size_t>(Remains::NotReadBack) + 1);

const RemainsFact& remainsFactOf(Remains remains) {
    return kRemains.at(static_cast<std::size_t>(remains));
}

bool hasDied(const RunRecord& record) {
    return record.phase != RunPhase::Done;
}

bool wasStopped(const RunRecord& record) {
    return record.brokeOffIn && record.exitStatus == exitStatusOf(ErrorCode::Interrupted);
}

RunPhase lastPhaseOf(const RunRecord& record) {
    return record.brokeOffIn.value_or(record.phase);
}

/// If a category failed, not everything was loaded.
std::string whatOf(Remains remains, const std::vector<Row>& rows) {
    const std::string failed = remains == Remains::NotReadBack ? failedNames(rows) : "";
    return failed.empty()
               ? std::string(remainsFactOf(remains).what)
               : fmt::format("the load had ended (failed: {}), only the read-back is missing", failed);
}

}  // namespace

std::string_view nameOf(Remains remains) {
    return remainsFactOf(remains).name;
}

std::optional<Remains> remainsOf(const RunRecord& record) {
    switch (lastPhaseOf(record)) {
        case RunPhase::Done:
            return std::nullopt;
        case RunPhase::Restoring:
            return Remains::HalfChanged;
        case RunPhase::ReadingBack:
            return Remains::NotReadBack;
        case RunPhase::Writing:
            if (hasDied(record)) {
                return Remains::OldOrNew;
            }
            break;
        default:
            break;
    }
    return hasDied(record) || wasStopped(record) ? std::optional(Remains::Nothing) : std::nullopt;
}

std::string consequenceOf(const RunRecord& record) {
    const Remains remains = remainsOf(record).value_or(Remains::Nothing);
    const RemainsFact& fact = remainsFactOf(remains);
    const std::string_view next = record.kind == RunKind::Undo ? fact.nextAfterUndo
                                  : record.wayBack             ? fact.next
                                                               : fact.nextWithoutWayBack;
    return fmt::format("{}; {}", whatOf(remains, record.rows), next);
}

std::string consequenceOfLooking() {
    const RemainsFact& fact = remainsFactOf(Remains::Nothing);
    return fmt::format("{}; {}", fact.what, fact.next);
}

std::optional<std::string> sentenceAboutEarlier(const RunRecord& record) {
    const RunPhase last = lastPhaseOf(record);
    if (!record.halfChanged || last == RunPhase::Restoring || last == RunPhase::ReadingBack) {
        return std::nullopt;
    }
    const RemainsFact& fact = remainsFactOf(record.allLoaded ? Remains::NotReadBack : Remains::HalfChanged);
    return fmt::format("A restore or undo before it broke off: {}; {}.", fact.what,
                       record.wayBack ? fact.next : fact.nextWithoutWayBack);
}

std::string describe(const RunRecord& record) {
    std::string text(nameOf(record.kind));
    if (!record.package.empty()) {
        text += record.kind == RunKind::Backup ? " to " : " from ";
        text += vxcommon::printable(record.package);
    }
    return text + ", begun " + timeText(record.begun);
}

std::vector<std::string> sentencesForTheNextStart(const RunRecord& record) {
    std::vector<std::string> sentences;
    if (remainsOf(record)) {
        sentences.push_back(fmt::format("The {}, {} in phase {}: {}.", describe(record),
                                        wasStopped(record) ? "was stopped" : "broke off",
                                        nameOf(lastPhaseOf(record)), consequenceOf(record)));
    }
    if (auto earlier = sentenceAboutEarlier(record)) {
        sentences.push_back(*std::move(earlier));
    }
    return sentences;
}

}  // namespace vxclone
