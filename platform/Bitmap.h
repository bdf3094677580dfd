// HBITMAP and HICON: bitmaps handed to the caller. On this system they are
// owned 32-bit BGRA images (top-down rows, straight alpha, stride width * 4)
// that the caller frees with DeleteObject / DestroyIcon.
#pragma once

#include "platform/WinTypes.h"

struct FiBitmap {
    int32_t width;
    int32_t height;
    uint8_t* bits;  // width * height * 4 bytes: B, G, R, A per pixel, rows top to bottom
};

struct FiIcon {
    FiBitmap* color;   // 32-bit colour with alpha
    int32_t hotspotX;
    int32_t hotspotY;
};

using HBITMAP = FiBitmap*;
using HICON = FiIcon*;

// A new zeroed (transparent black) bitmap; null for a non-positive or absurd
// size (a side above kMaxBitmapSide or more than kMaxBitmapPixels pixels,
// which is 1 GiB of BGRA). The structure comes from new, the bits from
// calloc; DeleteObject frees both.
constexpr int32_t kMaxBitmapSide = 32768;
constexpr uint64_t kMaxBitmapPixels = uint64_t(1) << 28;
HBITMAP CreateBitmap32(int32_t width, int32_t height);
BOOL DeleteObject(HBITMAP bitmap);
// An icon that takes ownership of `color` (freed with the icon, or at once
// if the icon cannot be made).
HICON CreateIcon32(HBITMAP color, int32_t hotspotX, int32_t hotspotY);
BOOL DestroyIcon(HICON icon);

// The header of a device-independent bitmap, as stored in files (40 bytes).
#pragma pack(push, 1)
struct BITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;  // positive: rows bottom-up; negative: top-down
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
struct BITMAPFILEHEADER {
    WORD bfType;  // "BM"
    DWORD bfSize;
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits;
};
#pragma pack(pop)
static_assert(sizeof(BITMAPINFOHEADER) == 40);
static_assert(sizeof(BITMAPFILEHEADER) == 14);

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

constexpr DWORD BI_RGB = 0;
constexpr DWORD BI_RLE8 = 1;
constexpr DWORD BI_RLE4 = 2;
constexpr DWORD BI_BITFIELDS = 3;

// A packed DIB: BITMAPINFOHEADER, colour table (when biBitCount < 16), pixels.
// `data` comes from malloc and is released with free; `size` is the whole
// block, so that a consumer never reads past what the reader produced.
struct DibBlock {
    void* data = nullptr;
    size_t size = 0;
};
