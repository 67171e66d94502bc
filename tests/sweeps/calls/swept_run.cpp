#include "swept_run.h"

#include <iterator>
#include <sstream>
#include <thread>
#include <utility>

#include "VxMessagePortAPI.h"
#include "tests/sweeps/calls/run_deadline.h"
#include "tests/unit/expected_settings.h"

namespace vxtest {

namespace {

constexpr int kOwn = 1;
constexpr int kPacked = 2;
constexpr const char* kSnapshot = "vconf/Vconf.json";

std::size_t entriesOf(const char* directory) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), {}));
}

std::size_t tasks() {
    return entriesOf("/proc/self/task");
}

/// Counted by a thread that is not counted itself, because the thread sanitizer starts a thread of its own
/// with the first one of a process.
std::size_t tasksBesideThisCount() {
    std::size_t count = 0;
    std::thread([&count] { count = tasks() - 1; }).join();
    return count;
}

/// Waits until there are no more threads than at the beginning. The deadline of the point limits this.
void awaitTasks(std::size_t count) {
    while (tasks() > count) {
        std::this_thread::yield();
    }
}

Json::Value packed(const SettingKey& row) {
    const std::string key = row.key;
    Json::Value value;
    if (row.type == SettingType::Int) {
        value["int"] = key == kNtpModeKey ? 0 : kPacked;
    } else if (row.type == SettingType::String) {
        value["string"] = "packed";
    } else {
        value["bool"] = 0;
    }
    return value;
}

Setting own(const SettingKey& row) {
    switch (row.type) {
        case SettingType::Int:
            return kOwn;
        case SettingType::Bool:
            return BoolSetting{kOwn};
        case SettingType::String:
            return std::string("own");
    }
    return {};
}

/// The setting in the form of the snapshot.
Json::Value written(const Setting& setting) {
    Json::Value value;
    if (const int* const number = std::get_if<int>(&setting)) {
        value["int"] = *number;
    } else if (const BoolSetting* const flag = std::get_if<BoolSetting>(&setting)) {
        value["bool"] = flag->value;
    } else {
        value["string"] = std::get<std::string>(setting);
    }
    return value;
}

}  // namespace

SweptRun::SweptRun(Direction direction)
    : direction_(direction), verdict_(direction, "stale"), tasksBefore_(tasksBesideThisCount()) {
    VxMessagePortAPI::waiting_ = false;
    tv.setDirectories(kBootLogo, kMbrLogo, kHomeMenu);
    tv.setSetting("db/first_screen/type", std::string("org.harbour.firstscreen"));
    tv.replyToSends(std::map<std::string, std::string>{{"response_clone", "success"}});
    tv.setSources({{1, {"STB", 32, 0}}});
    tv.setNavigation({{10, 7, {}, 0, 0}});
    for (const SettingKey& row : kExpectedSettings) {
        tv.setSetting(row.key, own(row));
    }
    writeFile(work("home/menu.xml"), "menu");
    if (direction == Direction::Restore) {
        preparePackage();
    }
}

SweptRun::~SweptRun() {
    tv.reset();
}

void SweptRun::preparePackage() const {
    Json::Value document;
    for (const SettingKey& row : kExpectedSettings) {
        document[row.key] = packed(row);
    }
    writeFile(clone(kSnapshot), Json::writeString(Json::StreamWriterBuilder(), document));
    writeFile(clone("tvs-chms/tvs-chms.zip"), "map");
    writeFile(clone("logo/logo.jpg"), "logo");
    writeFile(clone("VXHotel/menu.xml"), "menu");
    writeFile(clone("VXMBRLogo/stb_source_icon.jpg"), "source");
    writeFile(clone("VXMBRLogo/stb_app_icon.png"), "app");
}

void SweptRun::setFromOutside(const std::string& key, Setting value) {
    setFromOutside_.insert(key);
    tv.setSetting(key, std::move(value));
}

std::optional<int> SweptRun::judge(const std::string& name, const std::string& arguments,
                                   const Tamper& tamper) {
    if (name == "factory_clone_tv_to_usb" || name == "factory_clone_usb_to_tv") {
        awaitTasks(tasksBefore_);
    }
    const std::lock_guard lock(mutex_);
    calls_.push_back({calls_.size(), name, arguments});
    const std::optional<int> status = tamper(*this, calls_.back());
    verdict_.called(name, arguments, status);
    return status;
}

void SweptRun::run(const std::string& point, Tamper tamper) {
    SCOPED_TRACE(point);
    const RunDeadline deadline(point);
    const std::size_t descriptors = entriesOf("/proc/self/fd");
    tv.onEveryCall([this, tamper = std::move(tamper)](const std::string& name, const std::string& arguments) {
        return judge(name, arguments, tamper);
    });
    std::vector<VXClone> all;
    for (int value = VXCLONE_FACTORY_SETTINGS; value <= VXCLONE_NTP_SETTINGS_DATA; ++value) {
        all.push_back(static_cast<VXClone>(value));
    }
    EXPECT_EQ(direction_ == Direction::Backup ? engine.BackupCloneData() : engine.RestoreCloneData(all), 1);
    awaitTasks(tasksBefore_);
    tv.onEveryCall({});

    EXPECT_THAT(verdict_.unknown(), testing::IsEmpty());
    EXPECT_EQ(results(), verdict_.results());
    EXPECT_EQ(std::get<int>(tv.setting(kCloneProgressKey)), verdict_.progress());
    EXPECT_EQ(tv.bundlesHeld(), 0);
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
    direction_ == Direction::Backup ? expectSnapshot() : expectRestored();
}

/// Expects that the snapshot holds exactly the settings that could be read, with the television's values. A
/// setting that was read without a value is 0.
void SweptRun::expectSnapshot() const {
    Json::Value expected(Json::objectValue);
    for (const SettingKey& row : kExpectedSettings) {
        if (verdict_.lostSettings().count(row.key) == 0) {
            const bool isEmpty = verdict_.emptySettings().count(row.key) != 0;
            const Setting zero = row.type == SettingType::Int ? Setting(0) : Setting(BoolSetting{0});
            expected[row.key] = written(isEmpty ? zero : tv.setting(row.key));
        }
    }
    const std::string text = readFile(clone(kSnapshot));
    Json::Value document;
    std::istringstream stream(text);
    EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), stream, &document, nullptr)) << text;
    EXPECT_EQ(document.isNull() ? Json::Value(Json::objectValue) : document, expected);
}

/// Expects that every setting that could be written has the package's value, and the others are unchanged.
void SweptRun::expectRestored() const {
    for (const SettingKey& row : kExpectedSettings) {
        if (setFromOutside_.count(row.key) == 0) {
            const bool lost = verdict_.lostSettings().count(row.key) != 0;
            EXPECT_EQ(written(tv.setting(row.key)), lost ? written(own(row)) : packed(row)) << row.key;
        }
    }
}

}  // namespace vxtest

/// The disk does not matter here, and sync is slow.
extern "C" void __wrap_sync() {}
