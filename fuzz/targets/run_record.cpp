// The record of the last run, which vxclone reads on the television.

#include "cloning_app/record/run_record.h"

#include "fuzz/target.h"

namespace vxfuzz {
namespace {

bool isSame(const vxclone::Row& one, const vxclone::Row& other) {
    return one.category == other.category && one.verdict == other.verdict && one.detail == other.detail &&
           one.subject == other.subject && one.readBack == other.readBack;
}

bool isSame(const vxclone::RunRecord& one, const vxclone::RunRecord& other) {
    return one.kind == other.kind && one.phase == other.phase && one.package == other.package &&
           one.digest == other.digest && one.begun == other.begun && one.ended == other.ended &&
           one.exitStatus == other.exitStatus && one.brokeOffIn == other.brokeOffIn &&
           one.halfChanged == other.halfChanged && one.allLoaded == other.allLoaded &&
           one.wayBack == other.wayBack &&
           std::equal(one.rows.begin(), one.rows.end(), other.rows.begin(), other.rows.end(),
                      [](const auto& row, const auto& otherRow) { return isSame(row, otherRow); });
}

void run(std::string_view bytes) {
    const auto record = vxclone::parseRecord(std::string(bytes), "run.json");
    if (!record) {
        require(record.error().code == vxclone::ErrorCode::RecordDamaged,
                "what is no record is called damaged");
        requireShowable(record.error().sentence);
        return;
    }
    const auto again = vxclone::parseRecord(vxclone::recordText(*record), "run.json");
    require(again && isSame(*again, *record), "a record is read as it was written");
    require(vxclone::timeText(record->begun).size() == sizeof "2026-11-21T05:10:50Z" - 1,
            "a time of a record can be shown");
}

const Target kRunRecord("run_record", run);

}  // namespace
}  // namespace vxfuzz
