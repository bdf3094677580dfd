// TestDocs: object-archive exchange metafiles.
#include "tests/support/archive/ArchiveWriter.h"

#include "tests/support/zip/ZipTestArchive.h"

namespace TestDocs {

namespace {

ByteWriter& U64(ByteWriter& out, uint64_t v) { return out.U32(uint32_t(v)).U32(uint32_t(v >> 32)); }

void WriteRecord(ByteWriter& out, const ArchiveRecord& record) {
    out.U32(record.tag).U32(record.sizeField.value_or(uint32_t(record.payload.size()))).Append(record.payload);
}

}  // namespace

ArchiveRecord U32Record(uint32_t tag, uint32_t value) {
    ByteWriter p;
    p.U32(value);
    return {tag, p.Take(), {}};
}

ArchiveRecord BboxRecord(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    ByteWriter p;
    p.I32(left).I32(top).I32(right).I32(bottom);
    return {Tag("bbox"), p.Take(), {}};
}

ArchiveRecord PageRecord(uint32_t count) {
    ByteWriter p;
    p.U32(count);
    for (uint32_t i = 0; i < count; ++i) p.U32(100 + i);
    return {Tag("page"), p.Take(), {}};
}

ArchiveRecord StringRecord(uint32_t tag, const std::string& utf8) {
    ByteWriter p;
    p.U32(uint32_t(utf8.size())).Append(Bytes(utf8.begin(), utf8.end()));
    return {tag, p.Take(), {}};
}

ArchiveRecord IndexRecord(const std::vector<uint64_t>& entries, std::optional<int32_t> count) {
    ByteWriter p;
    p.I32(count.value_or(int32_t(entries.size())));
    for (uint64_t e : entries) U64(p, e);
    return {Tag("indx"), p.Take(), {}};
}

Bytes RawDeflate(const Bytes& plain) { return ziptest::RawDeflate(plain); }

Bytes JmvArchive(const ArchiveOptions& o, ArchiveLayout* layout) {
    ByteWriter out;
    out.U32(o.magic).U32(o.headerValue).U32(uint32_t(o.name.size())).Append(Bytes(o.name.begin(), o.name.end()));
    out.U8(o.compressed ? 1 : 0);
    for (const HeaderRecord& r : o.headerRecords) out.I32(r.tag).U32(uint32_t(r.data.size())).Append(r.data);
    out.I32(0).U32(0);
    out.Append(o.objects);

    auto section = [&](const Bytes& plain) { out.Append(o.compressed ? RawDeflate(plain) : plain); };

    ArchiveLayout where;
    if (o.thumbnail) {
        where.thumbnailOffset = out.Get().size();
        ByteWriter record;
        record.U32(0).U32(0).U32(o.thumbnailTag).U32(o.thumbnailSize.value_or(uint32_t(o.thumbnail->size())));
        record.Append(*o.thumbnail);
        section(record.Get());
    }

    where.metaOffset = out.Get().size();
    ByteWriter body;
    for (const ArchiveRecord& r : o.meta) WriteRecord(body, r);
    std::vector<uint64_t> index = o.index.value_or(std::vector<uint64_t>{0, where.thumbnailOffset});
    if (!index.empty()) WriteRecord(body, IndexRecord(index));
    if (o.closeMeta) body.U32(0).U32(0);
    ByteWriter meta;
    meta.U32(o.metaTag).U32(uint32_t(body.Get().size())).Append(body.Get());
    section(meta.Get());

    U64(out, o.metaOffset.value_or(where.metaOffset));
    if (layout) *layout = where;
    return out.Take();
}

}  // namespace TestDocs
