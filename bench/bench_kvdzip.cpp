// The container drawing reader: properties plus a 256-pixel thumbnail of a
// document with a 1 MiB metadata part and of one with 500 MiB of content
// parts (the counter "bytes_read" shows that the content is never read), and
// writing one property back into the 500 MiB document beside a plain file
// copy of it in the same run (the commit copies the members raw).
#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyKeys.h"
#include "imaging/NativeBitmap.h"
#include "imaging/codecs/ImageCodecs.h"
#include "platform/Files.h"
#include "utils/streams/FileStream.h"
#include "utils/streams/MemStream.h"

namespace {

using Bytes = std::vector<uint8_t>;

uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t size) {
    static const std::array<uint32_t, 256> table = [] {
        std::array<uint32_t, 256> t{};
        for (uint32_t i = 0; i < 256; ++i) {
            uint32_t c = i;
            for (int k = 0; k < 8; ++k) c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    crc = ~crc;
    for (size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

void U16(Bytes& out, uint32_t v) { out.insert(out.end(), {uint8_t(v), uint8_t(v >> 8)}); }
void U32(Bytes& out, uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8) out.push_back(uint8_t(v >> shift));
}

// A member: its bytes, or `repeat` copies of them (the big content parts).
struct Member {
    std::string name;
    Bytes bytes;
    uint64_t repeat = 1;
};

// A stored-only zip written in a stream of blocks, so that a 500 MiB
// document costs no more memory than its largest block.
void WriteZip(const std::string& path, const std::vector<Member>& members) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    Bytes central;
    uint64_t offset = 0;
    auto put = [&](const Bytes& b) {
        file.write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
        offset += b.size();
    };
    for (const Member& m : members) {
        uint32_t crc = 0;
        for (uint64_t i = 0; i < m.repeat; ++i) crc = Crc32(crc, m.bytes.data(), m.bytes.size());
        const uint32_t size = uint32_t(m.bytes.size() * m.repeat);
        Bytes header;
        U32(header, 0x04034B50), U16(header, 10), U16(header, 0), U16(header, 0), U16(header, 0x6000), U16(header, 0x5A21);
        U32(header, crc), U32(header, size), U32(header, size), U16(header, uint32_t(m.name.size())), U16(header, 0);
        header.insert(header.end(), m.name.begin(), m.name.end());
        U32(central, 0x02014B50), U16(central, 20), U16(central, 10), U16(central, 0), U16(central, 0);
        U16(central, 0x6000), U16(central, 0x5A21), U32(central, crc), U32(central, size), U32(central, size);
        U16(central, uint32_t(m.name.size())), U16(central, 0), U16(central, 0), U16(central, 0), U16(central, 0);
        U32(central, 0), U32(central, uint32_t(offset));
        central.insert(central.end(), m.name.begin(), m.name.end());
        put(header);
        for (uint64_t i = 0; i < m.repeat; ++i) put(m.bytes);
    }
    Bytes end;
    U32(end, 0x06054B50), U16(end, 0), U16(end, 0), U16(end, uint32_t(members.size())), U16(end, uint32_t(members.size()));
    U32(end, uint32_t(central.size())), U32(end, uint32_t(offset)), U16(end, 0);
    put(central);
    put(end);
}

Bytes Text(const std::string& s) { return Bytes(s.begin(), s.end()); }

// The metadata part: a title and a list of styles that brings it to `size` bytes.
Bytes Metadata(size_t size) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
        "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:kvdinfo=\"urn:brimo:namespaces:kvd/metadata/1.0/fileinfo/\">"
        "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Benchmark</rdf:li></rdf:Alt></dc:title>"
        "<kvdinfo:NumPages>1</kvdinfo:NumPages><kvdinfo:Styles><rdf:Bag>";
    for (int i = 0; xml.size() < size; ++i) xml += "<rdf:li>Style " + std::to_string(i) + "</rdf:li>";
    xml += "</rdf:Bag></kvdinfo:Styles></rdf:Description></rdf:RDF></x:xmpmeta>";
    return Text(xml);
}

Bytes Thumbnail() {
    auto bitmap = BrmUtils::NativeBitmap::Create(256, 181, BrmUtils::PixelFormat::Rgb24);
    auto rows = bitmap->LockBits();
    for (int y = 0; y < 181; ++y) {
        uint32_t* row = rows->GetRow(y);
        for (int x = 0; x < 256; ++x) row[x] = 0xFF000000u | uint32_t(x << 16) | uint32_t(y << 8) | uint32_t((x + y) & 0xFF);
    }
    rows.reset();
    Bytes png;
    IStream* out = BrmUtils::CreateMemStream(png);
    BrmUtils::SaveImage(*bitmap, L"image/png", out);  // takes the reference
    return png;
}

std::string WriteDocument(const char* name, size_t metadataBytes, uint64_t contentMiB) {
    const std::string path = std::filesystem::temp_directory_path() / (std::string("bench_kvdzip_") + name + ".kvd");
    const std::string table =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><container xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\" "
        "xmlns:brm=\"urn:brimo:namespaces:zcf:xmlns:container\" version=\"1.0\"><rootfiles><rootfile "
        "full-path=\"previews/thumbnail.png\" media-type=\"image/png\" brm:file-kind=\"thumbnail\" "
        "brm:image-width=\"256\" brm:image-height=\"181\"/></rootfiles></container>";
    std::vector<Member> members = {
        {"mimetype", Text("application/x-vnd.brimo.zcf.plotra.document+zip")},
        {"META-INF/metadata.xml", Metadata(metadataBytes)},
        {"META-INF/container.xml", Text(table)},
        {"previews/thumbnail.png", Thumbnail()},
    };
    // Content parts of 50 MiB each, written from one 1 MiB block.
    Bytes block(1 << 20);
    for (size_t i = 0; i < block.size(); ++i) block[i] = uint8_t(i * 131 + (i >> 12));
    for (uint64_t done = 0, part = 0; done < contentMiB; ++part) {
        const uint64_t mib = std::min<uint64_t>(50, contentMiB - done);
        members.push_back({"content/data" + std::to_string(part) + ".bin", block, mib});
        done += mib;
    }
    WriteZip(path, members);
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
    std::atomic<uint64_t> bytesRead{0};

private:
    IStream* inner;
    std::atomic<ULONG> refs{1};
};

std::wstring Wide(const std::string& path) { return std::wstring(path.begin(), path.end()); }

// Every property and a 256-pixel thumbnail through a counting file stream;
// answers the bytes read, or 0 when the document gave no thumbnail.
uint64_t ReadDocument(const std::string& path) {
    const std::wstring wide = Wide(path);
    HANDLE handle = CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, INVALID_HANDLE_VALUE);
    if (handle == INVALID_HANDLE_VALUE) return 0;
    auto* counting = new CountingStream(new BrmUtils::FileStream(handle, wide.c_str()));
    bool thumbnail = false;
    if (IFileInfo* info = IFileInfo::GetInst(counting, FileFormatDrawing)) {
        for (uint32_t i = 0; i < info->GetCount(); ++i) {
            PROPERTYKEY key;
            PROPVARIANT value;
            value.vt = VT_EMPTY;
            if (SUCCEEDED(info->GetAt(i, &key))) info->GetValue(&key, &value);
            PropVariantClear(&value);
        }
        if (HBITMAP bitmap = info->GetBitmap(SIZE{256, 256}, 0, false, nullptr)) {
            thumbnail = true;
            DeleteObject(bitmap);
        }
        info->Release();
    }
    const uint64_t bytes = counting->bytesRead;
    counting->Release();
    return thumbnail ? bytes : 0;
}

void ReadAll(benchmark::State& state, const char* name, size_t metadataBytes, uint64_t contentMiB) {
    const std::string path = WriteDocument(name, metadataBytes, contentMiB);
    uint64_t bytes = 0;
    for (auto _ : state) {
        bytes = ReadDocument(path);
        if (!bytes) {
            state.SkipWithError("the document did not open with a thumbnail");
            break;
        }
    }
    state.counters["bytes_read"] = double(bytes);
    std::filesystem::remove(path);
}

void BM_PropertiesAndThumbnailMetadata1MiB(benchmark::State& state) { ReadAll(state, "meta", 1 << 20, 0); }
void BM_PropertiesAndThumbnailSmall(benchmark::State& state) { ReadAll(state, "small", 4 << 10, 1); }
void BM_PropertiesAndThumbnailContent500MiB(benchmark::State& state) { ReadAll(state, "content", 4 << 10, 500); }

// One property written back into the 500 MiB document, and a copy of the
// same file as the floor; the ratio is what the commit costs over a copy.
struct LargeFile {
    std::string path = WriteDocument("commit", 4 << 10, 500);
    ~LargeFile() { std::filesystem::remove(path); }
};
const std::string& LargeDocument() {
    static const LargeFile file;
    return file.path;
}

void BM_Set500MiB(benchmark::State& state) {
    const std::wstring wide = Wide(LargeDocument());
    for (auto _ : state) {
        IFileInfo* info = IFileInfo::GetInst(wide.c_str(), FileFormatDrawing);
        PROPVARIANT value;
        value.vt = VT_LPWSTR;
        value.pwszVal = const_cast<wchar_t*>(L"Set by the benchmark");
        if (!info || FAILED(info->SetValue(&PropertyKeys::kTitle, &value)) || FAILED(info->Commit())) {
            if (info) info->Release();
            state.SkipWithError("the commit failed");
            break;
        }
        info->Release();
    }
}

void BM_Copy500MiB(benchmark::State& state) {
    const std::string copy = LargeDocument() + ".copy";
    for (auto _ : state) {
        std::filesystem::copy_file(LargeDocument(), copy, std::filesystem::copy_options::overwrite_existing);
    }
    std::filesystem::remove(copy);
}

}  // namespace

BENCHMARK(BM_PropertiesAndThumbnailSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PropertiesAndThumbnailMetadata1MiB)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PropertiesAndThumbnailContent500MiB)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Copy500MiB)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Set500MiB)->Unit(benchmark::kMillisecond)->Iterations(3);
