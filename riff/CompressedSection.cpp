// Reading the parts of a compressed section: its header, its blocks, its
// block table.
#include "riff/CompressedSection.h"

#include <algorithm>

#include "riff/DecompressorDeflate.h"
#include "riff/FourCC.h"
#include "utils/streams/StreamHelpers.h"

namespace KvdFileIO {

namespace {
constexpr uint64_t kBlockHeaderSize = 8;
constexpr uint64_t kTableStep = 65536;

uint32_t LoadU32(const uint8_t* p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}
uint16_t LoadU16(const uint8_t* p) {
    return uint16_t(p[0] | p[1] << 8);
}
}  // namespace

bool ReadSectionHeader(IStream* stream, CompressedSectionHeader& header) {
    uint8_t bytes[CompressedSectionHeader::kSize];
    if (!BrmUtils::ReadExactly(stream, bytes, sizeof bytes)) return false;
    header.compressedDataSize = LoadU32(bytes);
    header.uncompressedDataSize = LoadU32(bytes + 4);
    header.compressedTableSize = LoadU32(bytes + 8);
    header.uncompressedTableSize = LoadU32(bytes + 12);
    return true;
}

std::unique_ptr<KvdCpr::Decompressor> MakeDecompressor(IStream* stream, uint64_t compressedSize,
                                                       uint64_t uncompressedSize) {
    uint8_t bytes[kBlockHeaderSize];
    if (!BrmUtils::ReadExactly(stream, bytes, sizeof bytes)) return nullptr;
    if (LoadU32(bytes) != kBlockMagic || LoadU16(bytes + 4) != 1 || LoadU16(bytes + 6) != 4) return nullptr;
    if (compressedSize < kBlockHeaderSize) return nullptr;

    auto decompressor = std::make_unique<KvdCpr::DecompressorDeflate>();
    stream->AddRef();  // handed over to Open
    if (!decompressor->Open(stream, compressedSize - kBlockHeaderSize, uncompressedSize, BrmUtils::Any())) {
        decompressor->Close();
        return nullptr;
    }
    return decompressor;
}

bool ReadBlockTable(IStream* stream, const CompressedSectionHeader& header, std::vector<uint32_t>& table) {
    table.clear();
    uint64_t entries = header.uncompressedTableSize / 4;
    if (entries == 0) return true;
    uint64_t wanted = entries * 4;
    std::unique_ptr<KvdCpr::Decompressor> decompressor =
        MakeDecompressor(stream, header.compressedTableSize, wanted);
    if (!decompressor) return false;

    // Grow with what arrives: a header may claim a table of gigabytes.
    std::vector<uint8_t> bytes;
    bool ok = true;
    while (bytes.size() < wanted) {
        uint64_t have = bytes.size();
        uint64_t step = std::min(kTableStep, wanted - have);
        bytes.resize(have + step);
        uint64_t got = 0;
        ok = decompressor->Read(bytes.data() + have, step, got);
        bytes.resize(have + got);
        if (!ok || got < step) break;
    }
    decompressor->Close();
    if (!ok || bytes.size() < wanted) return false;

    table.resize(entries);
    for (uint64_t i = 0; i < entries; ++i) table[i] = LoadU32(bytes.data() + 4 * i);
    return true;
}

uint64_t SectionOutputLimit(const CompressedSectionHeader& header) {
    if (header.uncompressedDataSize == 0) return kMaxSectionOutput;
    return std::min<uint64_t>(header.uncompressedDataSize, kMaxSectionOutput);
}

}  // namespace KvdFileIO
