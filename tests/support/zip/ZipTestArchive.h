// Hand-made zip archives for tests: every field of every record can be set
// or spoiled, independently of the library's own writer, so that the reader
// is tested against bytes it didn't make itself. Also small helpers for the
// tests of the zip layer: streams on byte vectors, reading a stream whole,
// and running the external zip tools in a temporary folder.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ObjIdl.h"
#include "platform/PropIdl.h"
#include "utils/streams/MemStream.h"

namespace ziptest {

struct Releaser {
    template <typename T>
    void operator()(T* p) const {
        if (p)
            p->Release();
    }
};
// Holds one reference of a COM-style object.
template <typename T>
using Ref = std::unique_ptr<T, Releaser>;

std::vector<uint8_t> Bytes(std::string_view text);
// Text-like bytes that deflate well but not trivially; `seed` varies them.
std::vector<uint8_t> Text(size_t size, uint32_t seed = 0);
// Bytes that hardly compress.
std::vector<uint8_t> Noise(size_t size, uint32_t seed = 0);
// Raw deflate; without `finish` the data end in a full flush, not in a
// final block, so that more blocks can follow.
std::vector<uint8_t> RawDeflate(const std::vector<uint8_t>& data, int level = 6, bool finish = true);
uint32_t Crc32(const std::vector<uint8_t>& data);
uint32_t Crc32(std::string_view data);

// One member of a hand-made archive.
struct Entry {
    std::string name;              // bytes as stored
    std::vector<uint8_t> content;  // uncompressed
    // The bytes stored for the member, when they aren't made from `content`.
    std::optional<std::vector<uint8_t>> data;
    uint16_t method = 0;           // 8 is deflated here; any other stores the content as is
    uint16_t flags = 0;
    uint16_t version = 20;
    uint16_t dosDate = 0x5A21;     // 2025-01-01
    uint16_t dosTime = 0x6000;     // 12:00:00
    std::string comment;
    std::vector<uint8_t> centralExtra;  // after the zip64 record, if any
    bool zip64 = false;            // sizes and offset in a zip64 record, 0xFFFFFFFF in the header
    // Central values that lie (the local header and the data stay right).
    std::optional<uint64_t> compressedSize;
    std::optional<uint64_t> uncompressedSize;
    std::optional<uint64_t> localHeaderOffset;
};

// An entry with the fields most tests set.
Entry MakeEntry(std::string name, std::vector<uint8_t> content, uint16_t method = 0);

struct Archive {
    std::vector<Entry> entries;
    std::string comment;
    bool zip64End = false;                  // zip64 record and locator, plain values marked
    // End-record values that lie.
    std::optional<uint16_t> diskNumber;
    std::optional<uint16_t> entriesOnDisk;
    std::optional<uint16_t> entriesTotal;
    std::optional<uint64_t> directorySize;
    std::optional<uint64_t> directoryOffset;
    std::optional<uint32_t> locatorDisk;
    std::optional<uint64_t> zip64RecordOffset;
    uint8_t zip64VersionNeeded = 45;
    uint16_t zip64DirectoryMethod = 0;  // written only for version 62 and above
};

std::vector<uint8_t> Build(const Archive& archive);

// Where the plain end record starts in bytes made by Build.
size_t EndRecordOffset(const std::vector<uint8_t>& zip);

std::vector<uint8_t> ExtraRecord(uint16_t id, const std::vector<uint8_t>& data);
// A unicode path (0x7075) or comment (0x6375) record for the raw bytes.
std::vector<uint8_t> UnicodeExtra(uint16_t id, std::string_view raw, std::string_view utf8, uint8_t version = 1);

// A read-only stream on a copy of the bytes.
Ref<IStream> StreamOn(const std::vector<uint8_t>& bytes);
// A writable stream that owns its bytes; Contents() reads them back.
Ref<IStream> EmptyStream();
std::vector<uint8_t> Contents(IStream* stream);
// A host's stream on a byte vector that offers a destination stream for a
// commit (when it has one, else `refusal`) and counts commits and reverts;
// it may refuse every write.
class HostStream final : public BrmUtils::MemStream, public IDestinationStreamFactory {
public:
    HostStream(std::vector<uint8_t>& bytes, HostStream* destination);
    HostStream* destination;
    HRESULT refusal = S_OK;
    bool failWrites = false;
    int commits = 0, reverts = 0;

    HRESULT QueryInterface(REFIID riid, void** out) override;
    ULONG AddRef() override { return MemStream::AddRef(); }
    ULONG Release() override { return MemStream::Release(); }
    HRESULT GetDestinationStream(IStream** out) override;
    HRESULT Write(const void* pv, ULONG cb, ULONG* written) override;
    HRESULT Commit(DWORD) override { return ++commits, S_OK; }
    HRESULT Revert() override { return ++reverts, S_OK; }
};

// Reads from the present position to the end in rounds of `chunk` bytes.
// `result` gets the first failure, or S_OK.
std::vector<uint8_t> ReadAll(IStream* stream, size_t chunk = 65536, int32_t* result = nullptr);

std::vector<uint8_t> ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes);

// A fresh folder below the temporary folder, removed with its content.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    // Names of the files in it, sorted.
    std::vector<std::string> List() const;

private:
    std::string path_;
};

// Whether a program is on the PATH.
bool HaveTool(const char* name);
// Runs a shell command; answers its exit status and, if asked, its output
// (stdout and stderr).
int RunCommand(const std::string& command, std::string* output = nullptr);
// Single-quotes a path for the shell.
std::string Quote(const std::string& text);

}  // namespace ziptest
