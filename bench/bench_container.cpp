// The document container's costs: opening a container of 10 000 parts (all
// in the part table) and reading its metadata and thumbnail, beside the zip
// layer's open of the same bytes as the floor; and streaming a 100 MiB
// deflated part, beside `unzip -p` of the same member in the same run.
// Wall times throughout, since the peers are timed by the clock too.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "metadata/Schema.h"
#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace {

constexpr int kParts = 10000;
constexpr size_t kBigSize = 100u << 20;

std::vector<uint8_t> Text(size_t size) {
    static const char* const kWords[] = {"part ", "link ", "container ", "preview ", "metadata ", "\n", "42 "};
    std::vector<uint8_t> out;
    out.reserve(size);
    uint32_t x = 7;
    while (out.size() < size) {
        x = x * 1103515245u + 12345u;
        for (const char* c = kWords[(x >> 16) % 7]; *c && out.size() < size; ++c) out.push_back(uint8_t(*c));
    }
    return out;
}

void Put(ZipContainerImpl& c, const std::wstring& name, const std::vector<uint8_t>& bytes, const PartRecord* r) {
    IStream* s = c.CreatePart(BrmPlatform::BrmStringW(name), false, false, r);
    ULONG n = 0;
    for (size_t at = 0; at < bytes.size(); at += n)
        if (FAILED(s->Write(bytes.data() + at, ULONG(std::min<size_t>(bytes.size() - at, 1 << 20)), &n))) break;
    s->Release();
}

const std::vector<uint8_t>& ManyParts() {
    static std::vector<uint8_t> bytes;
    if (!bytes.empty()) return bytes;
    IStream* out = BrmUtils::CreateMemStream(bytes);
    {
        ZipContainerRef c = ZipContainerImpl::CreateOnStream(out);
        c->InitNew(L"application/x-bench", false, false);
        std::vector<uint8_t> content = Text(200);
        for (int i = 0; i < kParts; ++i) {
            PartRecord record{L"page", L"text/plain", {}, i, -1, -1};
            Put(*c, L"content/part" + std::to_wstring(i) + L".xml", content, &record);
        }
        auto thumbnail = BrmUtils::NativeBitmap::Create(256, 256, BrmUtils::PixelFormat::Rgb24);
        c->AddThumbnail(*thumbnail);
        c->Commit();
    }
    out->Release();
    return bytes;
}

ZipContainerRef OpenContainer(const std::vector<uint8_t>& bytes) {
    IStream* file = BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size());
    ZipContainerRef c = ZipContainerImpl::OpenFromStream(file, true);
    file->Release();
    return c;
}

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

void BM_OpenTenThousandParts(benchmark::State& state) {
    const auto& bytes = ManyParts();
    for (auto _ : state) {
        ZipContainerRef c = OpenContainer(bytes);
        auto format = c->Metadata().GetPropertyText(ZipContainerSchema::dc::format);
        auto thumbnail = c->GetThumbnailImage();
        benchmark::DoNotOptimize(thumbnail.get());
    }
    // The floor: the zip layer alone opening the same bytes.
    const int rounds = 10;
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < rounds; ++i) {
        IStream* file = BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size());
        ZipFileSetRef set = ZipFileSet::OpenFromStream(file);
        file->Release();
        benchmark::DoNotOptimize(set.Get());
    }
    state.counters["zip_open_ms"] = Seconds(start) / rounds * 1000;
    state.SetLabel(std::to_string(bytes.size() / 1024) + " KiB, " + std::to_string(kParts) + " records");
}
BENCHMARK(BM_OpenTenThousandParts)->Unit(benchmark::kMillisecond)->UseRealTime();

const std::string& BigFile() {
    static std::string path;
    if (!path.empty()) return path;
    path = (std::getenv("TMPDIR") ? std::string(std::getenv("TMPDIR")) : std::string("/tmp")) + "/bench_container_big.zip";
    ZipContainerRef c = ZipContainerImpl::CreateOnPath(BrmPlatform::BrmStringW(std::wstring(path.begin(), path.end())));
    Put(*c, L"content/big.txt", Text(kBigSize), nullptr);
    c->Commit();
    return path;
}

void BM_CatDeflatedPart(benchmark::State& state) {
    const std::string& path = BigFile();
    std::vector<uint8_t> block(1 << 16);
    for (auto _ : state) {
        ZipContainerRef c = ZipContainerImpl::OpenFromPath(BrmPlatform::BrmStringW(std::wstring(path.begin(), path.end())));
        IStream* s = c->OpenPart(L"content/big.txt");
        ULONG got = 0;
        uint64_t total = 0;
        while (SUCCEEDED(s->Read(block.data(), ULONG(block.size()), &got)) && got) total += got;
        s->Release();
        if (total != kBigSize) state.SkipWithError("short read");
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(kBigSize));
    // The peer: unzip -p of the same member, timed in the same run.
    auto start = std::chrono::steady_clock::now();
    if (std::system(("unzip -p '" + path + "' content/big.txt > /dev/null 2>&1").c_str()) == 0)
        state.counters["unzip_MBps"] = double(kBigSize) / (1 << 20) / Seconds(start);
}
BENCHMARK(BM_CatDeflatedPart)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
