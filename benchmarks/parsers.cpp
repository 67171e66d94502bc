// The time to read the files of a package and vxclone's own record, at sizes from one to sixteen. It must
// grow linearly with the size.

#include <benchmark/benchmark.h>
#include <fcntl.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/record/run_record.h"

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kTimes = 16;
// Sixteen times as many are still within the limits of the readers.
constexpr std::int64_t kSettings = 600;
constexpr std::int64_t kEntries = 600;
constexpr std::int64_t kRows = 6;

/// A package's folder with a settings file, as long as the object lives.
class SettingsPackage {
 public:
    explicit SettingsPackage(std::int64_t count) {
        std::string place = (fs::temp_directory_path() / "vx-parsers-XXXXXX").string();
        if (mkdtemp(place.data()) == nullptr) {
            throw std::runtime_error("no folder can be made");
        }
        folder_ = place;
        fs::create_directory(folder_ / "vconf");
        std::ofstream file(folder_ / "vconf/Vconf.json");
        for (std::int64_t index = 0; index < count; ++index) {
            file << (index == 0 ? "{" : ",") << "\"db/key" << index << R"(":{"int":1})";
        }
        file << "}";
        file.close();
        opened_ = vxclone::Descriptor(open(folder_.c_str(), vxclone::kOpenFolder));
    }
    SettingsPackage(const SettingsPackage&) = delete;
    SettingsPackage& operator=(const SettingsPackage&) = delete;
    ~SettingsPackage() { fs::remove_all(folder_); }

    bool read() const {
        return vxclone::readSettings({opened_.get(), folder_.string(), vxclone::Place::Stick}).has_value();
    }

 private:
    fs::path folder_;
    vxclone::Descriptor opened_;
};

template <class Read>
void reading(benchmark::State& state, Read&& read) {
    for (auto step : state) {
        if (!read()) {
            state.SkipWithError("it was not read");
            return;
        }
    }
    state.SetComplexityN(state.range(0));
}

void settings(benchmark::State& state) {
    const SettingsPackage package(state.range(0));
    reading(state, [&package] { return package.read(); });
}

void manifest(benchmark::State& state) {
    vxclone::Manifest written{{"n", "2026-03-01T12:30:00Z", "v", {"m", "p", 1}}, {}};
    for (std::int64_t index = 0; index < state.range(0); ++index) {
        written.entries.push_back(
            {"VXHotel/" + std::to_string(1'000'000 + index), false, 1, std::string(64, 'a')});
    }
    const std::string body = vxclone::manifestBody(written);
    reading(state, [&body] { return vxclone::manifestIn(body).has_value(); });
}

void record(benchmark::State& state) {
    vxclone::RunRecord written;
    written.rows.assign(
        static_cast<std::size_t>(state.range(0)),
        {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, vxclone::Verdict::Failed, "no answer", "org.some.app"});
    const std::string text = vxclone::recordText(written);
    reading(state, [&text] { return vxclone::parseRecord(text, "run.json").has_value(); });
}

BENCHMARK(settings)->RangeMultiplier(2)->Range(kSettings, kSettings* kTimes)->Complexity(benchmark::oN);
BENCHMARK(manifest)->RangeMultiplier(2)->Range(kEntries, kEntries* kTimes)->Complexity(benchmark::oN);
BENCHMARK(record)->RangeMultiplier(2)->Range(kRows, kRows* kTimes)->Complexity(benchmark::oN);

}  // namespace

BENCHMARK_MAIN();
