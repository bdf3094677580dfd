// The one pass over an older drawing document. Every read is bounded by the
// chunk it comes from, so hostile sizes fail the scan instead of allocating.
#include "fileinfo/KvdDocumentInfo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "platform/CodePage.h"
#include "platform/Unicode.h"
#include "riff/FormTable.h"
#include "riff/FourCC.h"
#include "utils/streams/StreamHelpers.h"

using KvdFileIO::FourCC;

namespace {

constexpr uint32_t kTagSumi = FourCC("sumi");
constexpr uint32_t kTagVrsn = FourCC("vrsn");
constexpr uint32_t kTagIccp = FourCC("iccp");
constexpr uint32_t kTagPage = FourCC("page");
constexpr uint32_t kTagDoc = FourCC("doc ");
constexpr uint32_t kTagUrl = FourCC("url ");
constexpr uint32_t kTagInfo = FourCC("INFO");
constexpr uint32_t kTagDisp = FourCC("DISP");
constexpr uint32_t kTagComment = FourCC("ICMT");
constexpr uint32_t kTagKeywords = FourCC("IKEY");
constexpr uint32_t kTagLabel = FourCC("elbl");
constexpr uint32_t kTagLabelText = FourCC("elbs");
constexpr uint32_t kTagDocProfile = FourCC("iccd");
constexpr uint32_t kTagSysProfile = FourCC("iccs");
constexpr uint32_t kTagTextDefaults = FourCC("tdlt");
constexpr uint32_t kTagFontTable = FourCC("fntt");
constexpr uint32_t kTagFont = FourCC("font");
constexpr uint32_t kTagBasicConfig = FourCC("bcfg");
constexpr uint32_t kTagMainConfig = FourCC("mcfg");
constexpr uint32_t kFormExchange = FourCC("JMV1");
constexpr uint32_t kClipboardDib = 8;

uint16_t U16(const uint8_t* p) { return uint16_t(p[0] | p[1] << 8); }
uint32_t U32(const uint8_t* p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

// Sequential reading of a chunk's stream that knows how much is left.
class ChunkCursor {
public:
    ChunkCursor(KvdFileIO::Reader& reader)
        : stream(reader.GetChunkStream()), remaining(uint64_t(std::max<int64_t>(reader.GetChunkSize(), 0))) {}
    ~ChunkCursor() {
        if (stream) stream->Release();
    }
    ChunkCursor(const ChunkCursor&) = delete;
    ChunkCursor& operator=(const ChunkCursor&) = delete;

    bool Read(void* destination, uint64_t count) {
        if (!stream || count > remaining || !BrmUtils::ReadExactly(stream, destination, count)) return false;
        remaining -= count;
        return true;
    }
    bool Skip(uint64_t count) {
        if (!stream || count > remaining) return false;
        if (count && FAILED(stream->Seek(MakeLargeInteger(int64_t(count)), STREAM_SEEK_CUR, nullptr))) return false;
        remaining -= count;
        return true;
    }
    // Skip, with the position reached checked: a chunk's stream stops at
    // what it can deliver rather than failing the seek.
    bool SkipExactly(uint64_t count) {
        if (!stream || count > remaining) return false;
        ULARGE_INTEGER before{}, after{};
        if (FAILED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &before))) return false;
        if (count && FAILED(stream->Seek(MakeLargeInteger(int64_t(count)), STREAM_SEEK_CUR, &after))) return false;
        if (count && after.QuadPart - before.QuadPart != count) return false;
        remaining -= count;
        return true;
    }
    bool U16(uint16_t& value) {
        uint8_t b[2];
        if (!Read(b, 2)) return false;
        value = ::U16(b);
        return true;
    }
    bool U32(uint32_t& value) {
        uint8_t b[4];
        if (!Read(b, 4)) return false;
        value = ::U32(b);
        return true;
    }
    uint64_t Remaining() const { return remaining; }

private:
    IStream* stream;
    uint64_t remaining;
};

// Tenths of a micrometre for a value in one of the document's units.
double ToTenthMicrometres(double value, uint16_t unit) {
    switch (unit) {
        case 1: return value * 254000;
        case 2: return value * 10000;
        case 3: return value * 42333.333333333336;
        case 4: return value * 3527.777777777778;
        case 5: return value * 10000 * 10;
        case 6: return value / 0.0011811024;
        case 7: return value * 3.048e6;
        case 8: return value * 1.609344e10;
        case 9: return value * 10000 * 1000;
        case 10: return value * 10000 * 1e6;
        case 12: return value * 45118.7;
        case 13: return value * 3759.2;
        case 14: return value / 14 * 254000;
        case 15:
        case 18: return value / 10 * 254000;
        case 16: return value * 9.144e6;
        case 19: return value / 100 * 254000;
        case 20: return value / 1000 * 254000;
        default: return value;
    }
}

// Bytes between the raw page size and the resolutions in the newer layouts.
uint32_t ResolutionOffset(uint16_t version) {
    switch (version) {
        case 700: return 76;
        case 800: return 60;
        case 900:
        case 1000: return 416;
        case 1100:
        case 1150: return 436;
        case 1200:
        case 1250: return 704;
        default: return version >= 1300 ? 696 : 0;
    }
}

double Resolution(uint32_t stored) { return double(float(stored * 25.4 / 1e6)); }

void AppendItem(BrmPlatform::BrmStringW& list, const BrmPlatform::BrmStringW& item) {
    if (item.GetLength() == 0) return;
    if (list.GetLength() != 0) list += L";";
    list += item;
}

BrmPlatform::BrmStringW WideFromUtf16(const uint8_t* bytes, size_t count) {
    // Decoded straight into the string's own block (count is bounded by the
    // chunk limit, far below what an int holds).
    const int length = int(Unicode::DecodeUtf16(bytes, count, false, nullptr));
    BrmPlatform::BrmStringW text;
    if (length > 0) {
        Unicode::DecodeUtf16(bytes, count, false, text.GetBufferSetLength(length));
        text.ReleaseBufferSetLength(length);
    }
    return text;
}

}  // namespace

KvdDocumentInfo::KvdDocumentInfo(KvdFileIO::Reader* reader, uint32_t formType)
    : reader(reader), formType(formType) {}

uint16_t KvdDocumentInfo::Version() const {
    const KvdFileIO::FormDescriptor* form = KvdFileIO::FindForm(formType);
    return form ? form->version : 0;
}

bool KvdDocumentInfo::Scan(uint32_t mode) {
    if (!reader) return false;
    const bool summary = mode & kScanSummary;
    if (summary) {
        keywords = {};
        comments = {};
        linkPaths = BrmStringW();
        fontNames = BrmStringW();
        pageCount = 0;
    }
    if (mode & (kScanThumbnail | kScanThumbnailCheck)) {
        dibHeader = {};
        dibBlock.reset();
        dibBlockSize = 0;
    }
    if (!reader->Rewind() || !reader->Next()) return false;
    do {
        bool ok = true;
        switch (reader->GetChunkId()) {
            case kTagSumi: ok = !summary || ReadSummary(); break;
            case kTagVrsn: ok = ReadVersion(); break;
            case kTagIccp: ok = !(mode & kScanProfiles) || ReadProfileList(); break;
            case KvdFileIO::kTagCompressed: ok = !summary || reader->OpenCompressed(); break;
            case kTagPage:
                if (summary) ++pageCount;
                break;
            case kTagDoc: ok = !summary || ReadDocumentList(); break;
            case kTagUrl: ok = !summary || ReadLinkList(); break;
            case kTagInfo: ok = !summary || ReadInfoList(); break;
            case kTagDisp:
                ok = !(mode & (kScanThumbnail | kScanThumbnailCheck)) || ReadThumbnail(mode & kScanThumbnail);
                break;
            default: break;
        }
        if (!ok) return false;
    } while (reader->Next());
    // The last page is the master page, no page of the document.
    if (summary && pageCount >= 1) --pageCount;
    return true;
}

bool KvdDocumentInfo::ReadSummary() {
    uint8_t r[54];
    if (!reader->ReadChunkData(r, sizeof r)) return false;
    for (int i = 0; i < 4; ++i) clipRect[i] = int32_t(U32(r + 4 * i));
    firstFlag = U16(r + 16) != 0;
    secondFlag = U16(r + 18) != 0;
    hasOleObjects = U16(r + 20) != 0;
    platform = U16(r + 22);
    float ratio;
    uint32_t ratioBits = U32(r + 24);
    std::memcpy(&ratio, &ratioBits, 4);
    compressionRatio = ratio;
    summaryField28 = U32(r + 28);
    summaryField32 = U32(r + 32);
    uint32_t version = U32(r + 36);
    buildNumber = U32(r + 40);
    summaryField44 = U32(r + 44);
    locale = U32(r + 48);
    productId = U16(r + 52);
    // The two products stored their own numbering; bring it to one scale.
    if (productId == 1) {
        version -= 900;
    } else if (productId == 2 && version == 1150) {
        version = 1000;
    }
    appVersion = int32_t(version);
    return true;
}

bool KvdDocumentInfo::ReadVersion() {
    uint8_t b[2];
    return reader->ReadChunkData(b, 2) && U16(b) == Version();
}

bool KvdDocumentInfo::ReadWholeChunk(std::vector<uint8_t>& bytes) {
    ChunkCursor cursor(*reader);
    // Texts, font records and profiles are small; more is a broken chunk.
    constexpr uint64_t kMaxChunk = 64u << 20;
    if (cursor.Remaining() > kMaxChunk) return false;
    bytes.assign(cursor.Remaining(), 0);
    return cursor.Read(bytes.data(), bytes.size());
}

bool KvdDocumentInfo::ReadString(BrmStringW& text) {
    text = BrmStringW();
    if (reader->GetChunkSize() <= 0) return true;
    std::vector<uint8_t>& bytes = chunkBytes;
    if (!ReadWholeChunk(bytes)) return false;
    if (formType != kFormExchange && Version() >= 1200) {
        text = WideFromUtf16(bytes.data(), bytes.size() & ~size_t(1));
        return true;
    }
    const char* narrow = reinterpret_cast<const char*>(bytes.data());
    int length = MultiByteToWideChar(codePage, 0, narrow, int(bytes.size()), nullptr, 0);
    if (length <= 0) return true;
    std::wstring wide(size_t(length), L'\0');
    MultiByteToWideChar(codePage, 0, narrow, int(bytes.size()), wide.data(), length);
    text = BrmStringW(wide);
    return true;
}

bool KvdDocumentInfo::ReadInfoList() {
    if (!reader->Descend()) return true;
    bool ok = true;
    while (ok && reader->Next()) {
        uint32_t id = reader->GetChunkId();
        if (id != kTagComment && id != kTagKeywords) continue;
        BrmStringW text;
        ok = ReadString(text);
        (id == kTagComment ? comments : keywords).Set(L"", text);
    }
    reader->Ascend();
    return ok;
}

bool KvdDocumentInfo::ReadLinkList() {
    linkPaths = BrmStringW();
    reader->SetIsList(true);
    if (!reader->Descend()) return true;
    bool ok = true;
    while (ok && reader->FindChunk(kTagLabel)) {
        if (!reader->Descend()) continue;
        // An empty link is an `elbs` of size 0; read as "to the end of the
        // list" it would swallow the links after it.
        reader->SetZeroSizeIsEmpty(true);
        while (ok && reader->FindChunk(kTagLabelText)) {
            BrmStringW text;
            ok = ReadString(text);
            AppendItem(linkPaths, text);
        }
        reader->SetZeroSizeIsEmpty(false);
        reader->Ascend();
    }
    reader->Ascend();
    return ok;
}

bool KvdDocumentInfo::ReadProfileList() {
    if (!reader->Descend()) return true;
    bool ok = true;
    while (ok && reader->Next()) {
        uint32_t id = reader->GetChunkId();
        if (id == kTagDocProfile) ok = ReadWholeChunk(iccDocument);
        if (id == kTagSysProfile) ok = ReadWholeChunk(iccSystem);
    }
    reader->Ascend();
    return ok;
}

bool KvdDocumentInfo::ReadDocumentList() {
    if (!reader->Descend()) return true;
    bool ok = true;
    while (ok && reader->Next()) {
        switch (reader->GetChunkId()) {
            case kTagTextDefaults: hasTextDefaults = true; break;
            case kTagFontTable: ok = ReadFontTable(); break;
            case kTagBasicConfig:
            case kTagMainConfig: ok = ReadPageConfig(); break;
            default: break;
        }
    }
    reader->Ascend();
    return ok;
}

bool KvdDocumentInfo::ReadPageConfig() {
    const uint16_t version = Version();
    if (version <= 404) return true;
    ChunkCursor cursor(*reader);
    if (version <= 501) {
        uint16_t width, height, widthUnit, heightUnit;
        if (!cursor.U16(width) || !cursor.U16(height) || !cursor.Skip(48) || !cursor.U16(widthUnit) ||
            !cursor.U16(heightUnit)) {
            return false;
        }
        pageWidth = ToTenthMicrometres(width, widthUnit) / 254000 / 1000;
        pageHeight = ToTenthMicrometres(height, heightUnit) / 254000 / 1000;
        pageWidthRaw = int32_t(width) * 254;
        pageHeightRaw = int32_t(height) * 254;
        resolutionX = resolutionY = 300.0;
        return true;
    }
    uint32_t rawWidth, rawHeight;
    if (version <= 600) {
        if (!cursor.Skip(28) || !cursor.U32(rawWidth) || !cursor.U32(rawHeight)) return false;
        resolutionX = resolutionY = 300.0;
    } else {
        uint32_t lead = version < 900 ? 0 : version < 1300 ? 4 : 12;
        uint32_t first, second;
        if (!cursor.Skip(lead) || !cursor.U32(rawWidth) || !cursor.U32(rawHeight) ||
            !cursor.Skip(ResolutionOffset(version)) || !cursor.U32(first) || !cursor.U32(second)) {
            return false;
        }
        resolutionY = Resolution(first);
        resolutionX = Resolution(second);
    }
    pageWidthRaw = int32_t(rawWidth);
    pageHeightRaw = int32_t(rawHeight);
    pageWidth = pageWidthRaw / 254000.0;
    pageHeight = pageHeightRaw / 254000.0;
    return true;
}

bool KvdDocumentInfo::ReadFontTable() {
    fontNames = BrmStringW();
    if (!reader->Descend()) return true;
    const uint16_t version = Version();
    bool ok = true;
    std::vector<uint8_t>& bytes = chunkBytes;
    while (ok && reader->FindChunk(kTagFont)) {
        if (!ReadWholeChunk(bytes)) {
            ok = false;
            break;
        }
        BrmStringW name;
        if (version >= 1200) {
            if (bytes.size() < 160) {
                ok = false;
                break;
            }
            size_t end = 18;
            while (end + 1 < bytes.size() && (bytes[end] | bytes[end + 1]) != 0) end += 2;
            name = WideFromUtf16(bytes.data() + 18, end - 18);
        } else if (version >= 405) {
            if (bytes.size() < 19) {
                ok = false;
                break;
            }
            auto begin = bytes.begin() + 18;
            auto end = std::find(begin, bytes.end(), uint8_t(0));
            std::wstring text(Unicode::DecodeUtf8(reinterpret_cast<const char*>(&*begin), size_t(end - begin), nullptr),
                              L'\0');
            Unicode::DecodeUtf8(reinterpret_cast<const char*>(&*begin), size_t(end - begin), text.data());
            name = BrmStringW(text);
        }
        AppendItem(fontNames, name);
    }
    reader->Ascend();
    return ok;
}

bool KvdDocumentInfo::ReadThumbnail(bool readPixels) {
    ChunkCursor cursor(*reader);
    uint32_t format = 0, headerSize = 0;
    if (!cursor.U32(format) || format != kClipboardDib || !cursor.U32(headerSize)) return false;
    uint8_t raw[40] = {};
    uint32_t inHeader = std::min<uint32_t>(headerSize, 40);
    if (inHeader > 4 && !cursor.Read(raw + 4, inHeader - 4)) return false;
    if (headerSize > 40 && !cursor.Skip(headerSize - 40)) return false;
    BITMAPINFOHEADER header{};
    header.biSize = 40;
    header.biWidth = LONG(U32(raw + 4));
    header.biHeight = LONG(U32(raw + 8));
    header.biPlanes = U16(raw + 12);
    header.biBitCount = U16(raw + 14);
    header.biCompression = U32(raw + 16);
    header.biXPelsPerMeter = LONG(U32(raw + 24));
    header.biYPelsPerMeter = LONG(U32(raw + 28));
    header.biClrUsed = U32(raw + 32);
    header.biClrImportant = U32(raw + 36);
    uint64_t entries = 0;
    if (header.biBitCount < 16) {
        if (header.biClrUsed == 0) header.biClrUsed = 1u << header.biBitCount;
        entries = header.biClrUsed;
    }
    // ((bits x width + 31) / 32) x height x 4, truncating toward zero; a
    // negative product or one the chunk cannot hold is a broken thumbnail,
    // not an allocation.
    const int64_t rowWords = (int64_t(header.biBitCount) * header.biWidth + 31) / 32;
    const int64_t rows = header.biHeight;
    if (entries * 4 > cursor.Remaining()) return false;
    const uint64_t room = cursor.Remaining() - entries * 4;
    int64_t imageSize = 0;
    if (rowWords != 0 && rows != 0) {
        if ((rowWords < 0) != (rows < 0)) return false;
        const uint64_t words = uint64_t(rowWords < 0 ? -rowWords : rowWords);
        const uint64_t count = uint64_t(rows < 0 ? -rows : rows);
        if (words > room / 4 / count) return false;
        imageSize = int64_t(words * count * 4);
    }
    if (imageSize > int64_t(UINT32_MAX)) return false;
    header.biSizeImage = DWORD(imageSize);
    // The colours (little-endian words, as a packed DIB keeps them) and the
    // pixels are read straight into the block that is handed out; it is not
    // cleared first, since the read fills every byte or the scan fails.
    const size_t size = 40 + size_t(entries) * 4 + size_t(imageSize);
    if (!readPixels) {
        // Stepping over the colours and pixels fails where reading them
        // would: past the end of a truncated file, or where a compressed
        // section cannot be inflated.
        if (!cursor.SkipExactly(size - 40)) return false;
        dibHeader = header;
        return true;
    }
    std::unique_ptr<uint8_t, FreeBlock> block(static_cast<uint8_t*>(std::malloc(size)));
    if (!block) throw std::bad_alloc();
    if (!cursor.Read(block.get() + 40, size - 40)) return false;
    std::memcpy(block.get(), &header, 40);
    dibBlock = std::move(block);
    dibBlockSize = size;
    dibHeader = header;
    return true;
}

static_assert(sizeof(BITMAPINFOHEADER) == 40, "the packed DIB starts with the 40-byte header");

DibBlock KvdDocumentInfo::PackedDib() const {
    if (dibHeader.biSize == 0 || !dibBlock) return {};
    auto* block = static_cast<uint8_t*>(std::malloc(dibBlockSize));
    if (!block) return {};
    std::memcpy(block, dibBlock.get(), dibBlockSize);
    return {block, dibBlockSize};
}

DibBlock KvdDocumentInfo::TakePackedDib() {
    if (dibHeader.biSize == 0 || !dibBlock) return {};
    const size_t size = dibBlockSize;
    dibBlockSize = 0;
    return {dibBlock.release(), size};
}
