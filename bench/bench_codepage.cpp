// Speed of the code-page conversions the string class and the readers run
// on every text: UTF-8 by hand, Windows-1252 through a cached ICU converter,
// and a deep PROPVARIANT copy of a string vector.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/CodePage.h"
#include "platform/PropIdl.h"

namespace {

std::string Utf8Text(std::size_t n, bool ascii) {
    const std::string unit = ascii ? "abcdefgh" : "ab\xC3\xA9\xE2\x82\xAC";  // a, b, e-acute, euro sign
    std::string s;
    while (s.size() < n) s += unit;
    return s;
}

void BM_Utf8ToWide(benchmark::State& state) {
    const std::string text = Utf8Text(std::size_t(state.range(0)), state.range(1) != 0);
    std::wstring out(text.size(), L'\0');
    for (auto _ : state) {
        int n = MultiByteToWideChar(CP_UTF8, 0, text.data(), int(text.size()), out.data(), int(out.size()));
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_Utf8ToWide)->Args({16, 1})->Args({4096, 1})->Args({4096, 0});

void BM_AnsiToWide(benchmark::State& state) {
    const std::string text(std::size_t(state.range(0)), '\xE9');
    std::wstring out(text.size(), L'\0');
    for (auto _ : state) {
        int n = MultiByteToWideChar(CP_ACP, 0, text.data(), int(text.size()), out.data(), int(out.size()));
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_AnsiToWide)->Arg(16)->Arg(4096);

void BM_WideToAnsi(benchmark::State& state) {
    const std::wstring text(std::size_t(state.range(0)), L'\u00E9');
    std::string out(text.size(), '\0');
    for (auto _ : state) {
        int n = WideCharToMultiByte(CP_ACP, 0, text.data(), int(text.size()), out.data(), int(out.size()), nullptr,
                                    nullptr);
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_WideToAnsi)->Arg(16)->Arg(4096);

void BM_WideToUtf8(benchmark::State& state) {
    const std::wstring text(std::size_t(state.range(0)), L'\u20AC');
    std::string out(text.size() * 3, '\0');
    for (auto _ : state) {
        int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), out.data(), int(out.size()), nullptr,
                                    nullptr);
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(BM_WideToUtf8)->Arg(16)->Arg(4096);

void BM_PropVariantCopyStrings(benchmark::State& state) {
    const auto count = ULONG(state.range(0));
    PROPVARIANT source;
    PropVariantInit(&source);
    source.vt = VT_VECTOR | VT_LPWSTR;
    source.calpwstr.cElems = count;
    source.calpwstr.pElems = static_cast<LPWSTR*>(CoTaskMemAlloc(count * sizeof(LPWSTR)));
    for (ULONG i = 0; i < count; ++i) SHStrDupW(L"a keyword of some length", &source.calpwstr.pElems[i]);
    for (auto _ : state) {
        PROPVARIANT copy;
        PropVariantCopy(&copy, &source);
        PropVariantClear(&copy);
    }
    PropVariantClear(&source);
}
BENCHMARK(BM_PropVariantCopyStrings)->Arg(10)->Arg(1000);

}  // namespace
