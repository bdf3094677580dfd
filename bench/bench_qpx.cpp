// Paint images: the scan plus preview of a file of 10 000 objects and of a
// TIFF-generation file with a group 4 thumbnail, each beside one plain pass
// of reading the same bytes through the stream; and the write-back of a
// comment into a 200 MiB file beside std::filesystem::copy_file of it.
#include <benchmark/benchmark.h>
#include <tiffio.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <string>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyKeys.h"
#include "tests/support/qpx/QpxWriter.h"
#include "utils/streams/MemStream.h"

namespace {

using namespace QpxTest;

Bytes ManyObjects() {
    Image image;
    image.objects.push_back(Object{QpxFormat::kKindBackground, 2480, 3508, 24, 0, {}, {}});
    for (int i = 0; i < 9998; ++i) image.objects.push_back(TextObject({{"Font " + std::to_string(i % 40), u""}}));
    image.objects.push_back(ImageObject(QpxFormat::kKindThumbnail, 256, 192, 24, 64, [](uint32_t x, uint32_t y) {
        return uint64_t(x | y << 8 | ((x ^ y) & 0xFF) << 16);
    }));
    return Write(image);
}

Bytes CcittTiff() {
    TiffDirectory full, thumb;
    full.width = 2000, full.height = 1500, full.description.clear();
    full.bits = 1, full.photometric = PHOTOMETRIC_MINISWHITE, full.compression = COMPRESSION_CCITTFAX4;
    full.rows.assign(size_t(250) * 1500, 0);
    thumb.width = 480, thumb.height = 360, thumb.rowsPerStrip = 64;
    thumb.bits = 1, thumb.photometric = PHOTOMETRIC_MINISWHITE, thumb.compression = COMPRESSION_CCITTFAX4;
    for (uint32_t y = 0; y < thumb.height; ++y)
        for (uint32_t x = 0; x < thumb.width / 8; ++x) thumb.rows.push_back(uint8_t((x * 8 + y) / 24 % 2 ? 0xF0 : 0x0F));
    return WriteTiff({full, thumb});
}

void ScanAndPreview(benchmark::State& state, const Bytes& bytes) {
    for (auto _ : state) {
        IStream* stream = BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size());
        IFileInfo* info = IFileInfo::GetInst(stream, FileFormatPaint);
        PROPVARIANT value;
        PropVariantInit(&value);
        info->GetValue(&PropertyKeys::kImageFonts, &value);
        PropVariantClear(&value);
        DibBlock dib = info->ReadPreviewDib();
        if (!dib.data) state.SkipWithError("no preview");
        std::free(dib.data);
        info->Release();
        stream->Release();
    }
    state.SetBytesProcessed(int64_t(state.iterations() * bytes.size()));
}

// The floor: the same bytes read once through a stream in 64 KiB steps.
void ReadThrough(benchmark::State& state, const Bytes& bytes) {
    std::vector<uint8_t> buffer(0x10000);
    for (auto _ : state) {
        IStream* stream = BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size());
        ULONG got = 0;
        while (SUCCEEDED(stream->Read(buffer.data(), ULONG(buffer.size()), &got)) && got) benchmark::DoNotOptimize(buffer[0]);
        stream->Release();
    }
    state.SetBytesProcessed(int64_t(state.iterations() * bytes.size()));
}

void BM_ScanPreview10kObjects(benchmark::State& state) {
    static const Bytes bytes = ManyObjects();
    ScanAndPreview(state, bytes);
}
void BM_ReadThrough10kObjects(benchmark::State& state) {
    static const Bytes bytes = ManyObjects();
    ReadThrough(state, bytes);
}
void BM_ScanPreviewTiffGroup4(benchmark::State& state) {
    static const Bytes bytes = CcittTiff();
    ScanAndPreview(state, bytes);
}
void BM_ReadThroughTiffGroup4(benchmark::State& state) {
    static const Bytes bytes = CcittTiff();
    ReadThrough(state, bytes);
}

// A 200 MiB paint image in a folder of its own, removed at exit.
struct BigFile {
    std::filesystem::path dir, path, copy;
    BigFile() {
        dir = std::filesystem::temp_directory_path() / ("bench_qpx." + std::to_string(::getpid()));
        std::filesystem::create_directories(dir);
        path = dir / "big.qpx", copy = dir / "copy.qpx";
        Image image;
        Object filler{QpxFormat::kKindBackground, 4000, 3000, 24, 0, Bytes(size_t(200) << 20, 0x5A), {}};
        image.objects = {filler};
        const Bytes bytes = Write(image);
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    }
    ~BigFile() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
};

const BigFile& Big() {
    static const BigFile file;
    return file;
}

void BM_Rewrite200MiB(benchmark::State& state) {
    const std::wstring path = Big().path.wstring();
    int n = 0;
    for (auto _ : state) {
        IFileInfo* info = IFileInfo::GetInst(path.c_str(), FileFormatPaint);
        const std::wstring text = L"comment " + std::to_wstring(++n);
        PROPVARIANT value;
        value.vt = VT_LPWSTR;
        value.pwszVal = const_cast<wchar_t*>(text.c_str());
        if (FAILED(info->SetValue(&PropertyKeys::kComments, &value)) || FAILED(info->Commit()))
            state.SkipWithError("commit failed");
        info->Release();
    }
    state.SetBytesProcessed(int64_t(state.iterations() * std::filesystem::file_size(Big().path)));
}

void BM_CopyFile200MiB(benchmark::State& state) {
    for (auto _ : state) {
        std::filesystem::copy_file(Big().path, Big().copy, std::filesystem::copy_options::overwrite_existing);
    }
    state.SetBytesProcessed(int64_t(state.iterations() * std::filesystem::file_size(Big().path)));
}

BENCHMARK(BM_ScanPreview10kObjects)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadThrough10kObjects)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ScanPreviewTiffGroup4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadThroughTiffGroup4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Rewrite200MiB)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(6);
BENCHMARK(BM_CopyFile200MiB)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(6);

}  // namespace
