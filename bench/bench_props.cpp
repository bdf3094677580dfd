// Speed of the variant value forms: byte form both ways, text form both
// ways, on a short string and on a 100-element string vector.
#include <benchmark/benchmark.h>

#include <vector>

#include "utils/props/PropVariantBytes.h"
#include "utils/props/PropVariantText.h"

namespace {

BrmPlatform::BrmStringW VectorText(int elements) {
    BrmPlatform::BrmStringW text;
    for (int i = 0; i < elements; ++i) {
        if (i) {
            text += L";";
        }
        text += L"element\\;number ";
        text.AppendFormat(L"%d", i);
    }
    return text;
}

// Arg 0: one string; otherwise a vector of that many strings.
BrmPlatform::BrmStringW SampleText(int elements) {
    return elements == 0 ? BrmPlatform::BrmStringW(L"A document title of some length") : VectorText(elements);
}

void Parse(PROPVARIANT* value, int elements, const BrmPlatform::BrmStringW& text) {
    BrmUtils::ParsePropVariant(L"string", elements != 0, text, value);
}

void Parse(PROPVARIANT* value, int elements) { Parse(value, elements, SampleText(elements)); }

void BM_Serialize(benchmark::State& state) {
    PROPVARIANT value;
    Parse(&value, int(state.range(0)));
    std::vector<uint8_t> bytes;
    for (auto _ : state) {
        BrmUtils::SerializePropVariant(value, bytes);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
    PropVariantClear(&value);
}
BENCHMARK(BM_Serialize)->Arg(0)->Arg(100);

void BM_Deserialize(benchmark::State& state) {
    PROPVARIANT value;
    Parse(&value, int(state.range(0)));
    std::vector<uint8_t> bytes;
    BrmUtils::SerializePropVariant(value, bytes);
    PropVariantClear(&value);
    for (auto _ : state) {
        BrmUtils::DeserializePropVariant(bytes.data(), bytes.size(), &value);
        PropVariantClear(&value);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}
BENCHMARK(BM_Deserialize)->Arg(0)->Arg(100);

void BM_ParseText(benchmark::State& state) {
    const int elements = int(state.range(0));
    const BrmPlatform::BrmStringW text = SampleText(elements);
    for (auto _ : state) {
        PROPVARIANT value;
        Parse(&value, elements, text);
        PropVariantClear(&value);
    }
}
BENCHMARK(BM_ParseText)->Arg(0)->Arg(100);

void BM_FormatText(benchmark::State& state) {
    PROPVARIANT value;
    Parse(&value, int(state.range(0)));
    BrmPlatform::BrmStringW type, text;
    bool vector;
    for (auto _ : state) {
        BrmUtils::FormatPropVariant(value, type, vector, text);
        benchmark::DoNotOptimize(text.GetString());
    }
    PropVariantClear(&value);
}
BENCHMARK(BM_FormatText)->Arg(0)->Arg(100);

}  // namespace
