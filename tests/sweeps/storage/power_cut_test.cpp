// A power cut, or pulling the stick, after every step of a backup. For every possible loss of data that was
// not flushed, the stick holds the old package or the new one.

#include <random>
#include <set>

#include "cloning_app/storage/stick_target.h"
#include "tests/sweeps/storage/journal.h"
#include "tests/sweeps/storage/small_disk.h"
#include "tests/sweeps/storage/storage_test.h"

namespace vxtest {
namespace {

using Kind = DiskModel::Kind;
using Lines = std::vector<JournalLine>;

/// The possible states after a power cut, each once.
class States {
 public:
    void add(FileTree state) {
        std::string all;
        for (const auto& [path, content] : state) {
            all += path + '\0' + std::to_string(content.size()) + '\0' + content;
        }
        if (seen_.insert(std::hash<std::string>()(all)).second) {
            judge(state);
        }
    }
    std::function<void(const FileTree&)> judge;
    std::size_t count() const { return seen_.size(); }

 private:
    std::set<std::size_t> seen_;
};

/// A power cut after each step, with these losses: everything that is not safe, nothing, only data, only
/// entries, and `choices` random ones.
void cutEverywhere(DiskModel model, const Lines& lines, int choices, States& states) {
    std::minstd_rand random(20260301);
    std::bernoulli_distribution coin;
    for (const JournalLine& line : lines) {
        apply(line, model);
        states.add(model.after([](Kind) { return true; }));
        states.add(model.after([](Kind) { return false; }));
        states.add(model.after([](Kind kind) { return kind == Kind::Entry; }));
        states.add(model.after([](Kind kind) { return kind == Kind::Data; }));
        for (int choice = 0; model.unsure() > 1 && choice < choices; ++choice) {
            states.add(model.after([&](Kind) { return coin(random); }));
        }
    }
}

Lines withoutFlushes(Lines lines) {
    std::erase_if(lines, [](const JournalLine& line) { return line.word.rfind("flush", 0) == 0; });
    return lines;
}

class PowerCutTest : public StorageTest {
 protected:
    /// Records the changes of a backup of the television on the stick. The journal must contain all of them.
    Lines journalOf(const std::string& television, bool canExchange = true) {
        before = DiskModel::of(stick);
        const FileTree old = package();
        Variables variables = journalling();
        if (!canExchange) {
            variables["VX_JOURNAL_NO_EXCHANGE"] = "yes";
        }
        const Finished backup = vxclone(television, {"backup", kPackage}, variables);
        EXPECT_EQ(backup.status, 0) << backup.output << backup.errors;
        const Lines lines = readJournal(std::filesystem::path(television) / "tmp/journal");
        DiskModel model = before;
        for (const JournalLine& line : lines) {
            apply(line, model);
        }
        EXPECT_EQ(model.after([](Kind) { return false; }), onStick()) << "the journal is not the backup's";
        whole = {old, package()};
        EXPECT_NE(old, package());
        return lines;
    }

    /// Checks every state. Result: the number of states in which the stick holds neither package completely.
    int broken(const Lines& lines, SweepPoints& points, bool oldMayBeAside = false) {
        int count = 0;
        States states;
        states.judge = [&](const FileTree& state) {
            points.tried();
            const bool asPromised = oldMayBeAside || whole.count(below(state, "clone")) != 0;
            count += asPromised && nextStartFinds(state) ? 0 : 1;
        };
        cutEverywhere(before, lines, isLongForm() ? 100 : 1, states);
        return count;
    }

    /// Whether the next command finds the old package or the new one and removes everything else.
    bool nextStartFinds(const FileTree& state) const {
        TemporaryDirectory afterwards;
        for (const auto& [path, content] : state) {
            if (path.back() == '/') {
                std::filesystem::create_directories(afterwards / path);
            } else {
                writeFile(afterwards / path, content);
            }
        }
        auto target = vxclone::StickTarget::open(afterwards / "clone");
        const auto isWhole = [&](const vxclone::Tree&) {
            return whole.count(below(snapshot(afterwards.path()), "clone")) != 0;
        };
        if (!target || !target->recover(isWhole)) {
            return false;
        }
        FileTree found = snapshot(afterwards.path());
        const FileTree package = below(found, "clone");
        std::erase_if(found, [](const auto& entry) { return entry.first.rfind("clone/", 0) == 0; });
        return found.empty() && whole.count(package) != 0;
    }

    SmallDisk disk{stick, "size=64m"};
    DiskModel before{0};
    std::set<FileTree> whole;
};

TEST_F(PowerCutTest, ofTheFirstBackupLeavesNoneOrTheNewPackage) {
    SweepPoints points("power-cut, first backup");
    EXPECT_EQ(broken(journalOf(first), points), 0);
    EXPECT_EQ(vxclone(first, {"verify", kPackage}).status, 0);
}

TEST_F(PowerCutTest, ofALaterBackupLeavesTheOldOrTheNewPackage) {
    backUp(first);
    SweepPoints points("power-cut, later backup");
    EXPECT_EQ(broken(journalOf(second), points), 0);
    EXPECT_EQ(vxclone(second, {"verify", kPackage}).status, 0);
}

TEST_F(PowerCutTest, onAStickThatCannotExchangeLeavesTheOldOrTheNewPackage) {
    backUp(first);
    SweepPoints points("power-cut, backup in two steps");
    EXPECT_EQ(broken(journalOf(second, false), points, true), 0);
    EXPECT_EQ(vxclone(second, {"verify", kPackage}).status, 0);
}

TEST_F(PowerCutTest, withoutTheFlushesWouldLeaveABrokenPackage) {
    backUp(first);
    SweepPoints points("power-cut, nothing flushed");
    EXPECT_GT(broken(withoutFlushes(journalOf(second)), points), 0);
}

}  // namespace
}  // namespace vxtest
