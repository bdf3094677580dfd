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

// A new zeroed (transparent black) bitmap; null for a non-positive or absurd size.
HBITMAP CreateBitmap32(int32_t width, int32_t height);
BOOL DeleteObject(HBITMAP bitmap);
BOOL DestroyIcon(HICON icon);
