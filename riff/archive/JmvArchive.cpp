// Reading the summary and thumbnail of an object-archive exchange metafile.
#include "riff/archive/JmvArchive.h"

#include "platform/CodePage.h"
#include "riff/FourCC.h"

namespace {

constexpr uint32_t kMagic = KvdFileIO::FourCC("JMV3");
constexpr uint32_t kMeta = KvdFileIO::FourCC("META");
constexpr uint32_t kText = KvdFileIO::FourCC("text");
constexpr uint32_t kVect = KvdFileIO::FourCC("vect");
constexpr uint32_t kTarg = KvdFileIO::FourCC("targ");
constexpr uint32_t kBbox = KvdFileIO::FourCC("bbox");
constexpr uint32_t kPage = KvdFileIO::FourCC("page");
constexpr uint32_t kNote = KvdFileIO::FourCC("note");
constexpr uint32_t kKeyw = KvdFileIO::FourCC("keyw");
constexpr uint32_t kIndx = KvdFileIO::FourCC("indx");

BrmPlatform::BrmStringW FromUtf8(const BrmPlatform::BrmStringA& text) {
    int length = text.GetLength();
    if (length <= 0) return {};
    int wide = MultiByteToWideChar(CP_UTF8, 0, text.StdView().data(), length, nullptr, 0);
    if (wide <= 0) return {};
    std::vector<wchar_t> out(size_t(wide) + 1, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.StdView().data(), length, out.data(), wide);
    return BrmPlatform::BrmStringW(out.data(), wide);
}

// Releases the stream reference taken over by ReadJmvArchive on every exit.
struct StreamRelease {
    IStream* stream;
    ~StreamRelease() {
        if (stream) stream->Release();
    }
};

}  // namespace

bool BUDIInputArchiveLight::FindRecord(int32_t wanted) {
    for (;;) {
        int32_t tag = 0;
        uint32_t size = 0;
        ReadI32(tag);
        ReadU32(size);
        if (!good) return false;
        if (tag == wanted) return true;
        if (tag < wanted) {
            uint8_t header[8];
            for (int i = 0; i < 4; ++i) header[i] = uint8_t(uint32_t(tag) >> (8 * i));
            for (int i = 0; i < 4; ++i) header[4 + i] = uint8_t(size >> (8 * i));
            HandBack(header, sizeof header);
            good = true;
            return false;
        }
        good = source->Skip(size);
        if (!good) return false;
    }
}

bool BUDIInputArchiveLight::ReadMetadataRecords(JmvArchiveInfo& info) {
    for (;;) {
        uint32_t tag = 0, size = 0;
        // A tag of 0 closes the section; nothing after it is read, so a
        // section closed this way leaves the archive good for the thumbnail.
        if (!ReadU32(tag) || tag == 0) break;
        if (!ReadU32(size)) break;
        switch (tag) {
            case kText: ReadU32(info.text); break;
            case kVect: ReadU32(info.vect); break;
            case kTarg: ReadU32(info.targ); break;
            case kBbox:
                for (int32_t& v : info.boundingBox) ReadI32(v);
                break;
            case kPage: {
                uint32_t count = 0;
                if (ReadU32(count)) {
                    info.pageCount = int32_t(count - 1);
                    SkipBytes(uint64_t(count) * 4);
                }
                break;
            }
            case kNote:
            case kKeyw: {
                BrmPlatform::BrmStringA text;
                if (ReadString(text)) (tag == kNote ? info.notes : info.keywords) = FromUtf8(text);
                break;
            }
            case kIndx: {
                int32_t count = 0;
                if (!ReadI32(count)) break;
                if (count <= 0) {
                    good = false;  // an empty table ends the section
                    break;
                }
                index.clear();
                // Grows as entries arrive: a lying count ends with the data.
                for (int32_t i = 0; i < count && good; ++i) {
                    uint64_t entry = 0;
                    if (ReadU64(entry)) index.push_back(entry);
                }
                break;
            }
            default:
                SkipBytes(size);
                break;
        }
    }
    if (index.size() < 2) throw udi::UDI_RC_INDEX_OUT_OF_RANGE;
    return true;
}

void BUDIInputArchiveLight::ReadThumbnail(JmvArchiveInfo& info) {
    uint64_t at = index[1];
    if (at == 0) return;
    if (at > uint64_t(INT64_MAX) || source->Seek(int64_t(at), STREAM_SEEK_SET) != at) return;
    unread.clear();  // what was handed back belongs to the old place
    uint32_t headerA = 0, headerB = 0, tag = 0, size = 0;
    ReadU32(headerA);
    ReadU32(headerB);
    if (!ReadU32(tag) || !ReadU32(size)) return;
    if (tag != 0 || size == 0) return;
    if (!ReadBytes(info.thumbnail, size)) info.thumbnail.clear();
    info.valid = !info.thumbnail.empty();
}

bool BUDIInputArchiveLight::ReadInfo(JmvArchiveInfo& info) {
    info = JmvArchiveInfo();
    uint32_t magic = 0, unused = 0;
    ReadU32(magic);
    ReadU32(unused);
    if (magic != kMagic) {
        source->SeekRaw(0, STREAM_SEEK_SET);
        return false;
    }
    BrmPlatform::BrmStringA name;
    uint8_t compressedFlag = 0;
    if (!ReadString(name) || !Read(&compressedFlag, 1)) compressedFlag = 0;
    FindRecord(0);  // a failure shows as good being false further on

    // The tail: the offset of the metadata section, in the last 8 bytes.
    uint64_t end = source->SeekRaw(-8, STREAM_SEEK_END);
    if (end == 0) return false;
    uint8_t tail[8];
    if (!source->ReadExact(tail, 8)) return false;
    uint64_t metaOffset = 0;
    for (int i = 7; i >= 0; --i) metaOffset = metaOffset << 8 | tail[i];
    if (metaOffset > uint64_t(INT64_MAX) || source->SeekRaw(int64_t(metaOffset), STREAM_SEEK_SET) == 0) return false;
    if (compressedFlag) {
        source->SetCompressed(true);
        source->Restart();
    }
    uint32_t tag = 0, size = 0;
    if (!ReadU32(tag)) tag = 0;
    ReadU32(size);
    if (tag != kMeta) return false;
    info.valid = true;
    ReadMetadataRecords(info);
    ReadThumbnail(info);
    return info.valid;
}

bool ReadJmvArchive(JmvArchiveInfo& info, IStream* stream) {
    StreamRelease release{stream};
    info = JmvArchiveInfo();
    if (!stream) return false;
    udi::DecompressIO io(stream);
    BUDIInputArchiveLight archive(&io);
    return archive.ReadInfo(info);
}
