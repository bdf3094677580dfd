// The write-back of a paint image: the file up to its property block is
// copied as it stands, then a new block with the open properties follows,
// and the header is pointed at it. Nothing of the source is changed.
#include <cstring>
#include <vector>

#include "fileinfo/QpxDocumentInfo.h"
#include "fileinfo/QpxFormat.h"
#include "platform/CodePage.h"
#include "utils/props/PropVariantBytes.h"
#include "utils/streams/StreamHelpers.h"

namespace {

constexpr uint64_t kCopyBlock = 0x10000;

void Put32(std::vector<uint8_t>& out, uint32_t value) {
    for (int i = 0; i < 4; ++i) out.push_back(uint8_t(value >> (8 * i)));
}

bool WriteAt(IStream* target, uint64_t at, const void* bytes, uint64_t count) {
    return SUCCEEDED(target->Seek(MakeLargeInteger(int64_t(at)), STREAM_SEEK_SET, nullptr)) &&
           BrmUtils::WriteExactly(target, bytes, count);
}

bool Copy(IStream* source, IStream* target, uint64_t count) {
    while (count > 0) {
        const uint64_t step = std::min(count, kCopyBlock);
        uint64_t copied = 0;
        if (!BrmUtils::CopyStream(source, target, step, copied) || copied != step) return false;
        count -= step;
    }
    return true;
}

// The end of the source, or 0 when it cannot be told.
uint64_t EndOf(IStream* source) {
    ULARGE_INTEGER end{};
    if (FAILED(source->Seek(MakeLargeInteger(0), STREAM_SEEK_END, &end))) return 0;
    return end.QuadPart;
}

}  // namespace

bool QpxDocumentInfo::Rewrite(IStream* source, IStream* target) {
    using namespace QpxFormat;
    if (!source || !target || !binary) return false;
    DWORD entries = 0;
    if (store) store->GetCount(&entries);
    const uint64_t sourceSize = EndOf(source);
    if (FAILED(source->Seek(MakeLargeInteger(0), STREAM_SEEK_SET, nullptr))) return false;
    // A file without a block and nothing to put in one is copied as it is.
    const bool block = tailOffset != 0 || entries > 0 || hasProfile || hasIntent;
    const uint64_t newTail = tailOffset != 0 ? uint64_t(tailOffset) : sourceSize;
    if (newTail > sourceSize || !Copy(source, target, newTail)) return false;
    if (!block) return true;
    if (!WriteBlock(target)) return false;

    // The outer header of a doubled file repeats the real one's description.
    if (entries > 0 && hasStore && doubledHeader) {
        uint8_t text[kDescriptionSize] = {};
        const std::wstring wide = description.StdString();
        const int length = std::min<int>(int(wide.size()), int(kDescriptionSize) - 1);
        if (length > 0 && WideCharToMultiByte(GetACP(), 0, wide.data(), length, reinterpret_cast<char*>(text),
                                              int(kDescriptionSize) - 1, nullptr, nullptr) <= 0)
            return false;
        if (!WriteAt(target, kDescriptionAt, text, kDescriptionSize)) return false;
    }
    uint8_t field[4];
    const uint32_t offset = newTail < 0x80000000u ? uint32_t(newTail) : 0xFFFFFFFFu;
    for (int i = 0; i < 4; ++i) field[i] = uint8_t(offset >> (8 * i));
    if (doubledHeader && !WriteAt(target, kTailOffsetAt, field, 4)) return false;
    return WriteAt(target, (doubledHeader ? kHeaderSize : 0) + kTailOffsetAt, field, 4);
}

bool QpxDocumentInfo::WriteBlock(IStream* target) {
    using namespace QpxFormat;
    std::vector<uint8_t> out, value;
    DWORD entries = 0;
    if (store) store->GetCount(&entries);
    Put32(out, kMetaId);
    Put32(out, 0);  // the size, set below
    for (DWORD i = 0; i < entries; ++i) {
        PROPERTYKEY key;
        PROPVARIANT variant;
        PropVariantInit(&variant);
        if (FAILED(store->GetAt(i, &key)) || FAILED(store->GetValue(key, &variant))) return false;
        const bool ok = BrmUtils::SerializePropVariant(variant, value);
        PropVariantClear(&variant);
        if (!ok) return false;
        Put32(out, uint32_t(kKeySize + value.size()));
        const auto* keyBytes = reinterpret_cast<const uint8_t*>(&key.fmtid);
        out.insert(out.end(), keyBytes, keyBytes + sizeof(FMTID));
        Put32(out, key.pid);
        out.insert(out.end(), value.begin(), value.end());
    }
    const uint64_t metaSize = out.size() - 8;
    if (metaSize > 0xFFFFFFFFu) return false;
    for (int i = 0; i < 4; ++i) out[4 + i] = uint8_t(metaSize >> (8 * i));
    if (hasProfile) {
        const std::wstring name = profileName.StdString();
        const std::string bytes = WideToUtf16LeString(name.data(), name.size());
        Put32(out, kProfileId);
        Put32(out, uint32_t(bytes.size()));
        out.insert(out.end(), bytes.begin(), bytes.end());
    }
    if (hasIntent) {
        Put32(out, kIntentId);
        Put32(out, 4);
        Put32(out, renderingIntent);
    }
    Put32(out, kEndId);
    Put32(out, 0);
    return BrmUtils::WriteExactly(target, out.data(), out.size());
}
