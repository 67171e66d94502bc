// The cost of one log line without the logger: time, and allocations, of which there should be none.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstddef>
#include <memory>

#include "VXCloneLog.h"

namespace {
std::atomic<long> allocations{0};
}  // namespace

// Replaces the C library's functions, so that only the count is added. `new` calls them as well.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* old, std::size_t size);

void* malloc(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}
void* realloc(void* old, std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(old, size);
}
}

namespace {

// A thread's first line may allocate. The counted lines come after the measured ones.
template <class Line>
void measure(benchmark::State& state, Line line) {
    for (auto _ : state) {
        line();
    }
    const long before = allocations.load();
    for (int k = 0; k < 1000; ++k) {
        line();
    }
    state.counters["allocations"] = static_cast<double>(allocations.load() - before);
}

void plainLine(benchmark::State& state) {
    measure(state, [] { VX_LOG(Error, "text"); });
}
BENCHMARK(plainLine);

void lineWithArgument(benchmark::State& state) {
    measure(state, [] { VX_LOGF(Error, "text %d", 1); });
}
BENCHMARK(lineWithArgument);

// A check of the counter: the result must be a thousand.
void countedAllocation(benchmark::State& state) {
    measure(state, [] { benchmark::DoNotOptimize(std::make_unique<long>(1)); });
}
BENCHMARK(countedAllocation)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
