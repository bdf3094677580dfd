// Decoding of packed DIBs (header, colour table, pixels) into NativeBitmaps,
// shared by the thumbnail path and the BMP codec. Everything is checked
// against the block's size before anything is read or allocated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "imaging/NativeBitmap.h"

namespace BrmUtils {

struct DibSource {
    const uint8_t* block = nullptr;  // header first
    size_t size = 0;                 // bytes of the block
    // Offset of the pixels from the block's start as a file header gives it;
    // 0 takes them right after the header and colour table.
    size_t pixelOffset = 0;
    // A BMP file's 32-bit pixels whose alpha bytes are all 0 were never
    // meant as alpha: with this set such an image is taken as opaque.
    bool opaqueIfAlphaAllZero = false;
};

// Null for anything damaged, unsupported or larger than NativeBitmap allows.
// A 32-bit BI_RGB DIB of one plane keeps its alpha (format Argb32); every
// other DIB decodes to opaque pixels (format Rgb24), as the platform's DIB
// constructor would.
std::unique_ptr<NativeBitmap> DecodePackedDib(const DibSource& source);

// The width and height of a DIB that DecodePackedDib would take; false for
// a damaged or unsupported one.
bool PackedDibSize(const DibSource& source, int& width, int& height);

// DecodePackedDib shrunk by whole factors as it decodes (each pixel the mean
// of a kx x ky block, see BoxReduce.h): the full-size image is never made.
std::unique_ptr<NativeBitmap> DecodePackedDibReduced(const DibSource& source, int kx, int ky);

}  // namespace BrmUtils
