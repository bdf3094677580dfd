// Reading and writing of image files: PNG, JPEG, TIFF and BMP in and out of
// a NativeBitmap, through an IStream or a block of bytes. The format of an
// input is found by its first bytes; the format of an output by MIME type.
#pragma once

#include <cstddef>
#include <memory>

#include "imaging/NativeBitmap.h"
#include "platform/ObjIdl.h"

namespace BrmUtils {

// Decodes the image from the stream's current position to its end; null for
// an unknown format, a damaged or truncated image, or one too large. The
// caller keeps its reference on the stream.
std::unique_ptr<NativeBitmap> LoadImage(IStream* stream);
std::unique_ptr<NativeBitmap> LoadImage(const void* data, size_t size);

// The identity of the encoder for a MIME type ("image/png", "image/jpeg",
// "image/tiff", "image/bmp"), compared without case over the shorter of the
// two lengths; false when none matches.
bool FindEncoder(const wchar_t* mime, CLSID* clsid);

// Encodes the bitmap as the MIME type says and writes it to the stream
// (JPEG at quality 95). When that fails for a bitmap that is not 24-bit, a
// 24-bit copy is written instead, which is how an image with alpha becomes a
// JPEG. Takes over the caller's reference on the stream and releases it in
// every case.
bool SaveImage(const NativeBitmap& bitmap, const wchar_t* mime, IStream* stream);

}  // namespace BrmUtils
