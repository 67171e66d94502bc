// The file hash against the plain loop over the bytes, both compiled with the same flags.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <stdexcept>
#include <vector>

#include "VXCloneFileHash.h"

namespace {

constexpr std::size_t kBytes = std::size_t{256} * 1024;

std::uint32_t plainLoop(std::uint32_t hash, const unsigned char* bytes, std::size_t count) {
    for (std::size_t at = 0; at < count; ++at) {
        hash = hash * 3 + static_cast<std::uint32_t>(static_cast<signed char>(bytes[at]));
    }
    return hash;
}

std::vector<unsigned char> someBytes() {
    std::mt19937 generator(1);
    std::uniform_int_distribution<unsigned> byte(0, 255);
    std::vector<unsigned char> bytes(kBytes);
    for (unsigned char& each : bytes) {
        each = static_cast<unsigned char>(byte(generator));
    }
    if (plainLoop(0, bytes.data(), kBytes) != VXCloneFileHash(0, bytes.data(), kBytes)) {
        throw std::logic_error("the two hashes differ");
    }
    return bytes;
}

template <auto Hash>
void hashing(benchmark::State& state) {
    const std::vector<unsigned char> bytes = someBytes();
    for (auto step : state) {
        benchmark::DoNotOptimize(Hash(0, bytes.data(), bytes.size()));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}

BENCHMARK(hashing<plainLoop>)->Name("plainLoop");
BENCHMARK(hashing<VXCloneFileHash>)->Name("fileHash");

}  // namespace

BENCHMARK_MAIN();
