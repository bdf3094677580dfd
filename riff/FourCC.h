// Four-character codes of the RIFF files, read as one little-endian u32 and
// compared as numbers.
#pragma once

#include <cstdint>

namespace KvdFileIO {

// The code of four characters as it stands in the file: FourCC("RIFF").
constexpr uint32_t FourCC(const char (&text)[5]) {
    return uint32_t(uint8_t(text[0])) | uint32_t(uint8_t(text[1])) << 8 | uint32_t(uint8_t(text[2])) << 16 |
           uint32_t(uint8_t(text[3])) << 24;
}

constexpr uint32_t kTagRiff = FourCC("RIFF");
constexpr uint32_t kTagList = FourCC("LIST");
constexpr uint32_t kTagCompressed = FourCC("cmpr");
constexpr uint32_t kTagBitmap = FourCC("bmp ");
constexpr uint32_t kTagBitmapT = FourCC("bmpt");
// The header of a block in a compressed section.
constexpr uint32_t kBlockMagic = FourCC("CPng");

static_assert(kTagRiff == 0x46464952u && kTagList == 0x5453494Cu && kTagCompressed == 0x72706D63u);
static_assert(kTagBitmap == 0x20706D62u && kTagBitmapT == 0x74706D62u && kBlockMagic == 0x676E5043u);

}  // namespace KvdFileIO
