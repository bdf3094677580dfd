// Writing what the readers hand out (bitmaps, icons, packed DIBs) to files.
// Every file is written beside its target and renamed over it, so a failed
// write leaves no half file behind.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Bitmap.h"

namespace fitool {

// PNG of the bitmap; with `alpha` false the image is written opaque.
bool WritePng(const FiBitmap& bitmap, bool alpha, const std::string& path, std::string* why);

// The packed DIB behind a 14-byte file header: a BMP file. False for a DIB
// too short or too inconsistent to place the pixel offset.
bool DibToBmpBytes(const void* dib, size_t size, std::vector<uint8_t>* bmp);

// Writes the bytes to `path` ("-" is standard output) through a temporary file.
bool WriteFileAtomic(const std::string& path, const void* data, size_t size, std::string* why);

}  // namespace fitool
