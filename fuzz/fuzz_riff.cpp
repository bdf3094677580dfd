// Fuzz target for the RIFF reader: opens arbitrary bytes, walks the whole
// tree (entering lists, opening compressed sections, treating some plain
// chunks as lists), and reads every chunk through its stream, with seeks.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "riff/FourCC.h"
#include "riff/RiffReader.h"
#include "utils/memory/Buffer.h"
#include "utils/streams/MemStream.h"

namespace {

void ReadThrough(KvdFileIO::RiffReader& reader, uint32_t salt) {
    IStream* stream = reader.GetChunkStream();
    if (!stream) return;
    uint8_t buffer[4096];
    ULONG got = 0;
    if (salt & 1) stream->Seek(MakeLargeInteger(int64_t(salt % 97) - 48), salt % 4, nullptr);
    while (SUCCEEDED(stream->Read(buffer, sizeof buffer, &got)) && got > 0) {
    }
    STATSTG stat{};
    stream->Stat(&stat, STATFLAG_NONAME);
    stream->Release();
    if (salt & 2) {
        BrmUtils::Memory::Buffer copy;
        uint64_t size = uint64_t(reader.GetChunkSize());
        reader.ReadChunkToBuffer(copy, size < (1u << 20) ? size + (salt & 15) : 16);
    }
}

void Walk(KvdFileIO::RiffReader& reader, int depth) {
    int steps = 0;
    while (reader.Next() && ++steps < 4096) {
        uint32_t id = reader.GetChunkId();
        uint32_t salt = id ^ uint32_t(reader.GetChunkSize()) ^ uint32_t(depth);
        if (id == KvdFileIO::kTagCompressed && reader.OpenCompressed()) continue;  // walk on inside
        ReadThrough(reader, salt);
        if (!reader.IsList() && (salt & 0x30) == 0x30) reader.SetIsList(true);
        if (reader.Descend()) {
            Walk(reader, depth + 1);
            reader.Ascend();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IStream* stream = BrmUtils::CreateMemStreamOnBytes(data, size);
    if (!stream) return 0;
    KvdFileIO::RiffReader reader(stream);
    stream->Release();
    uint32_t form = 0;
    if (reader.Open(form)) {
        reader.GetFormVersion();
        Walk(reader, 0);
        if (reader.Rewind()) reader.FindChunk(KvdFileIO::FourCC("DISP"));
    }
    reader.Close();
    return 0;
}
