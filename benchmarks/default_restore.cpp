// The library's own processor time in a restore of every category.

#include <benchmark/benchmark.h>

#include <vector>

#include "vx_clone_api.h"

namespace {

void defaultRestore(benchmark::State& state) {
    for (auto _ : state) {
        const std::vector<VXClone> everything;
        if (VXCloneAPI::RestoreCloneData(everything) != 1) {
            state.SkipWithError("the restore was refused");
            return;
        }
    }
}
BENCHMARK(defaultRestore)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
