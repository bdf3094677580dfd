// TestDocs: builds object-archive exchange metafiles in memory.
//
// Layout written (little-endian):
//   "JMV3", u32 headerValue, u32 length + name bytes, u8 compressed flag,
//   header records (i32 tag, u32 size, data), a closing record (0, 0),
//   `objects` (filler standing for the document's objects),
//   the thumbnail record: u32 0, u32 0, u32 tag, u32 size, bytes,
//   the metadata section: "META", u32 size, records (u32 tag, u32 size,
//   payload), a closing record (0, 0),
//   u64 offset of the metadata section.
// With `compressed` set, the thumbnail record and the metadata section are
// each one raw deflate stream starting at their offsets.
//
// Unless `index` is given, an `indx` record {0, thumbnail offset} is
// appended to the metadata records (offset 0 when there is no thumbnail).
//
//   ArchiveOptions o;
//   o.meta = {U32Record(Tag("text"), 3), StringRecord(Tag("note"), "hi")};
//   o.thumbnail = PackedDib(DibParams{});
//   Bytes file = JmvArchive(o);
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/riff/RiffWriter.h"

namespace TestDocs {

struct ArchiveRecord {
    uint32_t tag = 0;
    Bytes payload;
    std::optional<uint32_t> sizeField;  // written instead of the payload's size
};

ArchiveRecord U32Record(uint32_t tag, uint32_t value);
ArchiveRecord BboxRecord(int32_t left, int32_t top, int32_t right, int32_t bottom);
// `page`: count, then count entries.
ArchiveRecord PageRecord(uint32_t count);
// `note` / `keyw`: a u32 length and the UTF-8 bytes.
ArchiveRecord StringRecord(uint32_t tag, const std::string& utf8);
// `indx`: an i32 count and the u64 entries; `count` overrides the count.
ArchiveRecord IndexRecord(const std::vector<uint64_t>& entries, std::optional<int32_t> count = {});

struct HeaderRecord {
    int32_t tag = 1;
    Bytes data;
};

struct ArchiveOptions {
    uint32_t magic = Tag("JMV3");
    uint32_t headerValue = 1;
    std::string name = "drawing";
    bool compressed = false;
    std::vector<HeaderRecord> headerRecords;
    Bytes objects = Bytes(24, 0xAB);

    uint32_t metaTag = Tag("META");
    std::vector<ArchiveRecord> meta;
    bool closeMeta = true;  // the closing record (0, 0)
    std::optional<std::vector<uint64_t>> index;  // replaces the automatic `indx`; empty vector: none

    std::optional<Bytes> thumbnail;
    uint32_t thumbnailTag = 0;
    std::optional<uint32_t> thumbnailSize;  // written instead of the true size

    std::optional<uint64_t> metaOffset;  // written instead of the true offset
};

struct ArchiveLayout {
    uint64_t thumbnailOffset = 0;  // 0 when none was written
    uint64_t metaOffset = 0;
};

Bytes JmvArchive(const ArchiveOptions& options, ArchiveLayout* layout = nullptr);

// A bare deflate stream (no zlib header or checksum).
Bytes RawDeflate(const Bytes& plain);

}  // namespace TestDocs
