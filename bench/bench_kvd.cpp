// The drawing reader: properties plus thumbnail of a 1 MiB and a 200 MiB
// document (the pages of both are stepped over, so both cost the same bytes
// and about the same time), and a 256-pixel bitmap made from a 1024 x 768
// thumbnail. Bytes read are counted by a stream wrapper and reported as the
// counter "bytes_read" per document.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "platform/Files.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/MemStream.h"
#include "RiffBytes.h"

namespace {

using namespace riffbytes;
Bytes Join(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
Bytes Wide(const char* text) {
    Bytes out;
    for (const char* p = text; *p; ++p) U16(out, uint16_t(uint8_t(*p)));
    return out;
}

// Everything before the pages of a version 1300 document.
Bytes Head() {
    Bytes sumi(54, 0);
    sumi[36] = 0xE8, sumi[37] = 0x03;  // application version 1000
    Bytes vrsn;
    U16(vrsn, 1300);
    Bytes font(160, 0);
    Bytes name = Wide("Sans");
    std::copy(name.begin(), name.end(), font.begin() + 18);
    Bytes mcfg(12, 0);
    U32(mcfg, 2159000), U32(mcfg, 2794000);
    mcfg.resize(mcfg.size() + 696);
    U32(mcfg, 11811024), U32(mcfg, 11811024);
    Bytes out = Chunk("sumi", sumi);
    for (const Bytes& part :
         {Chunk("vrsn", vrsn), List("INFO", Chunk("ICMT", Wide("a comment"))),
          List("doc ", Join(List("fntt", Chunk("font", font)), Chunk("mcfg", mcfg)))}) {
        out.insert(out.end(), part.begin(), part.end());
    }
    return out;
}

// A DISP chunk with a 24-bit DIB of the given size.
Bytes Disp(int32_t width, int32_t height) {
    Bytes data;
    U32(data, 8), U32(data, 40), U32(data, uint32_t(width)), U32(data, uint32_t(height));
    U16(data, 1), U16(data, 24);
    data.resize(data.size() + 24, 0);
    size_t row = size_t((24 * width + 31) / 32) * 4;
    for (size_t i = 0; i < row * size_t(height); ++i) data.push_back(uint8_t(i * 7));
    return Chunk("DISP", data);
}

// Writes the document to a file, its pages as `pages` LIST page chunks of
// one `data` chunk of `pageBytes` each, streamed so memory stays small.
std::wstring WriteDocument(const char* name, uint64_t pages, uint32_t pageBytes) {
    std::wstring path = GetTempPathString() + L"bench_kvd_" + std::wstring(name, name + std::strlen(name)) + L".kvd";
    Bytes head = Head(), tail = Disp(96, 64);
    Bytes pageHeader = {'L', 'I', 'S', 'T'};
    U32(pageHeader, 4 + 8 + pageBytes);
    pageHeader.insert(pageHeader.end(), {'p', 'a', 'g', 'e', 'd', 'a', 't', 'a'});
    U32(pageHeader, pageBytes);
    uint64_t body = 4 + head.size() + pages * (pageHeader.size() + pageBytes) + tail.size();
    Bytes riff = {'R', 'I', 'F', 'F'};
    U32(riff, uint32_t(body));
    riff.insert(riff.end(), {'K', 'V', 'D', 'D'});
    std::ofstream file(PathToNative(path.c_str()), std::ios::binary);
    auto put = [&file](const Bytes& b) { file.write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size())); };
    put(riff), put(head);
    Bytes page(pageBytes, 0x55);
    for (uint64_t i = 0; i < pages; ++i) put(pageHeader), put(page);
    put(tail);
    return path;
}

// Forwards to a stream and counts the bytes read through it.
class CountingStream final : public IStream {
public:
    explicit CountingStream(IStream* inner) : inner(inner) {}
    ~CountingStream() { inner->Release(); }
    HRESULT QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++refs; }
    ULONG Release() override {
        ULONG left = --refs;
        if (!left) delete this;
        return left;
    }
    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        ULONG got = 0;
        HRESULT hr = inner->Read(pv, cb, &got);
        bytesRead += got;
        if (pcbRead) *pcbRead = got;
        return hr;
    }
    HRESULT Write(const void* pv, ULONG cb, ULONG* written) override { return inner->Write(pv, cb, written); }
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) override {
        return inner->Seek(move, origin, position);
    }
    HRESULT SetSize(ULARGE_INTEGER size) override { return inner->SetSize(size); }
    HRESULT CopyTo(IStream* to, ULARGE_INTEGER cb, ULARGE_INTEGER* read, ULARGE_INTEGER* written) override {
        return inner->CopyTo(to, cb, read, written);
    }
    HRESULT Commit(DWORD flags) override { return inner->Commit(flags); }
    HRESULT Revert() override { return inner->Revert(); }
    HRESULT LockRegion(ULARGE_INTEGER o, ULARGE_INTEGER cb, DWORD t) override { return inner->LockRegion(o, cb, t); }
    HRESULT UnlockRegion(ULARGE_INTEGER o, ULARGE_INTEGER cb, DWORD t) override {
        return inner->UnlockRegion(o, cb, t);
    }
    HRESULT Stat(STATSTG* stat, DWORD flags) override { return inner->Stat(stat, flags); }
    HRESULT Clone(IStream** out) override { return inner->Clone(out); }
    uint64_t bytesRead = 0;

private:
    IStream* inner;
    std::atomic<ULONG> refs{1};
};

// Opens the document on a counting file stream, reads every property and
// the thumbnail; answers the bytes read.
uint64_t ReadDocument(const std::wstring& path) {
    HANDLE handle = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, INVALID_HANDLE_VALUE);
    if (handle == INVALID_HANDLE_VALUE) return 0;
    auto* counting = new CountingStream(new BrmUtils::FileStream(handle, path.c_str()));
    IFileInfo* info = IFileInfo::GetInst(counting, FileFormatDrawing);
    if (info) {
        for (uint32_t i = 0; i < info->GetCount(); ++i) {
            PROPERTYKEY key;
            PROPVARIANT value;
            value.vt = VT_EMPTY;
            if (SUCCEEDED(info->GetAt(i, &key))) info->GetValue(&key, &value);
            PropVariantClear(&value);
        }
        if (HBITMAP bitmap = info->GetBitmap(SIZE{96, 96}, 0, false, nullptr)) DeleteObject(bitmap);
        info->Release();
    }
    uint64_t bytes = counting->bytesRead;
    counting->Release();
    return bytes;
}

void ReadAll(benchmark::State& state, uint64_t pages, uint32_t pageBytes, const char* name) {
    std::wstring path = WriteDocument(name, pages, pageBytes);
    uint64_t bytes = 0;
    for (auto _ : state) bytes = ReadDocument(path);
    state.counters["bytes_read"] = double(bytes);
    std::remove(PathToNative(path.c_str()).c_str());
}

// 1 MiB: 16 pages of 64 KiB.
void BM_PropertiesAndThumbnail1MiB(benchmark::State& state) { ReadAll(state, 16, 64 << 10, "small"); }
// 200 MiB: 3200 pages of 64 KiB, all stepped over.
void BM_PropertiesAndThumbnail200MiB(benchmark::State& state) { ReadAll(state, 3200, 64 << 10, "large"); }

// The bitmap of a 1024 x 768 thumbnail fitted into 256 pixels; the preview
// is read once and kept by the reader, so this is the scaling alone.
void BM_Thumbnail256Of1024x768(benchmark::State& state) {
    Bytes body = {'K', 'V', 'D', 'D'};
    Bytes vrsn;
    U16(vrsn, 1300);
    for (const Bytes& part : {Chunk("vrsn", vrsn), Disp(1024, 768)}) body.insert(body.end(), part.begin(), part.end());
    Bytes file = {'R', 'I', 'F', 'F'};
    U32(file, uint32_t(body.size()));
    file.insert(file.end(), body.begin(), body.end());
    IStream* stream = BrmUtils::CreateMemStreamOnBytes(file.data(), file.size());
    IFileInfo* info = IFileInfo::GetInst(stream, FileFormatDrawing);
    stream->Release();
    for (auto _ : state) {
        HBITMAP bitmap = info ? info->GetBitmap(SIZE{256, 256}, 0, false, nullptr) : nullptr;
        if (!bitmap) {
            state.SkipWithError("no thumbnail");
            break;
        }
        DeleteObject(bitmap);
    }
    if (info) info->Release();
}

}  // namespace

BENCHMARK(BM_PropertiesAndThumbnail1MiB)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PropertiesAndThumbnail200MiB)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Thumbnail256Of1024x768)->Unit(benchmark::kMicrosecond);
