// ZipContainerImpl: image parts, previews and thumbnails. A preview's
// format follows the bitmap in the current layout (TIFF keeps CMYK, PNG
// keeps alpha or every pixel, JPEG for the rest); the legacy layout knows
// only BMP under fixed names and has no part table to look in.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "imaging/codecs/ImageCodecs.h"
#include "utils/streams/DataContainerVector.h"
#include "utils/streams/MemStream.h"
#include "zipcontainer/ZipContainerImpl.h"
#include "zipcontainer/ZipIo.h"

using BrmPlatform::BrmStringW;
namespace CN = ContainerNames;

namespace {

constexpr const wchar_t* kBmp = L"image/bmp";
constexpr const wchar_t* kPng = L"image/png";
constexpr const wchar_t* kJpeg = L"image/jpeg";
constexpr const wchar_t* kTiff = L"image/tiff";

const wchar_t* ExtensionOf(const BrmStringW& mediaType) {
    if (mediaType.CompareNoCase(kTiff) == 0) return L".tif";
    if (mediaType.CompareNoCase(kPng) == 0) return L".png";
    if (mediaType.CompareNoCase(kJpeg) == 0) return L".jpg";
    return L".bmp";
}

uint32_t Get32(const std::vector<uint8_t>& b, size_t at) {
    return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 | uint32_t(b[at + 3]) << 24;
}

void Put32(std::vector<uint8_t>& b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + size_t(i)] = uint8_t(v >> (8 * i));
}

// Readers of uncompressed BMPs take the image size from the header, and some
// encoders leave it 0; fill it in from the row size.
void RepairBmpSize(std::vector<uint8_t>& b) {
    if (b.size() < 59 || b[0] != 'B' || b[1] != 'M') return;
    if (Get32(b, 34) != 0 || Get32(b, 30) != 0) return;
    int64_t width = int32_t(Get32(b, 18));
    int64_t height = std::llabs(int64_t(int32_t(Get32(b, 22))));
    int64_t bits = int64_t(b[28]) | int64_t(b[29]) << 8;
    int64_t size = height * (((bits * width + 31) & ~int64_t(31)) / 8);
    if (size > 0 && size <= int64_t(UINT32_MAX)) Put32(b, 34, uint32_t(size));
}

bool Encode(const BrmUtils::NativeBitmap& bitmap, const BrmStringW& mediaType, std::vector<uint8_t>& out) {
    auto* container = new BrmUtils::DataContainer::OwnedVector({}, false);
    auto* stream = new BrmUtils::MemStream(container);
    stream->AddRef();  // SaveImage takes one reference
    bool ok = BrmUtils::SaveImage(bitmap, mediaType.GetString(), stream);
    if (ok) {
        uint64_t size = container->GetSize();
        const uint8_t* data = container->GetPointer(0);
        out.assign(data, data + size);
        ok = size > 0;
    }
    stream->Release();
    container->Release();
    return ok;
}

}  // namespace

BrmStringW ZipContainerImpl::PreviewMediaType(const Bitmap& bitmap, bool lossless) const {
    if (legacyLayout_) return kBmp;
    if (bitmap.Format() == BrmUtils::PixelFormat::Cmyk32) return kTiff;
    if (lossless || bitmap.HasAlpha()) return kPng;
    return kJpeg;
}

BrmStringW ZipContainerImpl::PreviewName(const BrmStringW& fileKind, int32_t index, const BrmStringW& mediaType) const {
    BrmStringW name = PreviewFolder();
    name.Append(fileKind);
    if (index >= 0) name.Append(BrmStringW(std::to_wstring(index)));
    name.Append(legacyLayout_ ? L".bmp" : ExtensionOf(mediaType));
    return name;
}

bool ZipContainerImpl::WriteImagePart(const BrmStringW& name, const Bitmap& bitmap, const BrmStringW& mimeType,
                                      const BrmStringW& fileKind, const Metadata::MultiLanguageString& captions,
                                      int32_t index) {
    if (!set_) return false;
    std::vector<uint8_t> bytes;
    if (!Encode(bitmap, mimeType, bytes)) return false;
    bool bmp = mimeType.CompareNoCase(kBmp) == 0;
    if (bmp) RepairBmpSize(bytes);
    // Other image formats are compressed already; deflating them gains nothing.
    IStream* stream = set_->CreateMember(name, bmp ? 3 : 0, false);
    if (!stream) return false;
    links_.Remove(name);
    if (!fileKind.IsEmpty()) {
        PartRecord record{fileKind, mimeType, captions, index, bitmap.Width(), bitmap.Height()};
        parts_.Set(name, record);
        modified_ = true;
    }
    bool ok = ZipIo::Write(stream, bytes.data(), bytes.size());
    stream->Release();
    return ok;
}

ZipContainerImpl::BitmapPtr ZipContainerImpl::ReadImagePart(const BrmStringW& name) {
    IStream* stream = OpenPart(name, true);
    if (!stream) return nullptr;
    // The decoders check the dimensions in the header against the imaging
    // limits before they allocate.
    BitmapPtr bitmap = BrmUtils::LoadImage(stream);
    stream->Release();
    return bitmap;
}

bool ZipContainerImpl::AddPreview(const Bitmap& bitmap, const BrmStringW& fileKind,
                                  const Metadata::MultiLanguageString& captions, int32_t index, bool lossless) {
    BrmStringW mediaType = PreviewMediaType(bitmap, lossless);
    BrmStringW name = PreviewName(fileKind, index, mediaType);
    if (!WriteImagePart(name, bitmap, mediaType, fileKind, captions, index)) return false;
    // A preview of the same kind and index in another format is replaced.
    int32_t wanted = index < 0 ? -1 : index;
    for (const auto& [other, record] : FindParts(fileKind.GetString(), -1)) {
        if (other.Compare(name) == 0 || (record.index < 0 ? -1 : record.index) != wanted) continue;
        if (!other.StartsWith(PreviewFolder(), BrmPlatform::CompareCase::IgnoreCase)) continue;
        RemoveFile(other);
        parts_.Remove(other);
    }
    return true;
}

bool ZipContainerImpl::AddThumbnail(const Bitmap& bitmap) {
    return AddPreview(bitmap, CN::kThumbnailKind, {}, -1, false);
}

NamedPartRecord ZipContainerImpl::FindBestPart(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                               int32_t index) const {
    const double limitW = maxWidth > 0 ? maxWidth : 0x7FFFFFFF;
    const double limitH = maxHeight > 0 ? maxHeight : 0x7FFFFFFF;
    NamedPartRecord best;
    double bestRatio = 0;
    bool found = false;
    for (auto& candidate : FindParts(fileKind.GetString(), index)) {
        const PartRecord& r = candidate.second;
        if (r.width <= 0 || r.height <= 0) continue;
        double rx = limitW / r.width, ry = limitH / r.height;
        double ratio = std::fabs(rx) < std::fabs(ry) ? std::fabs(rx) : std::fabs(ry);
        ratio = std::copysign(ratio, rx);
        if (ratio < 1) ratio = 1 / ratio;
        if (!found || ratio < bestRatio) {
            best = std::move(candidate);
            bestRatio = ratio;
            found = true;
        }
    }
    return best;
}

NamedPartRecord ZipContainerImpl::GetPreviewRecord(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                                   int32_t index) const {
    if (!legacyLayout_) return FindBestPart(fileKind, maxWidth, maxHeight, index);
    PartRecord record;
    record.fileKind = fileKind;
    record.mediaType = kBmp;
    record.index = index;
    return {PreviewName(fileKind, index, kBmp), record};
}

NamedPartRecord ZipContainerImpl::GetThumbnailRecord() const {
    return GetPreviewRecord(CN::kThumbnailKind, -1, -1, -1);
}

ZipContainerImpl::BitmapPtr ZipContainerImpl::GetPreviewImage(const BrmStringW& fileKind, int32_t maxWidth,
                                                               int32_t maxHeight, int32_t index) {
    NamedPartRecord record = GetPreviewRecord(fileKind, maxWidth, maxHeight, index);
    return record.first.IsEmpty() ? nullptr : ReadImagePart(record.first);
}

ZipContainerImpl::BitmapPtr ZipContainerImpl::GetThumbnailImage() {
    return GetPreviewImage(CN::kThumbnailKind, -1, -1, -1);
}
