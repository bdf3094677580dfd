// The scan of a paint image: header, the records behind it, the objects
// (background size, fonts of text objects) and the property block.
#include "fileinfo/QpxDocumentInfo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fileinfo/QpxFormat.h"
#include "fileinfo/QpxStreamReader.h"
#include "fileinfo/ResourceManager.h"
#include "platform/CodePage.h"
#include "utils/props/PropVariantBytes.h"

namespace {

constexpr uint32_t kTextPaintImage = 1041;
constexpr uint32_t kTextVersion8 = 1042;
constexpr uint32_t kTextVersion7 = 1043;
constexpr uint32_t kTextTiff = 1044;
constexpr uint32_t kTextVersion11 = 1045;

using BrmStringW = BrmPlatform::BrmStringW;
using Rd = QpxStreamReader;

BrmStringW Resource(uint32_t id) { return ShellExt::ResourceManager::Instance().LoadStringW(id); }

// Narrow text of the ANSI code page, up to its first zero byte.
BrmStringW Narrow(const uint8_t* bytes, size_t size) {
    const size_t length = size_t(std::find(bytes, bytes + size, uint8_t(0)) - bytes);
    std::wstring text(length, L'\0');
    const int n = length ? MultiByteToWideChar(GetACP(), 0, reinterpret_cast<const char*>(bytes), int(length),
                                               text.data(), int(length))
                         : 0;
    text.resize(size_t(std::max(n, 0)));
    return BrmStringW(text.c_str());
}

// UTF-16 text up to its first zero unit.
BrmStringW Wide(const uint8_t* bytes, size_t size) {
    size_t units = 0;
    while (units * 2 + 1 < size && (bytes[units * 2] || bytes[units * 2 + 1])) ++units;
    return BrmStringW(Utf16LeToWideString(bytes, units * 2).c_str());
}

}  // namespace

double QpxResolution(uint32_t value) {
    if (value == 0) return 0.0;
    return double(int32_t(1.0 / (((1.0 / value) * 10000.0 * 1000000.0) / 254000.0) + 0.5));
}

QpxDocumentInfo::~QpxDocumentInfo() {
    for (void*& block : dibBlocks) {
        std::free(block);
        block = nullptr;
    }
    if (store) store->Release();
}

BrmUtils::MemoryPropertyStore* QpxDocumentInfo::Store() {
    if (!store) store = BrmUtils::MemoryPropertyStore::Create();
    return store;
}

bool QpxDocumentInfo::Scan(IStream* stream) {
    if (scanned) return scanResult;
    scanned = true;
    QpxStreamReader in(stream);
    scanResult = stream && ScanHeader(in);
    return scanResult;
}

bool QpxDocumentInfo::ScanHeader(QpxStreamReader& in) {
    using namespace QpxFormat;
    uint8_t header[kHeaderSize];
    if (!in.Read(header, kHeaderSize)) return false;
    if (std::memcmp(header, kDoubledMagic, 12) == 0) {
        doubledHeader = true;
        formatName = Resource(kTextVersion11);
        if (!in.Read(header, kHeaderSize)) return false;
    }
    if (std::memcmp(header, kMagic8, kMagicSize) == 0) {
        formatName = Resource(kTextVersion8);
    } else if (std::memcmp(header, kMagic7, kMagicSize) == 0) {
        formatName = Resource(kTextVersion7);
    } else if (std::memcmp(header, kMagic9, kMagicSize) == 0) {
        hasStore = true;
    } else {
        // Only the name is known of the TIFF generation.
        formatName = Resource(kTextTiff);
        return true;
    }
    binary = true;
    if (formatName.IsEmpty()) formatName = Resource(kTextPaintImage);

    resolutionX = QpxResolution(Rd::Get32(header, kResolutionXAt));
    resolutionY = QpxResolution(Rd::Get32(header, kResolutionYAt));
    colourMode = Rd::Get32(header, kColourModeAt);
    tailOffset = Rd::Get32(header, kTailOffsetAt);
    flags = Rd::Get32(header, kFlagsAt);
    wideName = (flags & kFlagWide) != 0;
    description = Narrow(header + kDescriptionAt, kDescriptionSize);

    if (!ReadRecords(in, header, this)) return false;
    if (!ScanObjects(in, header, in.Position())) return false;
    if (tailOffset != 0) {
        if (!in.Seek(uint64_t(tailOffset))) return false;
        return ScanPropertyBlock(in);
    }
    return true;
}

bool QpxDocumentInfo::ReadRecords(QpxStreamReader& in, const uint8_t* header, QpxDocumentInfo* fields) {
    using namespace QpxFormat;
    QpxDocumentInfo ignored;
    QpxDocumentInfo& into = fields ? *fields : ignored;
    const uint32_t flags = Rd::Get32(header, kFlagsAt);
    // The records behind the header, in flag order; then the header's skip.
    if (flags & kFlagExtended) {
        uint8_t record[kExtendedSize];
        if (!in.Read(record, kExtendedSize)) return false;
        into.dataOffset = int64_t(Rd::Get64(record, 0));
        into.reserved = int64_t(Rd::Get64(record, kExtendedSkipAt));
        into.tailSize = int64_t(Rd::Get64(record, kExtendedTailSizeAt));
        if (!in.Skip(Rd::Get32(record, kExtendedSkipAt))) return false;
    }
    if (flags & kFlagWide) {
        uint8_t record[kWideSize];
        if (!in.Read(record, kWideSize)) return false;
        into.description = Wide(record, kWideSize);
    }
    if (flags & kFlagSize) {
        uint8_t record[kSizeRecordSize];
        if (!in.Read(record, kSizeRecordSize)) return false;
        into.tailSize = int64_t(Rd::Get64(record, 0));
    }
    return in.Skip(Rd::Get32(header, kSkipAt));
}

bool QpxDocumentInfo::ReadTable(QpxStreamReader& in, const uint8_t* header, std::vector<uint64_t>& offsets) {
    using namespace QpxFormat;
    const uint32_t tableOffset = Rd::Get32(header, kTableOffsetAt);
    if (tableOffset != 0 && !in.Seek(tableOffset)) return false;
    const uint64_t count = Rd::Get32(header, kObjectCountAt);
    std::vector<uint8_t> table;
    if (!in.Read(table, count * 8)) return false;
    offsets.resize(size_t(count));
    for (size_t i = 0; i < offsets.size(); ++i) offsets[i] = Rd::Get64(table.data(), i * 8);
    return true;
}

bool QpxDocumentInfo::ScanObjects(QpxStreamReader& in, const uint8_t* header, uint64_t imageData) {
    using namespace QpxFormat;
    std::vector<uint64_t> offsets;
    if (!ReadTable(in, header, offsets)) return false;
    for (const uint64_t offset : offsets) {
        if (offset > in.Size() - imageData || !in.Seek(imageData + offset)) return false;
        uint8_t object[kObjectSize];
        if (!in.Read(object, kObjectSize)) return false;
        const uint32_t kind = Rd::Get32(object, kObjectKindAt);
        if (kind == kKindBackground) {
            width = int32_t(Rd::Get32(object, kObjectWidthAt));
            height = int32_t(Rd::Get32(object, kObjectHeightAt));
        } else if (kind == kKindText) {
            if (!ScanTextObject(in, Rd::Get32(object, kObjectExtraAt))) return false;
        }
    }
    return true;
}

bool QpxDocumentInfo::ScanTextObject(QpxStreamReader& in, uint32_t extraSize) {
    using namespace QpxFormat;
    std::vector<uint8_t> extra;
    if (!in.Read(extra, extraSize)) return false;
    // A sub-record that overruns the object ends the list; the object stays.
    for (uint64_t at = kSubRecordsAt; at + 8 <= extra.size();) {
        const uint32_t size = Rd::Get32(extra.data(), size_t(at));
        const uint32_t id = Rd::Get32(extra.data(), size_t(at + 4));
        const uint64_t body = at + 8;
        if (size > extra.size() - body) break;
        if (id == kFontId) {
            const uint8_t* font = extra.data() + body;
            const size_t fontSize = std::min<size_t>(size, kFontSize);
            BrmStringW name;
            if (fontSize > kFontWideAt) name = Wide(font + kFontWideAt, fontSize - kFontWideAt);
            if (name.IsEmpty() && fontSize > kFontNarrowAt)
                name = Narrow(font + kFontNarrowAt, std::min<size_t>(fontSize - kFontNarrowAt, kFontNarrowSize));
            if (!name.IsEmpty() && std::find(fonts.begin(), fonts.end(), name) == fonts.end()) fonts.push_back(name);
        }
        at = body + size;
    }
    return true;
}

bool QpxDocumentInfo::ScanPropertyBlock(QpxStreamReader& in) {
    using namespace QpxFormat;
    for (;;) {
        uint32_t id = 0, size = 0;
        if (!in.ReadU32(id)) return false;
        if (id == kEndId) return true;
        if (!in.ReadU32(size)) return false;
        if (id == kMetaId) {
            std::vector<uint8_t> record;
            if (!in.Read(record, size) || !ScanMeta(record)) return false;
        } else if (id == kProfileId) {
            std::vector<uint8_t> record;
            if (!in.Read(record, size)) return false;
            profileName = BrmStringW(Utf16LeToWideString(record.data(), record.size()).c_str());
            hasProfile = true;
        } else if (id == kIntentId) {
            std::vector<uint8_t> record;
            if (size < 4 || !in.Read(record, size)) return false;
            renderingIntent = Rd::Get32(record.data(), 0);
            hasIntent = true;
        } else if (!in.Skip(size)) {
            return false;
        }
    }
}

bool QpxDocumentInfo::ScanMeta(const std::vector<uint8_t>& record) {
    using namespace QpxFormat;
    if (!Store()) return false;
    size_t at = 0;
    while (at < record.size()) {
        if (record.size() - at < 4) return false;
        const uint32_t length = Rd::Get32(record.data(), at);
        at += 4;
        if (length < kKeySize || length > record.size() - at) return false;
        PROPERTYKEY key;
        std::memcpy(&key.fmtid, record.data() + at, sizeof(FMTID));
        key.pid = Rd::Get32(record.data(), at + 16);
        PROPVARIANT value;
        PropVariantInit(&value);
        if (!BrmUtils::DeserializePropVariant(record.data() + at + kKeySize, length - kKeySize, &value)) return false;
        const HRESULT hr = store->SetValue(key, value);
        PropVariantClear(&value);
        if (FAILED(hr)) return false;
        at += length;
    }
    return true;
}
