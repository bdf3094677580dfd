// TestDocs: builds RIFF documents in memory for tests, benchmarks and fuzz
// corpora. Any form and version, chunks and LISTs, lying sizes and missing
// pad bytes, compressed `cmpr` sections with `CPng` blocks and block tables.
// The chunks the drawing reader reads (`sumi`, `vrsn`, `INFO`, `url `,
// `doc ` with `fntt` and `mcfg`, pages, `DISP`) have builders of their own in
// DrawingChunks.h.
//
// A document is a tree of Chunk values turned into bytes by Riff():
//
//   using namespace TestDocs;
//   Bytes file = Riff(Tag("KVD8"), {
//       VrsnChunk(801),
//       DataChunk(Tag("abcd"), {1, 2, 3}),            // odd: a pad byte follows
//       ListChunk(Tag("doc "), {DataChunk(Tag("tdlt"), {})}),
//       CompressedSection({PageList(), DispChunk(DibParams{})}),
//   });
//   IStream* s = BrmUtils::CreateMemStreamOnBytes(file.data(), file.size());
//
// Sizes are computed unless a Chunk's sizeField says otherwise; pad bytes
// are written after odd data unless pad is cleared. Inside a compressed
// section each chunk's size field becomes an index into the block table,
// whose entry holds the size (or the sizeField override).
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace TestDocs {

using Bytes = std::vector<uint8_t>;

// The four-character code as a number: Tag("RIFF") == 0x46464952.
constexpr uint32_t Tag(const char (&text)[5]) {
    return uint32_t(uint8_t(text[0])) | uint32_t(uint8_t(text[1])) << 8 | uint32_t(uint8_t(text[2])) << 16 |
           uint32_t(uint8_t(text[3])) << 24;
}

// Appends little-endian values to a byte vector.
class ByteWriter {
public:
    ByteWriter& U8(uint8_t v);
    ByteWriter& U16(uint16_t v);
    ByteWriter& U32(uint32_t v);
    ByteWriter& I32(int32_t v) { return U32(uint32_t(v)); }
    ByteWriter& F32(float v);
    ByteWriter& Append(const Bytes& more);
    ByteWriter& Zeros(size_t count);
    const Bytes& Get() const { return bytes; }
    Bytes Take() { return std::move(bytes); }

private:
    Bytes bytes;
};

struct Chunk {
    uint32_t tag = 0;       // for a list: its list type
    bool list = false;      // written as `LIST`, size, list type, body
    Bytes data;             // a chunk's data; for a list, raw bytes before the children
    std::vector<Chunk> children;
    // Written instead of the true size field (for a list the field counts
    // the list type, as in the file). In a compressed section with a table,
    // this goes into the table entry.
    std::optional<uint32_t> sizeField;
    bool pad = true;        // a pad byte after odd data
};

Chunk DataChunk(uint32_t tag, Bytes data);
Chunk ListChunk(uint32_t listType, std::vector<Chunk> children);

// Damage done to a section's data block.
enum class Damage {
    None,
    BadBlockType,  // inflating fails at the first byte
    BadChecksum,   // everything inflates, then the zlib check fails
};

// How a compressed section is written; the defaults make a sound one.
struct SectionOptions {
    bool table = true;                  // sizes as indices into a block table
    uint32_t magic = Tag("CPng");       // block header fields, for damaged blocks
    uint16_t headerWord1 = 1;
    uint16_t headerWord2 = 4;
    int level = 6;                      // zlib level
    std::optional<uint32_t> compressedDataSize;    // stated sizes, to lie
    std::optional<uint32_t> uncompressedDataSize;
    std::optional<uint32_t> compressedTableSize;
    std::optional<uint32_t> uncompressedTableSize;
    Damage damage = Damage::None;
    bool truncateTable = false; // the table block inflates to less than stated
};

// A `LIST cmpr` holding the children, compressed.
Chunk CompressedSection(const std::vector<Chunk>& children, const SectionOptions& options = {});
// A `LIST cmpr` over a chunk stream built by the caller: sizes in it are
// taken as they stand (indices if table is given and options.table is set).
Chunk CompressedSectionRaw(const Bytes& chunkStream, const std::vector<uint32_t>& table,
                           const SectionOptions& options = {});

// The bytes of a chunk as they stand in a file: header, data, pad byte.
Bytes Serialize(const Chunk& chunk);
// A whole file: "RIFF", size (computed unless given), form, children.
Bytes Riff(uint32_t form, const std::vector<Chunk>& children, std::optional<uint32_t> riffSize = {});

// A zlib stream of the bytes (header, deflate data, checksum).
Bytes Deflate(const Bytes& plain, int level = 6);
// A `CPng` block: the 8-byte header and a zlib stream.
Bytes Block(const Bytes& plain, const SectionOptions& options = {});

}  // namespace TestDocs
