// Files that try to take long. Reading a file sixteen times as large must take about sixteen times as long,
// for any content, and a file larger than any package's must be refused at once.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <functional>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/record/run_record.h"
#include "common/strict_json.h"
#include "tests/hostile/stage.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kTimes = 16;
/// A quadratic reader would have sixteen. On a machine with other work the time varies by less than this.
constexpr double kMostGrowth = 5;
constexpr int kMostRounds = 30;

struct Growing {
    std::string name;
    std::string begin;
    std::function<std::string(std::size_t index)> element;
    std::string end;
};

std::string textOf(const Growing& growing, std::size_t count) {
    std::string text = growing.begin;
    for (std::size_t index = 0; index < count; ++index) {
        text += (index == 0 ? "" : ",") + growing.element(index);
    }
    return text + growing.end;
}

std::vector<Growing> growingTexts() {
    const auto number = [](std::size_t index) { return std::to_string(index); };
    return {{"members", "{", [=](std::size_t index) { return "\"k" + number(index) + "\":1"; }, "}"},
            {"objects of members", "{",
             [=](std::size_t index) { return "\"k" + number(index) + R"(":{"int":1})"; }, "}"},
            {"members in reverse", "{",
             [=](std::size_t index) { return "\"k" + number(9'999'999 - index) + R"(":{"int":1})"; }, "}"},
            {"members of one member", R"({"a":{)",
             [=](std::size_t index) { return "\"k" + number(index) + "\":[]"; }, "}}"},
            {"a list", "[", number, "]"},
            {"a list of lists", "[", [](std::size_t) { return "[[],[]]"; }, "]"},
            {"a list of objects", "[", [](std::size_t) { return R"({"path":"a","type":"file"})"; }, "]"},
            {"a text", "\"", [](std::size_t) { return "\\u0061"; }, "\""}};
}

/// Processor time of this thread, because other processes affect it less than the elapsed time.
double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double secondsOf(const std::function<void()>& work) {
    const double begin = processorSeconds();
    work();
    return processorSeconds() - begin;
}

/// Measures again if the bound is exceeded. A busy machine is slow only sometimes, but a bad reader is slow
/// every time.
void expectLinear(const std::string& name, std::size_t count,
                  const std::function<std::function<void()>(std::size_t count)>& workOn) {
    const auto small = workOn(count);
    const auto large = workOn(count * kTimes);
    double one = 1e9;
    double all = 1e9;
    for (int round = 0; round < kMostRounds && (round == 0 || all >= one * kTimes * kMostGrowth); ++round) {
        one = std::min(one, secondsOf(small));
        all = std::min(all, secondsOf(large));
    }
    EXPECT_LT(all, one * kTimes * kMostGrowth) << name << ": " << one << " s, and " << all << " s";
}

TEST(HostileTimeTest, jsonOfAnyShapeIsReadInATimeThatGrowsAsItDoes) {
    for (const Growing& growing : growingTexts()) {
        expectLinear(growing.name, isLongForm() ? 16'000 : 2'000, [&growing](std::size_t count) {
            return [text = textOf(growing, count)] { vxcommon::parseStrictly(text, {}); };
        });
    }
}

TEST(HostileTimeTest, layersOfAnyDepthAreReadInATimeThatGrowsAsTheyDo) {
    expectLinear("layers", 2'000, [](std::size_t count) {
        return
            [text = std::string(count, '[') + std::string(count, ']')] { vxcommon::parseStrictly(text, {}); };
    });
}

std::string manifestWith(std::size_t entries) {
    vxclone::Manifest manifest{{"n", "2026-03-01T12:30:00Z", "v", {"m", "p", 1}}, {}};
    for (std::size_t index = 0; index < entries; ++index) {
        manifest.entries.push_back(
            {"VXHotel/" + std::to_string(1'000'000 + index), false, 1, std::string(64, 'a')});
    }
    return vxclone::manifestBody(manifest);
}

TEST(HostileTimeTest, manifestIsReadInATimeThatGrowsAsItDoes) {
    expectLinear("manifest", 600, [](std::size_t count) {
        return [text = manifestWith(count)] { EXPECT_TRUE(vxclone::manifestIn(text)); };
    });
}

TEST(HostileTimeTest, recordOfARunIsReadInATimeThatGrowsAsItDoes) {
    const vxclone::Row row{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, vxclone::Verdict::Failed, "no answer",
                           "org.some.app"};
    expectLinear("record", 6, [&row](std::size_t count) {
        vxclone::RunRecord record;
        record.rows.assign(count, row);
        return [text = vxclone::recordText(record)] { EXPECT_TRUE(vxclone::parseRecord(text, "run.json")); };
    });
}

TEST(HostileTimeTest, recordMadeToTakeLongIsRefusedEarly) {
    std::string text = "{\"k\":1";
    for (int index = 0; index < 20'000; ++index) {
        text += ",\"k" + std::to_string(index) + "\":1";
    }
    EXPECT_LT(secondsOf([&] { EXPECT_FALSE(vxclone::parseRecord(text + "}", "run.json")); }), 1);
}

/// A package's settings file, open for reading.
class SettingsFolder {
 public:
    explicit SettingsFolder(const std::string& text) {
        writeFile(folder_.path() / "vconf/Vconf.json", text);
        opened_ = vxclone::Descriptor(open(folder_.path().c_str(), vxclone::kOpenFolder));
    }
    auto read(const vxclone::StopFlag* stop = nullptr) const {
        return vxclone::readSettings({opened_.get(), folder_.path().string(), vxclone::Place::Stick}, stop);
    }

 private:
    TemporaryDirectory folder_;
    vxclone::Descriptor opened_;
};

TEST(HostileTimeTest, settingsAreReadInATimeThatGrowsAsTheyDo) {
    expectLinear("settings", 600, [](std::size_t count) {
        const auto folder = std::make_shared<SettingsFolder>(textOf(growingTexts()[1], count));
        return [folder] { EXPECT_TRUE(folder->read()); };
    });
}

TEST(HostileTimeTest, largestFilesOfAnyShapeAreRefusedOrReadAtOnce) {
    for (const Growing& growing : growingTexts()) {
        std::string text = textOf(growing, 400'000);
        text.resize(std::min(text.size(), vxclone::kMostSettingsBytes));
        const SettingsFolder folder(text);
        EXPECT_LT(secondsOf([&] { static_cast<void>(folder.read()); }), 3) << growing.name;
    }
}

}  // namespace
}  // namespace vxtest
