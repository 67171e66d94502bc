// Export and import of 1,000 channels by the virtual television, together: archive, hotel list, database.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <stdexcept>

#include "virtual_tv/channels/channel_archive.h"
#include "virtual_tv/factory/creation.h"

namespace {

namespace fs = std::filesystem;

constexpr int kTransponders = 100;
constexpr int kServices = 10;

/// A television with 1,000 channels; the destructor removes it.
class Subject {
 public:
    Subject() {
        std::string name = (fs::temp_directory_path() / "channel-map.XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder for the measurement");
        }
        place_ = name;
        vxtv::Profile profile;
        profile.services["channels"] = nlohmann::json::parse(
            R"({"tables": ["dvb-t/de-Berlin"], "servicesPerTransponder": 1, "hotelList": [], "navigation": []})");
        television_.emplace(expected(vxtv::createTelevision(place_ / "tv", profile)));
        vxtv::ChannelMap map;
        for (int i = 0; i < kTransponders; ++i) {
            map.transponders.push_back({"DVBC/ANNEX_A",
                                        113'000'000 + i * 8'000'000,
                                        {{"MODULATION", "QAM/64"}, {"SYMBOL_RATE", "6900000"}}});
        }
        map.channels = vxtv::makeChannels(map.transponders, kServices);
        expected(vxtv::ChannelStore(television_->database()).replace(map, {{1, "House"}, {2, "News"}}));
    }
    ~Subject() {
        television_.reset();
        std::error_code ignored;
        fs::remove_all(place_, ignored);
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    bool exportAndImport() {
        vxtv::ChannelArchive archive{vxtv::ChannelStore(television_->database())};
        const fs::path package = place_ / "tvs-chms";
        return archive.exportMap(package) && archive.exportHotelList(package) && archive.import(package);
    }

 private:
    template <class Value>
    static Value expected(vxtv::Result<Value> result) {
        if (!result) {
            throw std::runtime_error(result.error().sentence);
        }
        if constexpr (!std::is_void_v<Value>) {
            return std::move(*result);
        }
    }

    fs::path place_;
    std::optional<vxtv::Television> television_;
};

void channelMap(benchmark::State& state) {
    Subject subject;
    for (auto step : state) {
        if (!subject.exportAndImport()) {
            state.SkipWithError("the channels did not travel");
            return;
        }
    }
}
BENCHMARK(channelMap)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
