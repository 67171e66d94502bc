// Files that are exchanged between check and use: another process renames continuously during a restore.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <atomic>
#include <iostream>
#include <thread>

#include "tests/hostile/damage.h"
#include "tests/hostile/stage.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

/// Exchanges two entries of the stick during its whole life.
class Swapper {
 public:
    Swapper(fs::path one, fs::path other)
        : one_(std::move(one)), other_(std::move(other)), thread_([this] { work(); }) {
        while (swaps_ == 0 && !failed_) {
            std::this_thread::yield();
        }
    }
    Swapper(const Swapper&) = delete;
    Swapper& operator=(const Swapper&) = delete;
    ~Swapper() { end(); }

    /// Result: the number of exchanges.
    std::size_t end() {
        ended_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
        return failed_ ? 0 : swaps_.load();
    }

 private:
    void work() {
        while (!ended_ && !failed_) {
            failed_ = renameat2(AT_FDCWD, one_.c_str(), AT_FDCWD, other_.c_str(), RENAME_EXCHANGE) != 0;
            ++swaps_;
            std::this_thread::yield();
        }
    }

    fs::path one_;
    fs::path other_;
    std::atomic<std::size_t> swaps_{0};
    std::atomic<bool> ended_{false};
    std::atomic<bool> failed_{false};
    std::thread thread_;
};

/// Two entries to exchange: an entry of the package, or the whole package, and an evil twin.
struct Pair {
    std::string entry;
    std::string twin;
};

const std::vector<Pair>& pairs() {
    static const std::vector<Pair> all = {{"clone", "evil"},
                                          {"clone/vconf/Vconf.json", "evil/vconf/Vconf.json"},
                                          {"clone/logo", "evil/logo-link"},
                                          {"clone/tvs-chms/tvs-chms.zip", "evil/link"},
                                          {"clone/vconf", "evil/vconf"}};
    return all;
}

/// Puts a package with forged settings, and links, beside the good package.
void layTwins() {
    const Stage& stage = Stage::instance();
    stage.layPackage();
    const fs::path evil = stage.stick() / "evil";
    fs::copy(stage.good(), evil, fs::copy_options::recursive);
    fs::copy(stage.other() / "vconf/Vconf.json", evil / "vconf/Vconf.json",
             fs::copy_options::overwrite_existing);
    fs::create_symlink("../clone/vconf/Vconf.json", evil / "link");
    fs::create_directory_symlink("../clone/VXHotel", evil / "logo-link");
}

struct Tally {
    std::size_t restored = 0;
    std::size_t refused = 0;
    std::size_t swaps = 0;
};

/// The factor for further runs if by chance every package so far was accepted, or every one refused.
constexpr std::size_t kPatience = 20;

/// Whether another run is needed, because chance decides which of two packages a run meets.
bool goesOn(std::size_t run, std::size_t wanted, const Tally& tally) {
    const bool bothSeen = tally.restored > 0 && tally.refused > 0;
    return run < wanted || (!bothSeen && run < kPatience * wanted);
}

void say(const Tally& tally) {
    std::cout << "hostile: " << tally.restored << " good packages let in, " << tally.refused
              << " refused, over " << tally.swaps << " exchanges\n";
}

TEST(HostileExchangeTest, packageThatChangesUnderTheCheckIsRefusedOrTheGoodOne) {
    Stage& stage = Stage::instance();
    const std::size_t runs = isLongForm() ? 5000 : 30;
    Tally tally;
    for (std::size_t run = 0; goesOn(run, runs, tally); ++run) {
        const Pair& pair = pairs().at(run % pairs().size());
        SCOPED_TRACE(pair.entry);
        layTwins();
        const FileTree before = stage.here().state();
        Swapper swapper(stage.stick() / pair.entry, stage.stick() / pair.twin);
        const Outcome outcome = stage.restoreHere({}, true);
        const std::size_t swaps = swapper.end();
        EXPECT_GT(swaps, 0U);
        tally.swaps += swaps;
        ++(outcome.status == 0 ? tally.restored : tally.refused);
        EXPECT_EQ(outcome.status == 0 ? outcome.digest : stage.goodDigest(), stage.goodDigest());
        EXPECT_EQ(outcome.status == 0, outcome.code.empty()) << outcome.message;
        EXPECT_EQ(stage.here().state(), before);
    }
    say(tally);
    EXPECT_GT(tally.restored, 0U);
    EXPECT_GT(tally.refused, 0U);
    EXPECT_GT(tally.swaps, runs);
}

TEST(HostileExchangeTest, restoreOfAPackageThatChangesLoadsTheGoodOneOrNothing) {
    Stage& stage = Stage::instance();
    const std::string television = stage.there().folder().string();
    const auto welcome = [&] { return stage.vxtv({"get", television, kWelcome}).output; };
    const std::string good = stage.vxtv({"get", stage.source().string(), kWelcome}).output;
    const std::size_t runs = isLongForm() ? 500 : 4;
    Tally tally;
    for (std::size_t run = 0; goesOn(run, runs, tally); ++run) {
        // Every other run exchanges whole packages, because only then the good one can be met completely.
        const Pair& pair = pairs().at(run % 2 == 0 ? 0 : run / 2 % pairs().size());
        SCOPED_TRACE(pair.entry);
        layTwins();
        ASSERT_EQ(stage.vxtv({"set", television, kWelcome, "before"}).status, 0);
        Swapper swapper(stage.stick() / pair.entry, stage.stick() / pair.twin);
        const Outcome outcome = stage.restoreThere(
            {"--only", "settings-keys,boot-logo,channels", "--no-safety", "--no-read-back"});
        tally.swaps += swapper.end();
        ++(outcome.status == 0 ? tally.restored : tally.refused);
        EXPECT_EQ(welcome(), outcome.status == 0 ? good : "before\n") << outcome.message;
        if (outcome.status == 0) {
            EXPECT_EQ(outcome.digest, stage.goodDigest());
            EXPECT_EQ(readFile(stage.there().folder() / "opt/usr/data/hotel/bootlogo/logo.png"),
                      readFile(stage.good() / "logo/logo.png"));
        }
    }
    say(tally);
    EXPECT_GT(tally.swaps, runs);
    EXPECT_GT(tally.restored, 0U);
    EXPECT_GT(tally.refused, 0U);
}

}  // namespace
}  // namespace vxtest
