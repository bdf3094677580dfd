// QpxDib: the packed DIB both preview routes of the paint image reader end
// in (header, colour table, rows bottom-up padded to four bytes), built in
// a malloc'd block that is handed over as a DibBlock.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "fileinfo/IFileInfo.h"
#include "platform/Bitmap.h"

class QpxDib {
public:
    // Pixels per metre of a screen of 96 dots per inch.
    static constexpr int32_t kDefaultPpm = 3779;

    QpxDib() = default;
    ~QpxDib() { std::free(block); }
    QpxDib(const QpxDib&) = delete;
    QpxDib& operator=(const QpxDib&) = delete;

    // False when the sizes are out of range or memory is short. `colours`
    // is the number of table entries (0 for 24 bits).
    bool Create(uint32_t width, uint32_t height, uint16_t bits, uint32_t colours) {
        if (width == 0 || height == 0 || width > 0xFFFF || height > 0xFFFFF || colours > 256) return false;
        rowBytes = ((uint64_t(width) * bits + 31) / 32) * 4;
        tableBytes = uint64_t(colours) * 4;
        size = sizeof(BITMAPINFOHEADER) + tableBytes + rowBytes * height;
        block = static_cast<uint8_t*>(std::calloc(1, size_t(size)));
        if (!block) return false;
        BITMAPINFOHEADER header{};
        header.biSize = sizeof(BITMAPINFOHEADER);
        header.biWidth = LONG(width);
        header.biHeight = LONG(height);
        header.biPlanes = 1;
        header.biBitCount = bits;
        header.biSizeImage = DWORD(rowBytes * height);
        header.biXPelsPerMeter = header.biYPelsPerMeter = kDefaultPpm;
        header.biClrUsed = colours;
        std::memcpy(block, &header, sizeof header);
        rows = height;
        return true;
    }
    void SetResolution(int32_t x, int32_t y) {
        auto* header = reinterpret_cast<BITMAPINFOHEADER*>(block);
        header->biXPelsPerMeter = x;
        header->biYPelsPerMeter = y;
    }
    void SetColour(uint32_t index, uint8_t red, uint8_t green, uint8_t blue) {
        uint8_t* entry = block + sizeof(BITMAPINFOHEADER) + index * 4;
        entry[0] = blue;
        entry[1] = green;
        entry[2] = red;
    }
    // Row `y` counted from the top of the image.
    uint8_t* Row(uint32_t y) { return block + sizeof(BITMAPINFOHEADER) + tableBytes + rowBytes * (rows - 1 - y); }

    DibBlock Release() {
        DibBlock result{block, size_t(size)};
        block = nullptr;
        return result;
    }

private:
    uint8_t* block = nullptr;
    uint64_t size = 0, rowBytes = 0, tableBytes = 0;
    uint32_t rows = 0;
};
