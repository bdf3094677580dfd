// TestDocs: serialising chunk trees and compressed sections.
#include "tests/support/riff/RiffWriter.h"

#include <zlib.h>

#include <cstring>
#include <stdexcept>

#include "riff/CprExports.h"

namespace TestDocs {

ByteWriter& ByteWriter::U8(uint8_t v) {
    bytes.push_back(v);
    return *this;
}

ByteWriter& ByteWriter::U16(uint16_t v) {
    bytes.push_back(uint8_t(v));
    bytes.push_back(uint8_t(v >> 8));
    return *this;
}

ByteWriter& ByteWriter::U32(uint32_t v) {
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(uint8_t(v >> shift));
    return *this;
}

ByteWriter& ByteWriter::F32(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return U32(bits);
}

ByteWriter& ByteWriter::Append(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
}

ByteWriter& ByteWriter::Zeros(size_t count) {
    bytes.insert(bytes.end(), count, 0);
    return *this;
}

Chunk DataChunk(uint32_t tag, Bytes data) {
    Chunk chunk;
    chunk.tag = tag;
    chunk.data = std::move(data);
    return chunk;
}

Chunk ListChunk(uint32_t listType, std::vector<Chunk> children) {
    Chunk chunk;
    chunk.tag = listType;
    chunk.list = true;
    chunk.children = std::move(children);
    return chunk;
}

namespace {

// Writes the chunk; with a table, the size field is the index of a new
// table entry that holds the size.
void Write(const Chunk& chunk, ByteWriter& out, std::vector<uint32_t>* table) {
    Bytes body = chunk.data;
    for (const Chunk& child : chunk.children) {
        ByteWriter inner;
        Write(child, inner, table);
        body.insert(body.end(), inner.Get().begin(), inner.Get().end());
    }
    uint32_t size = uint32_t(body.size()) + (chunk.list ? 4 : 0);
    if (chunk.sizeField) size = *chunk.sizeField;
    if (table) {
        table->push_back(size);
        size = uint32_t(table->size() - 1);
    }
    out.U32(chunk.list ? Tag("LIST") : chunk.tag).U32(size);
    if (chunk.list) out.U32(chunk.tag);
    out.Append(body);
    bool odd = (body.size() & 1) != 0;
    if (odd && chunk.pad) out.U8(0);
}

Bytes SectionBody(const Bytes& stream, const std::vector<uint32_t>* table, const SectionOptions& options) {
    Bytes dataBlock = Block(stream, options);
    if (options.damage == Damage::BadBlockType) {
        // The first byte after the block and zlib headers: block type 3,
        // which no deflate stream may use, so inflating fails at once.
        dataBlock[10] = 0xFF;
    } else if (options.damage == Damage::BadChecksum) {
        // All data inflate; the check at the end fails.
        dataBlock.back() ^= 0xFF;
    }
    Bytes tableBlock;
    uint32_t tableBytes = 0;
    if (table && !table->empty()) {
        ByteWriter entries;
        for (uint32_t entry : *table) entries.U32(entry);
        Bytes plain = entries.Take();
        tableBytes = uint32_t(plain.size());
        if (options.truncateTable) plain.resize(plain.size() / 2);
        tableBlock = Block(plain, options);
    }
    ByteWriter out;
    out.U32(options.compressedDataSize.value_or(uint32_t(dataBlock.size())));
    out.U32(options.uncompressedDataSize.value_or(uint32_t(stream.size())));
    out.U32(options.compressedTableSize.value_or(uint32_t(tableBlock.size())));
    out.U32(options.uncompressedTableSize.value_or(tableBytes));
    out.Append(dataBlock).Append(tableBlock);
    return out.Take();
}

}  // namespace

Bytes Serialize(const Chunk& chunk) {
    ByteWriter out;
    Write(chunk, out, nullptr);
    return out.Take();
}

Bytes Riff(uint32_t form, const std::vector<Chunk>& children, std::optional<uint32_t> riffSize) {
    ByteWriter body;
    for (const Chunk& child : children) Write(child, body, nullptr);
    ByteWriter out;
    out.U32(Tag("RIFF")).U32(riffSize.value_or(uint32_t(body.Get().size() + 4))).U32(form).Append(body.Get());
    return out.Take();
}

Bytes Deflate(const Bytes& plain, int level) {
    z_stream z;
    std::memset(&z, 0, sizeof z);
    if (CPR_deflateInit_(&z, level, ZLIB_VERSION, int(sizeof z)) != Z_OK)
        throw std::runtime_error("deflateInit failed");
    Bytes out(plain.size() + plain.size() / 8 + 64);  // above zlib's worst case
    z.next_in = const_cast<Bytef*>(plain.data());
    z.avail_in = uInt(plain.size());
    z.next_out = out.data();
    z.avail_out = uInt(out.size());
    int rc = CPR_deflate(&z, Z_FINISH);
    CPR_deflateEnd(&z);
    if (rc != Z_STREAM_END) throw std::runtime_error("deflate did not finish");
    out.resize(z.total_out);
    return out;
}

Bytes Block(const Bytes& plain, const SectionOptions& options) {
    ByteWriter out;
    out.U32(options.magic).U16(options.headerWord1).U16(options.headerWord2).Append(Deflate(plain, options.level));
    return out.Take();
}

Chunk CompressedSection(const std::vector<Chunk>& children, const SectionOptions& options) {
    std::vector<uint32_t> table;
    ByteWriter stream;
    for (const Chunk& child : children) Write(child, stream, options.table ? &table : nullptr);
    return CompressedSectionRaw(stream.Get(), table, options);
}

Chunk CompressedSectionRaw(const Bytes& chunkStream, const std::vector<uint32_t>& table,
                           const SectionOptions& options) {
    Chunk section;
    section.tag = Tag("cmpr");
    section.list = true;
    section.data = SectionBody(chunkStream, options.table ? &table : nullptr, options);
    return section;
}

}  // namespace TestDocs
