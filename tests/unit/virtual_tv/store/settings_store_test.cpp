#include "virtual_tv/store/settings_store.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

using test::makeTelevision;

class SettingsStoreTest : public testing::Test {
 protected:
    test::TestFolder folder_;
    std::filesystem::path place_ = folder_.path() / "tv";
    Television television_ = makeTelevision(place_);
    SettingsStore settings_ = television_.settings();
};

template <class Value>
ErrorCode codeOf(const Result<Value>& result) {
    EXPECT_FALSE(result);
    return result ? ErrorCode::CannotRun : result.error().code;
}

TEST_F(SettingsStoreTest, getAfterCreateHandsOutTheProfilesValues) {
    EXPECT_EQ(12, settings_.getInt("volume").value());
    EXPECT_FALSE(settings_.getBool("dooreye").value());
    EXPECT_EQ("hello", settings_.getString("welcome").value());
}

TEST_F(SettingsStoreTest, setIsSeenByAnotherOpening) {
    ASSERT_TRUE(settings_.set("volume", -7));
    ASSERT_TRUE(settings_.setBool("dooreye", 1));
    ASSERT_TRUE(settings_.set("welcome", std::string("line\nline \xff")));
    const Result<Television> other = Television::open(place_);
    ASSERT_TRUE(other);
    EXPECT_EQ(-7, other->settings().getInt("volume").value());
    EXPECT_TRUE(other->settings().getBool("dooreye").value());
    EXPECT_EQ("line\nline \xff", other->settings().getString("welcome").value());
}

TEST_F(SettingsStoreTest, unknownKeyIsRefused) {
    EXPECT_EQ(ErrorCode::UnknownKey, codeOf(settings_.getInt("nothing")));
    EXPECT_EQ(ErrorCode::UnknownKey, codeOf(settings_.set("nothing", 1)));
    EXPECT_EQ(4U, settings_.list().value().size());
}

TEST_F(SettingsStoreTest, anotherTypeIsRefusedAndNothingChanges) {
    EXPECT_EQ(ErrorCode::WrongType, codeOf(settings_.getBool("volume")));
    EXPECT_EQ(ErrorCode::WrongType, codeOf(settings_.getInt("dooreye")));
    EXPECT_EQ(ErrorCode::WrongType, codeOf(settings_.getInt("welcome")));
    EXPECT_EQ(ErrorCode::WrongType, codeOf(settings_.set("volume", std::string("13"))));
    EXPECT_EQ(ErrorCode::WrongType, codeOf(settings_.set("dooreye", 1)));
    EXPECT_EQ(12, settings_.getInt("volume").value());
    EXPECT_FALSE(settings_.getBool("dooreye").value());
}

TEST_F(SettingsStoreTest, boolOtherThan0And1IsRefused) {
    EXPECT_EQ(ErrorCode::OutOfRange, codeOf(settings_.setBool("dooreye", 2)));
    EXPECT_EQ(ErrorCode::OutOfRange, codeOf(settings_.setBool("dooreye", -1)));
    EXPECT_FALSE(settings_.getBool("dooreye").value());
}

TEST_F(SettingsStoreTest, stringWithNulIsRefused) {
    EXPECT_EQ(ErrorCode::OutOfRange, codeOf(settings_.set("welcome", std::string("a\0b", 3))));
    EXPECT_EQ("hello", settings_.getString("welcome").value());
}

TEST_F(SettingsStoreTest, listIsOrderedByKeyAndTellsStatusKeys) {
    const auto settings = settings_.list();
    ASSERT_TRUE(settings);
    ASSERT_EQ(4U, settings->size());
    EXPECT_EQ("dooreye", settings->at(0).key);
    EXPECT_EQ("progress", settings->at(1).key);
    EXPECT_TRUE(settings->at(1).isStatus);
    EXPECT_EQ("volume", settings->at(2).key);
    EXPECT_FALSE(settings->at(2).isStatus);
    EXPECT_EQ("welcome", settings->at(3).key);
}

TEST_F(SettingsStoreTest, setFromManyThreadsLosesNothing) {
    std::vector<std::thread> threads;
    std::atomic<int> refused = 0;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, thread, &refused] {
            for (int i = 0; i < 50; ++i) {
                refused += settings_.set("volume", thread * 1000 + i) ? 0 : 1;
                refused += settings_.getInt("volume") ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0, refused);
    EXPECT_EQ(49, settings_.getInt("volume").value() % 1000);
}

TEST_F(SettingsStoreTest, setFromManyProcessesNeverFails) {
    const std::vector<std::string> keys = {"volume", "volume", "progress"};
    std::vector<pid_t> children;
    for (const std::string& key : keys) {
        children.push_back(fork());
        if (children.back() == 0) {
            bool fine = true;
            for (int i = 0; i < 60 && fine; ++i) {
                // Opened again each time, because the last process that closes it cleans up while others open
                // it.
                const Result<Television> mine = Television::open(place_);
                fine = mine && mine->settings().set(key, i) && mine->settings().getInt(key);
            }
            _exit(fine ? 0 : 1);
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(59, settings_.getInt("progress").value());
}

TEST_F(SettingsStoreTest, killInTheMiddleOfSetsLosesNothingCommitted) {
    int reports[2];
    ASSERT_EQ(0, pipe(reports));
    const pid_t child = fork();
    if (child == 0) {
        const Result<Television> mine = Television::open(place_);
        for (int i = 0; mine && mine->settings().set("volume", i); ++i) {
            if (write(reports[1], &i, sizeof i) != sizeof i) {
                break;
            }
        }
        _exit(1);
    }
    close(reports[1]);
    int committed = -1;
    for (int number = 0; number < 100; ++number) {
        ASSERT_EQ(static_cast<ssize_t>(sizeof committed), read(reports[0], &committed, sizeof committed));
    }
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status));
    while (read(reports[0], &committed, sizeof committed) == sizeof committed) {
    }
    close(reports[0]);
    // The change that was in progress during the kill may have been stored.
    const int kept = Television::open(place_).value().settings().getInt("volume").value();
    EXPECT_TRUE(kept == committed || kept == committed + 1) << kept << " after " << committed;
    SQLite::Database raw((place_ / "tv.db").string());
    EXPECT_EQ("ok", raw.execAndGet("PRAGMA integrity_check").getString());
}

TEST_F(SettingsStoreTest, useAfterForkIsRefusedInTheChild) {
    EXPECT_EQ(0,
              test::inChild([this] { return !settings_.getInt("volume") && !settings_.set("volume", 1); }));
    EXPECT_EQ(12, settings_.getInt("volume").value());
}

}  // namespace
}  // namespace vxtv
