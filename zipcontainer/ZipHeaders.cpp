// Building the records of a written archive. Names and comments are UTF-8,
// and flag 0x800 says so in every header.
#include "zipcontainer/ZipHeaders.h"

#include "platform/Time.h"
#include "zipcontainer/ZipExtraFields.h"
#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipText.h"

using BrmPlatform::BrmStringW;
using namespace ZipFormat;

namespace ZipHeaders {
namespace {

// UTF-8 cut to what a 16-bit length can say, at a character boundary.
std::string Utf8Field(const BrmStringW& text) {
    std::string s = ZipText::ToUtf8(text);
    if (s.size() > kMax16) {
        size_t cut = kMax16;
        while (cut > 0 && (uint8_t(s[cut]) & 0xC0) == 0x80)
            --cut;
        s.resize(cut);
    }
    return s;
}

// The stamp of a header: the file time in local time, as DOS date and time.
void DosStamp(const FILETIME& time, uint16_t& date, uint16_t& clock) {
    FILETIME local{};
    WORD d = 0;
    WORD t = 0;
    if (FileTimeToLocalFileTime(&time, &local) && FileTimeToDosDateTime(&local, &d, &t)) {
        date = d;
        clock = t;
    } else {
        date = 0x21;  // 1980-01-01, the first day a DOS stamp can hold
        clock = 0;
    }
}

// Kept records follow the ones the writer makes, as long as the field's
// 16-bit length allows.
void AppendKeptWithin(std::vector<uint8_t>& extra, const ZipMember& member) {
    for (const ZipExtraRecord& record : member.extras) {
        if (extra.size() + 4 + record.data.size() > kMax16)
            break;
        Put16(extra, record.id);
        Put16(extra, uint32_t(record.data.size()));
        extra.insert(extra.end(), record.data.begin(), record.data.end());
    }
}

std::vector<uint8_t> LocalExtra(const ZipMember& member) {
    std::vector<uint8_t> extra;
    if (!(member.flags & kFlagDataDescriptor))
        ZipExtraFields::AppendZip64(extra, member, false);
    AppendKeptWithin(extra, member);
    return extra;
}

}  // namespace

uint16_t LocalExtraLength(const ZipMember& member) { return uint16_t(LocalExtra(member).size()); }

std::vector<uint8_t> Local(const ZipMember& member, bool withExtra, uint16_t extraLength) {
    std::string name = Utf8Field(member.name);
    std::vector<uint8_t> extra;
    if (withExtra) {
        extra = LocalExtra(member);
        extraLength = uint16_t(extra.size());
    }
    bool descriptor = (member.flags & kFlagDataDescriptor) != 0;
    uint16_t date = 0;
    uint16_t clock = 0;
    DosStamp(member.modified, date, clock);

    std::vector<uint8_t> out;
    out.reserve(kLocalHeaderSize + name.size() + extra.size());
    Put32(out, kLocalHeaderSignature);
    Put16(out, member.versionNeeded);
    Put16(out, member.flags | kFlagUtf8);
    Put16(out, member.method);
    Put16(out, clock);
    Put16(out, date);
    Put32(out, descriptor ? 0 : member.crc32);
    Put32(out, descriptor ? 0 : Cut32(member.compressedSize));
    Put32(out, descriptor ? 0 : Cut32(member.uncompressedSize));
    Put16(out, uint32_t(name.size()));
    Put16(out, extraLength);
    if (withExtra) {
        out.insert(out.end(), name.begin(), name.end());
        out.insert(out.end(), extra.begin(), extra.end());
    }
    return out;
}

bool CentralNeedsZip64(const ZipMember& member) {
    return member.compressedSize >= kMax32 || member.uncompressedSize >= kMax32 ||
           member.localHeaderOffset >= kMax32;
}

std::vector<uint8_t> Central(const ZipMember& member) {
    std::string name = Utf8Field(member.name);
    std::string comment = Utf8Field(member.comment);
    std::vector<uint8_t> extra;
    ZipExtraFields::AppendNtfsTimes(extra, member);
    ZipExtraFields::AppendZip64(extra, member, true);
    AppendKeptWithin(extra, member);
    uint16_t date = 0;
    uint16_t clock = 0;
    DosStamp(member.modified, date, clock);

    std::vector<uint8_t> out;
    out.reserve(kCentralHeaderSize + name.size() + extra.size() + comment.size());
    Put32(out, kCentralHeaderSignature);
    Put16(out, kVersionZip64);  // version made by
    Put16(out, member.versionNeeded);
    Put16(out, member.flags | kFlagUtf8);
    Put16(out, member.method);
    Put16(out, clock);
    Put16(out, date);
    Put32(out, member.crc32);
    Put32(out, Cut32(member.compressedSize));
    Put32(out, Cut32(member.uncompressedSize));
    Put16(out, uint32_t(name.size()));
    Put16(out, uint32_t(extra.size()));
    Put16(out, uint32_t(comment.size()));
    Put16(out, 0);  // disk start
    Put16(out, member.internalAttributes);
    Put32(out, member.externalAttributes);
    Put32(out, Cut32(member.localHeaderOffset));
    out.insert(out.end(), name.begin(), name.end());
    out.insert(out.end(), extra.begin(), extra.end());
    out.insert(out.end(), comment.begin(), comment.end());
    return out;
}

std::vector<uint8_t> DataDescriptor(const ZipMember& member) {
    std::vector<uint8_t> out;
    Put32(out, kDataDescriptorSignature);
    Put32(out, member.crc32);
    Put64(out, member.compressedSize);
    Put64(out, member.uncompressedSize);
    return out;
}

std::vector<uint8_t> EndRecords(const EndValues& v) {
    std::vector<uint8_t> out;
    if (v.zip64) {
        uint64_t recordOffset = v.directoryOffset + v.directorySize;
        Put32(out, kZip64EndRecordSignature);
        Put64(out, kZip64EndRecordSize - 12);
        Put16(out, kVersionZip64);
        Put16(out, kVersionZip64);
        Put32(out, 0);
        Put32(out, 0);
        Put64(out, v.entries);
        Put64(out, v.entries);
        Put64(out, v.directorySize);
        Put64(out, v.directoryOffset);
        Put32(out, kZip64LocatorSignature);
        Put32(out, 0);
        Put64(out, recordOffset);
        Put32(out, 1);
    }
    uint32_t entries = v.entries >= kMax16 ? kMax16 : uint32_t(v.entries);
    Put32(out, kEndRecordSignature);
    Put16(out, 0);
    Put16(out, 0);
    Put16(out, entries);
    Put16(out, entries);
    Put32(out, Cut32(v.directorySize));
    Put32(out, Cut32(v.directoryOffset));
    Put16(out, uint32_t(std::min<size_t>(v.narrowComment.size(), kMax16)));
    if (!v.narrowComment.empty()) {
        // Behind a comment stand always 8 bytes, whatever its length says:
        // the files this format's writers have always made are laid out so.
        static const uint8_t kFiller[8] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
        out.insert(out.end(), kFiller, kFiller + 8);
    }
    return out;
}

}  // namespace ZipHeaders
