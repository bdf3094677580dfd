// Builders and helpers of ZipTestArchive.h.
#include "tests/support/zip/ZipTestArchive.h"

#include <dirent.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "utils/streams/DataContainerVector.h"

namespace ziptest {
namespace {

void Put16(std::vector<uint8_t>& out, uint32_t v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}
void Put32(std::vector<uint8_t>& out, uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}
void Put64(std::vector<uint8_t>& out, uint64_t v) {
    Put32(out, uint32_t(v));
    Put32(out, uint32_t(v >> 32));
}
void Append(std::vector<uint8_t>& out, const void* data, size_t size) {
    auto* p = static_cast<const uint8_t*>(data);
    out.insert(out.end(), p, p + size);
}
uint32_t Mark32(uint64_t v, bool zip64) { return zip64 ? 0xFFFFFFFFu : uint32_t(v); }

}  // namespace

std::vector<uint8_t> Bytes(std::string_view text) { return std::vector<uint8_t>(text.begin(), text.end()); }

std::vector<uint8_t> Text(size_t size, uint32_t seed) {
    static const char* const kWords[] = {"zip ", "member ", "archive ", "deflate ", "stream ", "central ",
                                         "directory ", "record ", "\n", "0123 ", "name ", "offset "};
    std::vector<uint8_t> out;
    out.reserve(size);
    uint32_t x = seed * 2654435761u + 1;
    while (out.size() < size) {
        x = x * 1103515245u + 12345u;
        const char* w = kWords[(x >> 16) % 12];
        for (const char* c = w; *c && out.size() < size; ++c)
            out.push_back(uint8_t(*c));
    }
    return out;
}

std::vector<uint8_t> Noise(size_t size, uint32_t seed) {
    std::vector<uint8_t> out(size);
    uint64_t x = 0x9E3779B97F4A7C15ull ^ seed;
    for (auto& b : out) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        b = uint8_t(x >> 24);
    }
    return out;
}

std::vector<uint8_t> RawDeflate(const std::vector<uint8_t>& data, int level, bool finish) {
    z_stream z{};
    deflateInit2(&z, level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::vector<uint8_t> out(deflateBound(&z, uLong(data.size())) + 16);
    z.next_in = const_cast<Bytef*>(data.data());
    z.avail_in = uInt(data.size());
    z.next_out = out.data();
    z.avail_out = uInt(out.size());
    deflate(&z, finish ? Z_FINISH : Z_FULL_FLUSH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

uint32_t Crc32(const std::vector<uint8_t>& data) {
    return uint32_t(crc32(crc32(0, nullptr, 0), data.data(), uInt(data.size())));
}

uint32_t Crc32(std::string_view data) {
    return uint32_t(crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(data.data()), uInt(data.size())));
}

Entry MakeEntry(std::string name, std::vector<uint8_t> content, uint16_t method) {
    Entry e;
    e.name = std::move(name);
    e.content = std::move(content);
    e.method = method;
    return e;
}

std::vector<uint8_t> ExtraRecord(uint16_t id, const std::vector<uint8_t>& data) {
    std::vector<uint8_t> out;
    Put16(out, id);
    Put16(out, uint32_t(data.size()));
    Append(out, data.data(), data.size());
    return out;
}

std::vector<uint8_t> UnicodeExtra(uint16_t id, std::string_view raw, std::string_view utf8, uint8_t version) {
    std::vector<uint8_t> data;
    data.push_back(version);
    Put32(data, Crc32(raw));
    Append(data, utf8.data(), utf8.size());
    return ExtraRecord(id, data);
}

std::vector<uint8_t> Build(const Archive& a) {
    std::vector<uint8_t> out;
    std::vector<uint8_t> central;
    for (const Entry& e : a.entries) {
        std::vector<uint8_t> stored = e.data ? *e.data : e.method == 8 ? RawDeflate(e.content) : e.content;
        uint32_t crc = Crc32(e.content);
        uint64_t offset = out.size();
        uint16_t flags = e.flags;

        std::vector<uint8_t> localExtra;
        if (e.zip64) {
            std::vector<uint8_t> z;
            Put64(z, e.content.size());
            Put64(z, stored.size());
            localExtra = ExtraRecord(1, z);
        }
        Put32(out, 0x04034B50);
        Put16(out, e.version);
        Put16(out, flags);
        Put16(out, e.method);
        Put16(out, e.dosTime);
        Put16(out, e.dosDate);
        Put32(out, crc);
        Put32(out, Mark32(stored.size(), e.zip64));
        Put32(out, Mark32(e.content.size(), e.zip64));
        Put16(out, uint32_t(e.name.size()));
        Put16(out, uint32_t(localExtra.size()));
        Append(out, e.name.data(), e.name.size());
        Append(out, localExtra.data(), localExtra.size());
        Append(out, stored.data(), stored.size());

        uint64_t cSize = e.compressedSize.value_or(stored.size());
        uint64_t uSize = e.uncompressedSize.value_or(e.content.size());
        uint64_t where = e.localHeaderOffset.value_or(offset);
        std::vector<uint8_t> extra;
        if (e.zip64) {
            std::vector<uint8_t> z;
            Put64(z, uSize);
            Put64(z, cSize);
            Put64(z, where);
            extra = ExtraRecord(1, z);
        }
        Append(extra, e.centralExtra.data(), e.centralExtra.size());
        Put32(central, 0x02014B50);
        Put16(central, 20);
        Put16(central, e.version);
        Put16(central, flags);
        Put16(central, e.method);
        Put16(central, e.dosTime);
        Put16(central, e.dosDate);
        Put32(central, crc);
        Put32(central, Mark32(cSize, e.zip64));
        Put32(central, Mark32(uSize, e.zip64));
        Put16(central, uint32_t(e.name.size()));
        Put16(central, uint32_t(extra.size()));
        Put16(central, uint32_t(e.comment.size()));
        Put16(central, 0);
        Put16(central, 0);
        Put32(central, 0);
        Put32(central, Mark32(where, e.zip64));
        Append(central, e.name.data(), e.name.size());
        Append(central, extra.data(), extra.size());
        Append(central, e.comment.data(), e.comment.size());
    }
    uint64_t directoryOffset = a.directoryOffset.value_or(out.size());
    uint64_t directorySize = a.directorySize.value_or(central.size());
    Append(out, central.data(), central.size());
    uint64_t count = a.entries.size();
    if (a.zip64End) {
        uint64_t recordOffset = out.size();
        bool v2 = a.zip64VersionNeeded >= 62;
        Put32(out, 0x06064B50);
        Put64(out, v2 ? 72 : 44);
        Put16(out, 45);
        Put16(out, a.zip64VersionNeeded);
        Put32(out, 0);
        Put32(out, 0);
        Put64(out, count);
        Put64(out, count);
        Put64(out, directorySize);
        Put64(out, directoryOffset);
        if (v2) {
            Put16(out, a.zip64DirectoryMethod);  // offset 56
            for (int i = 0; i < 16; ++i)         // sizes
                out.push_back(0);
            Put16(out, 0);  // offset 74: encryption algorithm
            for (int i = 0; i < 10; ++i)
                out.push_back(0);
        }
        Put32(out, 0x07064B50);
        Put32(out, a.locatorDisk.value_or(0));
        Put64(out, a.zip64RecordOffset.value_or(recordOffset));
        Put32(out, 1);
    }
    Put32(out, 0x06054B50);
    Put16(out, a.diskNumber.value_or(0));
    Put16(out, 0);
    Put16(out, a.entriesOnDisk.value_or(a.zip64End ? 0xFFFF : uint16_t(count)));
    Put16(out, a.entriesTotal.value_or(a.zip64End ? 0xFFFF : uint16_t(count)));
    Put32(out, a.zip64End ? 0xFFFFFFFFu : uint32_t(directorySize));
    Put32(out, a.zip64End ? 0xFFFFFFFFu : uint32_t(directoryOffset));
    Put16(out, uint16_t(a.comment.size()));
    Append(out, a.comment.data(), a.comment.size());
    return out;
}

size_t EndRecordOffset(const std::vector<uint8_t>& zip) {
    for (size_t i = zip.size() >= 22 ? zip.size() - 22 + 1 : 0; i-- > 0;)
        if (zip[i] == 'P' && zip[i + 1] == 'K' && zip[i + 2] == 5 && zip[i + 3] == 6)
            return i;
    return SIZE_MAX;
}

Ref<IStream> StreamOn(const std::vector<uint8_t>& bytes) {
    return Ref<IStream>(BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size()));
}

Ref<IStream> EmptyStream() { return Ref<IStream>(BrmUtils::CreateMemStreamOwning({})); }

HostStream::HostStream(std::vector<uint8_t>& bytes, HostStream* destination)
    : MemStream(new BrmUtils::DataContainer::Vector(bytes)), destination(destination) {
    GetContainer()->Release();  // the stream's own reference is the only one
}

HRESULT HostStream::QueryInterface(REFIID riid, void** out) {
    if (!destination || std::memcmp(&riid, &IID_IDestinationStreamFactory, sizeof(IID)) != 0) {
        return MemStream::QueryInterface(riid, out);
    }
    *out = static_cast<IDestinationStreamFactory*>(this);
    AddRef();
    return S_OK;
}

HRESULT HostStream::GetDestinationStream(IStream** out) {
    if (FAILED(refusal)) return refusal;
    destination->AddRef();
    *out = destination;
    return S_OK;
}

HRESULT HostStream::Write(const void* pv, ULONG cb, ULONG* written) {
    return failWrites ? STG_E_WRITEFAULT : MemStream::Write(pv, cb, written);
}

std::vector<uint8_t> Contents(IStream* stream) {
    ULARGE_INTEGER at{};
    stream->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, &at);
    return ReadAll(stream);
}

std::vector<uint8_t> ReadAll(IStream* stream, size_t chunk, int32_t* result) {
    std::vector<uint8_t> out;
    std::vector<uint8_t> buffer(chunk);
    if (result)
        *result = S_OK;
    for (;;) {
        ULONG got = 0;
        HRESULT hr = stream->Read(buffer.data(), ULONG(chunk), &got);
        out.insert(out.end(), buffer.begin(), buffer.begin() + std::min<size_t>(got, chunk));
        if (FAILED(hr)) {
            if (result)
                *result = hr;
            break;
        }
        if (got == 0)
            break;
    }
    return out;
}

std::vector<uint8_t> ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

TempDir::TempDir() {
    std::string base = std::filesystem::temp_directory_path().string() + "/ziptest-XXXXXX";
    std::vector<char> name(base.begin(), base.end());
    name.push_back('\0');
    path_ = mkdtemp(name.data()) ? std::string(name.data()) : std::string();
}

TempDir::~TempDir() {
    std::error_code ignored;
    if (!path_.empty())
        std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TempDir::List() const {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(path_, ignored))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool HaveTool(const char* name) { return RunCommand(std::string("command -v ") + name + " >/dev/null 2>&1") == 0; }

int RunCommand(const std::string& command, std::string* output) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return -1;
    std::array<char, 4096> buffer{};
    std::string text;
    size_t n = 0;
    while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        text.append(buffer.data(), n);
    int status = pclose(pipe);
    if (output)
        *output = text;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Quote(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

}  // namespace ziptest
