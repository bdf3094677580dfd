// The compressed section format: a `LIST` of type `cmpr` whose data are four
// sizes, a data block and an optional table block. Each block is the header
// `CPng`, u16 1, u16 4, then a zlib stream. The data block inflates to a
// chunk stream in which the u32 after each tag is an index into the table
// (an array of u32 true sizes); without a table the sizes stand as they are.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ObjIdl.h"
#include "riff/Decompressor.h"

namespace KvdFileIO {

struct CompressedSectionHeader {
    uint32_t compressedDataSize;     // the data block, its header included
    uint32_t uncompressedDataSize;   // the chunk stream after inflating
    uint32_t compressedTableSize;    // the table block, its header included
    uint32_t uncompressedTableSize;  // a multiple of 4; 0: no table

    static constexpr uint64_t kSize = 16;
};

// No section may inflate to more than this, whatever its header says.
constexpr uint64_t kMaxSectionOutput = uint64_t(1) << 30;

// Reads the 16-byte header from the stream's position; false if short.
bool ReadSectionHeader(IStream* stream, CompressedSectionHeader& header);

// Reads and checks a block header at the stream's position and opens an
// inflater on the rest of the block: at most compressedSize - 8 bytes of
// input, at most uncompressedSize bytes of output. Adds its own reference on
// the stream. Null if the header is wrong or zlib refuses.
std::unique_ptr<KvdCpr::Decompressor> MakeDecompressor(IStream* stream, uint64_t compressedSize,
                                                       uint64_t uncompressedSize);

// Inflates the table block at the stream's position into table. False if
// the block cannot be opened or gives fewer bytes than the header states.
// Memory grows with what actually inflates, not with the stated size.
bool ReadBlockTable(IStream* stream, const CompressedSectionHeader& header, std::vector<uint32_t>& table);

// The output limit for the data block of a section with this header.
uint64_t SectionOutputLimit(const CompressedSectionHeader& header);

}  // namespace KvdFileIO
