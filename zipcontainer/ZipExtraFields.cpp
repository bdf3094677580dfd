// Extra-field records, read and written. The walk trusts no size field: a
// record that would pass the end of the field ends the walk.
#include "zipcontainer/ZipExtraFields.h"

#include <zlib.h>

#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipText.h"

using namespace ZipFormat;

namespace ZipExtraFields {
namespace {

void ApplyZip64(const uint8_t* data, size_t size, const CentralValues& plain, ZipMember& member) {
    size_t at = 0;
    // Each value is there only when its plain field says so; one that doesn't
    // fit in the record isn't taken, but the place is counted all the same.
    if (plain.plainUncompressedSize == kMax32) {
        if (at + 8 <= size)
            member.uncompressedSize = Get64(data + at);
        at += 8;
    }
    if (plain.plainCompressedSize == kMax32) {
        if (at + 8 <= size)
            member.compressedSize = Get64(data + at);
        at += 8;
    }
    if (plain.plainLocalHeaderOffset == kMax32) {
        if (at + 8 <= size)
            member.localHeaderOffset = Get64(data + at);
        at += 8;
    }
    // The disk start would follow; a member is never on another disk here, so
    // there is nothing to take from it.
}

void ApplyNtfs(const uint8_t* data, ZipMember& member) {
    if (Get16(data + 4) == 1 && Get16(data + 6) == 24) {
        member.modified = UInt64ToFileTime(Get64(data + 8));
        member.accessed = UInt64ToFileTime(Get64(data + 16));
        member.created = UInt64ToFileTime(Get64(data + 24));
    }
}

// A unicode record counts only if it was made from the very bytes the header
// holds: version 1 and the CRC of those bytes.
bool UnicodeMatches(const uint8_t* data, const uint8_t* raw, size_t rawLength) {
    if (data[0] != 1)
        return false;
    uint32_t crc = uint32_t(::crc32(0L, Z_NULL, 0));
    if (rawLength)
        crc = uint32_t(::crc32_z(crc, raw, rawLength));
    return Get32(data + 1) == crc;
}

void PutRecordHead(std::vector<uint8_t>& out, uint16_t id, size_t size) {
    Put16(out, id);
    Put16(out, uint32_t(size));
}

}  // namespace

void Apply(const uint8_t* extra, size_t length, const CentralValues& plain, ZipMember& member) {
    size_t at = 0;
    while (at + 4 <= length) {
        uint16_t id = Get16(extra + at);
        size_t size = Get16(extra + at + 2);
        if (size > length - at - 4)
            break;
        const uint8_t* data = extra + at + 4;
        at += 4 + size;
        if (id == kExtraZip64) {
            ApplyZip64(data, size, plain, member);
        } else if (id == kExtraNtfs && size >= 32) {
            ApplyNtfs(data, member);
        } else if (id == kExtraUnicodePath && size >= 5) {
            if (UnicodeMatches(data, plain.rawName, plain.rawNameLength))
                member.name = ZipText::FromUtf8(data + 5, size - 5);
        } else if (id == kExtraUnicodeComment && size >= 5) {
            if (UnicodeMatches(data, plain.rawComment, plain.rawCommentLength))
                member.comment = ZipText::FromUtf8(data + 5, size - 5);
        } else {
            member.extras.push_back(ZipExtraRecord{id, std::vector<uint8_t>(data, data + size)});
        }
    }
}

void AppendZip64(std::vector<uint8_t>& out, const ZipMember& member, bool withOffset) {
    bool bigUncompressed = member.uncompressedSize >= kMax32;
    bool bigCompressed = member.compressedSize >= kMax32;
    bool bigOffset = withOffset && member.localHeaderOffset >= kMax32;
    size_t size = 8 * (size_t(bigUncompressed) + size_t(bigCompressed) + size_t(bigOffset));
    if (size == 0)
        return;
    PutRecordHead(out, kExtraZip64, size);
    if (bigUncompressed)
        Put64(out, member.uncompressedSize);
    if (bigCompressed)
        Put64(out, member.compressedSize);
    if (bigOffset)
        Put64(out, member.localHeaderOffset);
}

void AppendNtfsTimes(std::vector<uint8_t>& out, const ZipMember& member) {
    PutRecordHead(out, kExtraNtfs, 32);
    Put32(out, 0);
    Put16(out, 1);
    Put16(out, 24);
    Put64(out, FileTimeToUInt64(member.modified));
    Put64(out, FileTimeToUInt64(member.accessed));
    Put64(out, FileTimeToUInt64(member.created));
}

void AppendKept(std::vector<uint8_t>& out, const ZipMember& member) {
    for (const ZipExtraRecord& record : member.extras) {
        PutRecordHead(out, record.id, record.data.size());
        out.insert(out.end(), record.data.begin(), record.data.end());
    }
}

}  // namespace ZipExtraFields
