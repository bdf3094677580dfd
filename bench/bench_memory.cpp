// Buffer growth past the heap block limit and reading through accessors:
// appending in 4 KiB steps to 1 MiB and 64 MiB (pages, and the file-map
// fallback), against a byte vector for scale; reading a 64 MiB buffer
// through its block accessors and through Read.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "utils/memory/Buffer.h"
#include "utils/memory/Manager.h"

using namespace BrmUtils::Memory;

namespace {

constexpr std::size_t kStep = 4096;

void BM_AppendSteps(benchmark::State& state) {
    const uint64_t total = uint64_t(state.range(0));
    std::vector<uint8_t> step(kStep, 0x5A);
    for (auto _ : state) {
        Buffer b;
        for (uint64_t done = 0; done < total; done += kStep) b.Append(step.data(), kStep);
        benchmark::DoNotOptimize(b.GetSize());
    }
    state.SetBytesProcessed(int64_t(state.iterations() * total));
}
BENCHMARK(BM_AppendSteps)->Arg(1 << 20)->Arg(64 << 20)->Unit(benchmark::kMillisecond);

// The same growth when pages are refused and slices of the mapped file
// take over.
void BM_AppendStepsFileMap(benchmark::State& state) {
    const uint64_t total = uint64_t(state.range(0));
    std::vector<uint8_t> step(kStep, 0x5A);
    MemManager& m = GetMemManager();
    MemManager::Limits saved = m.GetLimits(), limits;
    limits.virtualMax = 0;
    m.SetLimits(limits);
    for (auto _ : state) {
        Buffer b;
        for (uint64_t done = 0; done < total; done += kStep) b.Append(step.data(), kStep);
        benchmark::DoNotOptimize(b.GetSize());
    }
    m.SetLimits(saved);
    state.SetBytesProcessed(int64_t(state.iterations() * total));
}
BENCHMARK(BM_AppendStepsFileMap)->Arg(1 << 20)->Arg(64 << 20)->Unit(benchmark::kMillisecond);

void BM_AppendStepsVector(benchmark::State& state) {
    const uint64_t total = uint64_t(state.range(0));
    std::vector<uint8_t> step(kStep, 0x5A);
    for (auto _ : state) {
        std::vector<uint8_t> v;
        for (uint64_t done = 0; done < total; done += kStep) v.insert(v.end(), step.begin(), step.end());
        benchmark::DoNotOptimize(v.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations() * total));
}
BENCHMARK(BM_AppendStepsVector)->Arg(1 << 20)->Arg(64 << 20)->Unit(benchmark::kMillisecond);

Buffer& Filled64() {
    static Buffer b = [] {
        Buffer x;
        x.SetSize(64 << 20);
        return x;
    }();
    return b;
}

void BM_ReadThroughAccessors(benchmark::State& state) {
    Buffer& b = Filled64();
    for (auto _ : state) {
        std::vector<ReadDataAccessor> all;
        b.GetReadAccessors(all);
        uint64_t sum = 0;
        for (const ReadDataAccessor& a : all) {
            const uint8_t* p = a.GetData();
            for (uint64_t i = 0; i < a.GetLength(); i += 64) sum += p[i];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(int64_t(state.iterations() * b.GetSize()));
}
BENCHMARK(BM_ReadThroughAccessors)->Unit(benchmark::kMillisecond);

void BM_ReadInSteps(benchmark::State& state) {
    Buffer& b = Filled64();
    std::vector<uint8_t> out(kStep);
    for (auto _ : state) {
        uint64_t n = 0;
        for (uint64_t offset = 0; offset < b.GetSize(); offset += kStep) b.Read(offset, out.data(), kStep, &n);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations() * b.GetSize()));
}
BENCHMARK(BM_ReadInSteps)->Unit(benchmark::kMillisecond);

}  // namespace
