// Choosing a codec: by the first bytes when reading, by MIME type when
// writing; and the moves of whole images between memory and IStreams.
#include "imaging/codecs/ImageCodecs.h"

#include <cstring>
#include <cwctype>

#include <pixman.h>

#include "imaging/PixelOps.h"
#include "imaging/codecs/Codecs.h"

namespace BrmUtils {
namespace {

using Codecs::Bytes;
using Codecs::EncoderParams;

// Files larger than this are not taken for images.
constexpr uint64_t kMaxInputBytes = uint64_t(256) << 20;
constexpr ULONG kReadChunk = 1u << 16;
constexpr int kJpegQuality = 95;

struct Encoder {
    CLSID clsid;
    const wchar_t* mime;
    bool (*encode)(const NativeBitmap&, const EncoderParams&, Bytes&);
};

const Encoder kEncoders[] = {
    {{0x8810ec7a, 0xa9c8, 0x45f7, {0x96, 0x69, 0x29, 0x90, 0xb7, 0x35, 0xde, 0x74}}, L"image/bmp", Codecs::EncodeBmp},
    {{0x35000b2e, 0x8727, 0x4f4d, {0xad, 0x5b, 0xa2, 0x1a, 0xa0, 0xe4, 0x44, 0x96}}, L"image/jpeg", Codecs::EncodeJpeg},
    {{0x2577fab3, 0xae02, 0x4d38, {0x8c, 0x9c, 0x7d, 0x33, 0xd6, 0x64, 0x80, 0x3b}}, L"image/tiff", Codecs::EncodeTiff},
    {{0x14fec944, 0x4bb7, 0x4841, {0x80, 0xde, 0x5b, 0x1d, 0x5b, 0xbd, 0xff, 0x03}}, L"image/png", Codecs::EncodePng},
};

// Case-insensitive comparison over the length of the shorter string.
bool MimeMatches(const wchar_t* a, const wchar_t* b) {
    for (; *a && *b; ++a, ++b)
        if (std::towlower(wint_t(*a)) != std::towlower(wint_t(*b))) return false;
    return true;
}

bool MimeEquals(const wchar_t* a, const wchar_t* b) { return MimeMatches(a, b) && std::wcslen(a) == std::wcslen(b); }

const Encoder* FindEncoderEntry(const wchar_t* mime) {
    if (!mime) return nullptr;
    for (const auto& e : kEncoders)
        if (MimeMatches(mime, e.mime)) return &e;
    return nullptr;
}

// The rest of the stream, from its current position; false when it fails to
// read or is larger than any image this library takes.
bool ReadRest(IStream* stream, Bytes& bytes) {
    STATSTG stat{};
    ULARGE_INTEGER position{};
    if (SUCCEEDED(stream->Stat(&stat, STATFLAG_NONAME)) &&
        SUCCEEDED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position)) &&
        stat.cbSize.QuadPart >= position.QuadPart) {
        const uint64_t remaining = stat.cbSize.QuadPart - position.QuadPart;
        if (remaining > kMaxInputBytes) return false;
        bytes.reserve(size_t(remaining));
    }
    for (;;) {
        const size_t have = bytes.size();
        if (have > kMaxInputBytes) return false;
        bytes.resize(have + kReadChunk);
        ULONG got = 0;
        const HRESULT hr = stream->Read(bytes.data() + have, kReadChunk, &got);
        bytes.resize(have + (got <= kReadChunk ? got : 0));
        if (FAILED(hr)) return false;
        if (got == 0) return true;
    }
}

bool WriteAll(IStream* stream, const Bytes& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ULONG chunk = ULONG(std::min<size_t>(bytes.size() - done, 1u << 30));
        ULONG written = 0;
        if (FAILED(stream->Write(bytes.data() + done, chunk, &written)) || written == 0) return false;
        done += written;
    }
    return true;
}

bool EncodeAndWrite(const Encoder& encoder, const NativeBitmap& bitmap, const EncoderParams& params,
                    IStream* stream) {
    Bytes bytes;
    return encoder.encode(bitmap, params, bytes) && WriteAll(stream, bytes);
}

}  // namespace

namespace Codecs {

Bytes StraightBgra(const NativeBitmap& bitmap) {
    const int w = bitmap.Width(), h = bitmap.Height();
    Bytes out(size_t(w) * size_t(h) * 4);
    const auto* base = reinterpret_cast<const uint8_t*>(pixman_image_get_data(bitmap.Image()));
    const int stride = pixman_image_get_stride(bitmap.Image());
    auto* dst = reinterpret_cast<uint32_t*>(out.data());
    for (int y = 0; y < h; ++y) {
        const auto* src = reinterpret_cast<const uint32_t*>(base + ptrdiff_t(y) * stride);
        for (int x = 0; x < w; ++x) *dst++ = Pixels::Unpremultiply(src[x]);
    }
    return out;
}

}  // namespace Codecs

std::unique_ptr<NativeBitmap> LoadImage(const void* data, size_t size) {
    const auto* p = static_cast<const uint8_t*>(data);
    if (!p || size < 4) return nullptr;
    try {
        if (p[0] == 0x89 && std::memcmp(p + 1, "PNG", 3) == 0) return Codecs::DecodePng(p, size);
        if (p[0] == 0xFF && p[1] == 0xD8 && p[2] == 0xFF) return Codecs::DecodeJpeg(p, size);
        if ((p[0] == 'I' && p[1] == 'I' && (p[2] == 42 || p[2] == 43) && p[3] == 0) ||
            (p[0] == 'M' && p[1] == 'M' && p[2] == 0 && (p[3] == 42 || p[3] == 43)))
            return Codecs::DecodeTiff(p, size);
        if (p[0] == 'B' && p[1] == 'M') return Codecs::DecodeBmp(p, size);
    } catch (...) {
        // Allocation failures inside a decoder: no image.
    }
    return nullptr;
}

std::unique_ptr<NativeBitmap> LoadImage(IStream* stream) {
    if (!stream) return nullptr;
    try {
        Bytes bytes;
        if (!ReadRest(stream, bytes)) return nullptr;
        return LoadImage(bytes.data(), bytes.size());
    } catch (...) {
        return nullptr;
    }
}

bool FindEncoder(const wchar_t* mime, CLSID* clsid) {
    const Encoder* e = FindEncoderEntry(mime);
    if (!e) return false;
    if (clsid) *clsid = e->clsid;
    return true;
}

bool SaveImage(const NativeBitmap& bitmap, const wchar_t* mime, IStream* stream) {
    if (!stream) return false;
    bool ok = false;
    try {
        if (const Encoder* encoder = FindEncoderEntry(mime)) {
            EncoderParams params;
            if (MimeEquals(mime, L"image/jpeg")) params.quality = kJpegQuality;
            ok = EncodeAndWrite(*encoder, bitmap, params, stream);
            if (!ok && bitmap.Format() != PixelFormat::Rgb24) {
                auto flat = bitmap.Clone(PixelFormat::Rgb24);
                ok = flat && EncodeAndWrite(*encoder, *flat, params, stream);
            }
        }
    } catch (...) {
        ok = false;
    }
    stream->Release();
    return ok;
}

}  // namespace BrmUtils
