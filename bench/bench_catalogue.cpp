// Cost of a reader's property catalogue: making a reader with 40 registered
// properties (done for every object a host asks for), and reading values and
// keys through it.
#include <benchmark/benchmark.h>

#include "fileinfo/WFileBase.h"
#include "utils/props/PropVariantConvert.h"

namespace {

constexpr FMTID kSet = {0x5A5A5A5A, 0x1234, 0x5678, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr int kProperties = 40;

class BenchReader final : public WFileBase {
public:
    void BuildCatalogue() override {
        OpenGroup(kGroupDescription);
        for (int i = 0; i < kProperties; ++i) {
            if (i == kProperties / 2) {
                CloseGroup();
                OpenGroup(kGroupGeneral);
            }
            AddProperty(PROPERTYKEY{kSet, DWORD(2 + i)}, PropTypesText, &BenchReader::GetText);
        }
        CloseGroup();
    }
    DibBlock ReadPreviewDib() override { return {}; }
    HRESULT GetText(VARTYPE, PROPVARIANT* value) { return BrmUtils::StringToPropVariant(L"Some text", value); }
};

void BM_MakeReader(benchmark::State& state) {
    for (auto _ : state) {
        IFileInfo* reader = new BenchReader();
        reader->BuildCatalogue();
        benchmark::DoNotOptimize(reader);
        reader->Release();
    }
}
BENCHMARK(BM_MakeReader);

void BM_GetValue(benchmark::State& state) {
    IFileInfo* reader = new BenchReader();
    reader->BuildCatalogue();
    DWORD pid = 2;
    for (auto _ : state) {
        const PROPERTYKEY key{kSet, pid};
        PROPVARIANT value;
        reader->GetValue(&key, &value);
        PropVariantClear(&value);
        pid = pid == kProperties + 1 ? 2 : pid + 1;
    }
    reader->Release();
}
BENCHMARK(BM_GetValue);

// Walking all keys by index, as hosts do: each GetAt walks the map from its start.
void BM_GetAtAll(benchmark::State& state) {
    IFileInfo* reader = new BenchReader();
    reader->BuildCatalogue();
    for (auto _ : state) {
        PROPERTYKEY key;
        for (uint32_t i = 0; reader->GetAt(i, &key) == S_OK; ++i) {
            benchmark::DoNotOptimize(key);
        }
    }
    reader->Release();
}
BENCHMARK(BM_GetAtAll);

}  // namespace
