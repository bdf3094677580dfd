// The zip layer's costs: opening an archive of 10 000 members, looking a
// member up, and reading a 10 MiB deflated member forwards and in random
// 4 KiB reads (through the random-access wrapper, and without it).
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipFileSet.h"

namespace {

constexpr int kMembers = 10000;
constexpr size_t kBigSize = 10u << 20;

// Text-like bytes that deflate to about a third.
std::vector<uint8_t> Text(size_t size) {
    static const char* const kWords[] = {"zip ", "member ", "archive ", "deflate ", "stream ", "central ",
                                         "directory ", "record ", "\n", "0123 ", "name ", "offset "};
    std::vector<uint8_t> out;
    out.reserve(size);
    uint32_t x = 12345;
    while (out.size() < size) {
        x = x * 1103515245u + 12345u;
        for (const char* c = kWords[(x >> 16) % 12]; *c && out.size() < size; ++c)
            out.push_back(uint8_t(*c));
    }
    return out;
}

std::wstring MemberName(int i) { return L"content/part" + std::to_wstring(i) + L".xml"; }

// Archives made once by the library's own writer, kept as bytes.
const std::vector<uint8_t>& Archive(bool many) {
    static std::vector<uint8_t> archives[2];
    std::vector<uint8_t>& bytes = archives[many ? 1 : 0];
    if (!bytes.empty())
        return bytes;
    IStream* out = BrmUtils::CreateMemStream(bytes);
    {
        ZipFileSetRef set = ZipFileSet::CreateOnStream(out);
        std::vector<uint8_t> content = many ? Text(200) : Text(kBigSize);
        for (int i = 0; i < (many ? kMembers : 1); ++i) {
            IStream* s = set->CreateMember(MemberName(i).c_str(), 3);
            ULONG n = 0;
            s->Write(content.data(), ULONG(content.size()), &n);
            s->Release();
        }
        set->CommitSet();
    }
    out->Release();
    return bytes;
}

ZipFileSetRef Open(const std::vector<uint8_t>& bytes) {
    IStream* file = BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size());
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file);
    file->Release();
    return set;
}

void BM_OpenTenThousandMembers(benchmark::State& state) {
    const std::vector<uint8_t>& bytes = Archive(true);
    for (auto _ : state) {
        ZipFileSetRef set = Open(bytes);
        benchmark::DoNotOptimize(set.Get());
    }
    state.SetLabel(std::to_string(bytes.size() / 1024) + " KiB archive");
}
BENCHMARK(BM_OpenTenThousandMembers)->Unit(benchmark::kMillisecond);

void BM_FindMember(benchmark::State& state) {
    ZipFileSetRef set = Open(Archive(true));
    std::vector<BrmPlatform::BrmStringW> names;
    for (int i = 0; i < 64; ++i)
        names.emplace_back(MemberName((i * 7919) % kMembers).c_str());
    names.emplace_back(L"CONTENT/PART9999.XML");
    names.emplace_back(L"content/missing.xml");
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(set->FindMember(names[i]));
        i = (i + 1) % names.size();
    }
}
BENCHMARK(BM_FindMember);

void BM_ReadDeflatedForward(benchmark::State& state) {
    ZipFileSetRef set = Open(Archive(false));
    std::vector<uint8_t> buffer(65536);
    for (auto _ : state) {
        IStream* s = set->OpenMember(MemberName(0).c_str());
        ULONG got = 0;
        do
            s->Read(buffer.data(), ULONG(buffer.size()), &got);
        while (got);
        s->Release();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kBigSize));
}
BENCHMARK(BM_ReadDeflatedForward)->Unit(benchmark::kMillisecond);

// Random 4 KiB reads; the member is opened once per iteration, so the time
// includes filling the wrapper's cache as the reads reach further.
void RandomReads(benchmark::State& state, bool randomAccess) {
    ZipFileSetRef set = Open(Archive(false));
    const int reads = int(state.range(0));
    std::vector<uint8_t> buffer(4096);
    std::mt19937 rng(7);
    for (auto _ : state) {
        IStream* s = set->OpenMember(MemberName(0).c_str(), false, randomAccess);
        for (int i = 0; i < reads; ++i) {
            ULARGE_INTEGER at{};
            s->Seek(MakeLargeInteger(int64_t(rng() % (kBigSize - 4096))), STREAM_SEEK_SET, &at);
            ULONG got = 0;
            s->Read(buffer.data(), 4096, &got);
        }
        s->Release();
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * reads);
}

void BM_ReadDeflatedRandom4K(benchmark::State& state) { RandomReads(state, true); }
BENCHMARK(BM_ReadDeflatedRandom4K)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_ReadDeflatedRandom4KWithoutWrapper(benchmark::State& state) { RandomReads(state, false); }
BENCHMARK(BM_ReadDeflatedRandom4KWithoutWrapper)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
