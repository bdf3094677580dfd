// The 256-pixel thumbnail of a drawing document whose preview is a 1024 x 768
// DIB, end to end as a thumbnailer asks for it: open the file once, read the
// preview, decode, scale, hand out the bitmap, close. Writes the document and
// a BMP file of the same picture (for the peer in bench/thumb_bench.sh),
// times RUNS thumbnails and prints the fastest and the median in
// milliseconds, and writes the last thumbnail as a binary PPM.
// Usage: thumb_time FOLDER [RUNS]
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "fileinfo/FormatDetection.h"
#include "fileinfo/IFileInfo.h"
#include "platform/Bitmap.h"
#include "RiffBytes.h"
#include "ThumbPicture.h"

namespace {

using namespace thumbbench;

using riffbytes::Chunk;
using riffbytes::U16;
using riffbytes::U32;

Bytes InfoHeader(uint32_t imageBytes) {
    Bytes h;
    U32(h, 40), U32(h, uint32_t(kWidth)), U32(h, uint32_t(kHeight)), U16(h, 1), U16(h, 24);
    U32(h, 0), U32(h, imageBytes), U32(h, 2835), U32(h, 2835), U32(h, 0), U32(h, 0);
    return h;
}

void Write(const std::string& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// The drawing document: RIFF form, a version chunk and the DISP chunk (the
// clipboard format of a DIB, then the packed DIB).
void WriteDocument(const std::string& path, const Bytes& pixels) {
    Bytes vrsn;
    U16(vrsn, 1300);
    Bytes disp;
    U32(disp, 8);
    Bytes header = InfoHeader(uint32_t(pixels.size()));
    disp.insert(disp.end(), header.begin(), header.end());
    disp.insert(disp.end(), pixels.begin(), pixels.end());
    Bytes body = {'K', 'V', 'D', 'D'};
    for (const Bytes& part : {Chunk("vrsn", vrsn), Chunk("DISP", disp)}) body.insert(body.end(), part.begin(), part.end());
    Bytes file = {'R', 'I', 'F', 'F'};
    U32(file, uint32_t(body.size()));
    file.insert(file.end(), body.begin(), body.end());
    Write(path, file);
}

void WriteBmp(const std::string& path, const Bytes& pixels) {
    Bytes file = {'B', 'M'};
    U32(file, uint32_t(14 + 40 + pixels.size())), U32(file, 0), U32(file, 14 + 40);
    Bytes header = InfoHeader(uint32_t(pixels.size()));
    file.insert(file.end(), header.begin(), header.end());
    file.insert(file.end(), pixels.begin(), pixels.end());
    Write(path, file);
}

// One thumbnail, end to end; the bitmap is the caller's.
HBITMAP Thumbnail(const std::string& path) {
    EFileFormat format{};
    bool readable = false;
    std::string why;
    IFileInfo* info = fi::OpenDocumentFile(path, std::nullopt, &format, &readable, &why);
    if (!info) return nullptr;
    HBITMAP bitmap = info->GetBitmap(SIZE{kEdge, kEdge}, 0, false, nullptr);
    info->Release();
    return bitmap;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: thumb_time FOLDER [RUNS]\n");
        return 2;
    }
    const std::string dir = argv[1];
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 50;
    const Bytes pixels = Pixels();
    WriteDocument(dir + "/picture.kvd", pixels);
    WriteBmp(dir + "/picture.bmp", pixels);

    std::vector<double> ms;
    HBITMAP last = nullptr;
    for (int run = 0; run < runs; ++run) {
        auto start = std::chrono::steady_clock::now();
        HBITMAP bitmap = Thumbnail(dir + "/picture.kvd");
        ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        if (!bitmap) {
            std::fprintf(stderr, "thumb_time: no thumbnail\n");
            return 1;
        }
        if (last) DeleteObject(last);
        last = bitmap;
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%.3f %.3f\n", ms.front(), ms[ms.size() / 2]);

    // BGRA rows top to bottom, composited on white: the PPM keeps RGB.
    std::ofstream ppm(dir + "/ours.ppm", std::ios::binary);
    ppm << "P6\n" << last->width << ' ' << last->height << "\n255\n";
    for (size_t i = 0, n = size_t(last->width) * size_t(last->height); i < n; ++i) {
        const uint8_t* p = last->bits + 4 * i;
        const char rgb[3] = {char(p[2]), char(p[1]), char(p[0])};
        ppm.write(rgb, 3);
    }
    DeleteObject(last);
    return 0;
}
