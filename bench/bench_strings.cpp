// Speed of the string class: copying (must not copy characters), appending a
// character or a chunk at a time (must stay amortised), printing, searching.
#include "utils/strings/BrmString.h"

#include <benchmark/benchmark.h>

#include <string>

using BrmPlatform::BrmStringA;
using BrmPlatform::BrmStringW;

static void BM_CopyShared(benchmark::State& state)
{
    const BrmStringW source(L'x', int(state.range(0)));
    for (auto _ : state) {
        BrmStringW copy = source;
        benchmark::DoNotOptimize(copy.GetString());
    }
}
BENCHMARK(BM_CopyShared)->Arg(16)->Arg(4096)->Arg(1 << 20);

static void BM_CopyStdWString(benchmark::State& state)
{
    const std::wstring source(std::size_t(state.range(0)), L'x');
    for (auto _ : state) {
        std::wstring copy = source;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyStdWString)->Arg(16)->Arg(4096)->Arg(1 << 20);

static void BM_AppendChar(benchmark::State& state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        BrmStringW s;
        for (int i = 0; i < count; ++i)
            s.AppendChar(L'a');
        benchmark::DoNotOptimize(s.GetString());
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_AppendChar)->Arg(1000)->Arg(100000);

static void BM_AppendChunk(benchmark::State& state)
{
    const int count = int(state.range(0));
    const BrmStringW chunk(L"a chunk of 24 characters");
    for (auto _ : state) {
        BrmStringW s;
        for (int i = 0; i < count; ++i)
            s += chunk;
        benchmark::DoNotOptimize(s.GetString());
    }
    state.SetBytesProcessed(state.iterations() * count * chunk.GetLength() * int64_t(sizeof(wchar_t)));
}
BENCHMARK(BM_AppendChunk)->Arg(100)->Arg(10000);

static void BM_FormatWide(benchmark::State& state)
{
    const BrmStringW name(L"Document title");
    BrmStringW s;
    for (auto _ : state) {
        s.Format(L"%s: %d pages, %5.2f%% done, %S", name, 42, 99.5, "narrow");
        benchmark::DoNotOptimize(s.GetString());
    }
}
BENCHMARK(BM_FormatWide);

static void BM_FormatNarrow(benchmark::State& state)
{
    const BrmStringA name("Document title");
    BrmStringA s;
    for (auto _ : state) {
        s.Format("%s: %d pages, %5.2f%% done, %2$d", name, 42, 99.5);
        benchmark::DoNotOptimize(s.GetString());
    }
}
BENCHMARK(BM_FormatNarrow);

static void BM_FormatWideLong(benchmark::State& state)
{
    const BrmStringW text(L'x', 10000);
    BrmStringW s;
    for (auto _ : state) {
        s.Format(L"<%s>", text);
        benchmark::DoNotOptimize(s.GetString());
    }
}
BENCHMARK(BM_FormatWideLong);

static void BM_FormatMessage(benchmark::State& state)
{
    BrmStringW s;
    for (auto _ : state) {
        s.FormatMessage(L"%1 has %2!d! pages%n", L"Document", 42);
        benchmark::DoNotOptimize(s.GetString());
    }
}
BENCHMARK(BM_FormatMessage);

static void BM_FindNoCase(benchmark::State& state)
{
    BrmStringW text(L'a', 4096);
    text += L"NEEDLE";
    for (auto _ : state)
        benchmark::DoNotOptimize(text.Find(L"needle", BrmPlatform::CompareCase::IgnoreCase));
}
BENCHMARK(BM_FindNoCase);
