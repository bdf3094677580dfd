// Throughput of the memory streams (on a vector and on a Buffer) and of the random-access stream over a
// forward-only source: sequential reads in 4 KiB and 64 KiB chunks over
// 64 MiB, and random 4 KiB reads once the source is cached.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "utils/streams/MemStream.h"
#include "utils/streams/RandomAccessStream.h"
#include "utils/streams/StreamHelpers.h"

using namespace BrmUtils;

namespace {

constexpr size_t kTotal = 64u << 20;

std::vector<uint8_t>& SourceBytes() {
    static std::vector<uint8_t> bytes = [] {
        std::vector<uint8_t> b(kTotal);
        for (size_t i = 0; i < b.size(); ++i)
            b[i] = uint8_t(i * 131 >> 7);
        return b;
    }();
    return bytes;
}

// Reads the stream from its position to the end in chunks; answers the bytes.
uint64_t Drain(IStream* stream, std::vector<uint8_t>& chunk) {
    uint64_t total = 0;
    for (;;) {
        ULONG got = 0;
        if (FAILED(stream->Read(chunk.data(), ULONG(chunk.size()), &got)) || got == 0)
            return total;
        total += got;
    }
}

void BM_MemStreamRead(benchmark::State& state) {
    std::vector<uint8_t>& bytes = SourceBytes();
    IStream* stream = CreateMemStream(bytes);
    std::vector<uint8_t> chunk(size_t(state.range(0)));
    for (auto _ : state) {
        SeekTo(stream, 0);
        benchmark::DoNotOptimize(Drain(stream, chunk));
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kTotal));
    stream->Release();
}
BENCHMARK(BM_MemStreamRead)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

// The same over a Memory::Buffer, whose bytes lie in several blocks.
void BM_MemBufferStreamRead(benchmark::State& state) {
    IStream* stream = CreateMemStream(uint64_t(0));
    std::vector<uint8_t>& bytes = SourceBytes();
    WriteExactly(stream, bytes.data(), bytes.size());
    std::vector<uint8_t> chunk(size_t(state.range(0)));
    for (auto _ : state) {
        SeekTo(stream, 0);
        benchmark::DoNotOptimize(Drain(stream, chunk));
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kTotal));
    stream->Release();
}
BENCHMARK(BM_MemBufferStreamRead)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

// A fresh random-access stream per round: the cost includes copying the
// source into the cache.
void BM_RandomAccessForward(benchmark::State& state) {
    std::vector<uint8_t>& bytes = SourceBytes();
    IStream* source = CreateMemStream(bytes);
    std::vector<uint8_t> chunk(size_t(state.range(0)));
    for (auto _ : state) {
        SeekTo(source, 0);
        IStream* stream = RandomAccessStream::Create(source);
        benchmark::DoNotOptimize(Drain(stream, chunk));
        stream->Release();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kTotal));
    source->Release();
}
BENCHMARK(BM_RandomAccessForward)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

// Random 4 KiB reads over a stream whose source has been read once.
void BM_RandomAccessRandom(benchmark::State& state) {
    std::vector<uint8_t>& bytes = SourceBytes();
    IStream* source = CreateMemStream(bytes);
    IStream* stream = RandomAccessStream::Create(source);
    std::vector<uint8_t> chunk(4096);
    Drain(stream, chunk);
    std::mt19937_64 random(1);
    for (auto _ : state) {
        SeekTo(stream, random() % (kTotal - chunk.size()));
        ULONG got = 0;
        stream->Read(chunk.data(), ULONG(chunk.size()), &got);
        benchmark::DoNotOptimize(got);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(chunk.size()));
    stream->Release();
    source->Release();
}
BENCHMARK(BM_RandomAccessRandom);

}  // namespace
