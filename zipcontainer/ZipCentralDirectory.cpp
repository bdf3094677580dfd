// Central headers, one after another. Every length is checked against the
// directory buffer before it is used, so a lying header fails the read.
#include "zipcontainer/ZipCentralDirectory.h"

#include <algorithm>

#include "platform/Time.h"
#include "zipcontainer/ZipExtraFields.h"
#include "zipcontainer/ZipFormat.h"
#include "zipcontainer/ZipText.h"

using namespace ZipFormat;

namespace ZipCentralDirectory {
namespace {

// The stored DOS stamp counts as local time. The conversion asks the time
// zone rules each time, which costs a file system lookup; members written
// together mostly share their stamp, so the last one is remembered.
class DosStampConverter {
public:
    FILETIME Convert(uint16_t date, uint16_t time) {
        uint32_t stamp = (uint32_t(date) << 16) | time;
        if (!valid_ || stamp != lastStamp_) {
            FILETIME local{};
            lastResult_ = FILETIME{};
            if (DosDateTimeToFileTime(date, time, &local))
                LocalFileTimeToFileTime(&local, &lastResult_);
            lastStamp_ = stamp;
            valid_ = true;
        }
        return lastResult_;
    }

private:
    bool valid_ = false;
    uint32_t lastStamp_ = 0;
    FILETIME lastResult_{};
};

}  // namespace

bool Parse(const uint8_t* data, size_t size, uint64_t entries, std::vector<ZipMember>& members) {
    members.clear();
    // Every header takes at least 46 bytes, so no count beyond that can be
    // real; reserving more would only let a size field allocate.
    members.reserve(size_t(std::min<uint64_t>(entries, size / kCentralHeaderSize)));
    DosStampConverter stamps;
    size_t q = 0;
    for (uint64_t i = 0; i < entries; ++i) {
        if (size - q < kCentralHeaderSize)
            return false;
        const uint8_t* h = data + q;
        if (Get32(h) != kCentralHeaderSignature)
            return false;
        size_t nameLength = Get16(h + 28);
        size_t extraLength = Get16(h + 30);
        size_t commentLength = Get16(h + 32);
        size_t recordLength = kCentralHeaderSize + nameLength + extraLength + commentLength;
        if (size - q < recordLength)
            return false;
        q += recordLength;

        uint16_t flags = uint16_t(Get16(h + 8) & ~kFlagDataDescriptor);
        uint16_t method = Get16(h + 10);
        if ((flags & kFlagsUnsupported) != 0 || (method != kMethodStored && method != kMethodDeflated))
            continue;

        ZipMember m;
        m.versionNeeded = Get16(h + 6);
        m.flags = flags;
        m.method = method;
        m.modified = m.accessed = m.created = stamps.Convert(Get16(h + 14), Get16(h + 12));
        m.crc32 = Get32(h + 16);
        m.compressedSize = Get32(h + 20);
        m.uncompressedSize = Get32(h + 24);
        m.internalAttributes = Get16(h + 36);
        m.externalAttributes = Get32(h + 38);
        m.localHeaderOffset = Get32(h + 42);

        const uint8_t* name = h + kCentralHeaderSize;
        const uint8_t* extra = name + nameLength;
        const uint8_t* comment = extra + extraLength;
        if (flags & kFlagUtf8) {
            m.name = ZipText::FromUtf8UpToNul(name, nameLength);
            m.comment = ZipText::FromUtf8UpToNul(comment, commentLength);
        } else {
            m.name = ZipText::FromAnsi(name, nameLength);
            m.comment = ZipText::FromAnsi(comment, commentLength);
        }

        ZipExtraFields::CentralValues plain;
        plain.rawName = name;
        plain.rawNameLength = nameLength;
        plain.rawComment = comment;
        plain.rawCommentLength = commentLength;
        plain.plainCompressedSize = Get32(h + 20);
        plain.plainUncompressedSize = Get32(h + 24);
        plain.plainLocalHeaderOffset = Get32(h + 42);
        ZipExtraFields::Apply(extra, extraLength, plain, m);
        members.push_back(std::move(m));
    }
    return true;
}

}  // namespace ZipCentralDirectory
