// Opens arbitrary bytes as a zip archive and reads every member: inflated,
// raw and through the random-access wrapper, forwards, then a seek back and
// one past the middle. Nothing may crash, hang or read outside the bytes.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipFileSet.h"

namespace {

// Reads at most `limit` bytes so that a small deflate bomb stays small.
uint64_t Drain(IStream* stream, std::vector<uint8_t>& buffer, uint64_t limit) {
    uint64_t total = 0;
    while (total < limit) {
        ULONG got = 0;
        if (FAILED(stream->Read(buffer.data(), ULONG(buffer.size()), &got)) || got == 0)
            break;
        total += got;
    }
    return total;
}

void Seek(IStream* stream, uint64_t position) {
    ULARGE_INTEGER at{};
    stream->Seek(MakeLargeInteger(int64_t(position)), STREAM_SEEK_SET, &at);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IStream* file = BrmUtils::CreateMemStreamOnBytes(data, size);
    if (!file)
        return 0;
    ZipFileSetRef set = ZipFileSet::OpenFromStream(file);
    file->Release();
    if (!set)
        return 0;
    std::vector<uint8_t> buffer(4096);
    for (const ZipMember* member : set->ListMembers()) {
        for (int mode = 0; mode < 3; ++mode) {
            IStream* stream = set->OpenMember(member, mode == 1, mode == 2);
            if (!stream)
                continue;
            STATSTG st{};
            stream->Stat(&st, STATFLAG_NONAME);
            uint64_t total = Drain(stream, buffer, 64u << 20);
            Seek(stream, 0);
            Drain(stream, buffer, 8192);
            Seek(stream, total / 2 + 1);
            Drain(stream, buffer, 8192);
            stream->Release();
        }
    }
    set->FindMember(L"mimetype");
    set->FindMember(L"META-INF/");
    return 0;
}
