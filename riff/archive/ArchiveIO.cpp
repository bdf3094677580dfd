// DecompressIO: a stream read plainly or as raw deflate data.
#include "riff/archive/ArchiveIO.h"

#include "riff/DecompressorDeflate.h"

namespace udi {

DecompressIO::DecompressIO(IStream* source) : stream(source) {
    if (stream) stream->AddRef();
    Restart();
}

DecompressIO::~DecompressIO() {
    if (decompressor) decompressor->Close();
    decompressor.reset();
    if (stream) stream->Release();
}

void DecompressIO::Restart() {
    if (decompressor) decompressor->Close();
    decompressor.reset();
    if (compressed) {
        // The archive's sections carry no block header and no stated size:
        // the deflate data end themselves.
        KvdCpr::DeflateParams params;
        params.level = -1;
        params.memLevel = 9;
        params.windowBits = 15;
        params.raw = true;
        decompressor = std::make_unique<KvdCpr::DecompressorDeflate>();
        if (stream) stream->AddRef();
        decompressor->Open(stream, BrmUtils::Any(params));
    } else {
        decompressor = std::make_unique<KvdCpr::DecompressorNone>();
        if (stream) stream->AddRef();
        decompressor->Open(stream, BrmUtils::Any());
    }
}

bool DecompressIO::Read(void* buffer, uint64_t count, uint64_t& bytesRead) {
    bytesRead = 0;
    bool ok = decompressor->Read(buffer, count, bytesRead);
    if (ok) position += bytesRead;
    return ok;
}

bool DecompressIO::ReadExact(void* buffer, uint64_t count) {
    uint64_t got = 0;
    return Read(buffer, count, got) && got == count;
}

bool DecompressIO::Skip(uint64_t count) {
    position += count;
    return decompressor->Skip(count);
}

uint64_t DecompressIO::SeekRaw(int64_t offset, uint32_t origin) {
    if (decompressor) decompressor->Close();
    decompressor.reset();
    ULARGE_INTEGER now;
    now.QuadPart = 0;
    bool ok = stream && SUCCEEDED(stream->Seek(MakeLargeInteger(offset), origin, &now));
    Restart();
    return ok ? now.QuadPart : 0;
}

uint64_t DecompressIO::Seek(int64_t offset, uint32_t origin) {
    if (origin == STREAM_SEEK_CUR && offset >= 0) {
        Skip(uint64_t(offset));
        return 0;
    }
    return SeekRaw(offset, origin);
}

}  // namespace udi
