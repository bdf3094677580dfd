// The thumbnail of the drawing reader (packed DIB at every bit depth, long
// headers, bitmaps and icons made from it) and the page configuration of
// every version band, read through the scanner itself.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "fileinfo/KvdDocumentInfo.h"
#include "riff/RiffReader.h"
#include "tests/kvd/KvdTestSupport.h"

using namespace TestDocs;
using namespace KvdTest;

namespace {

Bytes ToBytes(const DibBlock& dib) {
    const auto* p = static_cast<const uint8_t*>(dib.data);
    return p ? Bytes(p, p + dib.size) : Bytes();
}

// A DISP chunk holding a bottom-up 32-bit DIB of one colour (B, G, R, A).
Chunk SolidDisp(int width, int height, const uint8_t bgra[4]) {
    ByteWriter w;
    w.U32(8).U32(40).I32(width).I32(height).U16(1).U16(32).U32(0).U32(0).Zeros(16);
    for (int i = 0; i < width * height; ++i) {
        for (int c = 0; c < 4; ++c) w.U8(bgra[c]);
    }
    return DataChunk(Tag("DISP"), w.Take());
}

uint32_t Pixel(const FiBitmap& bitmap, int x, int y) {
    const uint8_t* p = bitmap.bits + (size_t(y) * bitmap.width + x) * 4;
    return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

// The scanner run over a document, as the reader runs it.
struct Scanned {
    std::unique_ptr<KvdDocumentInfo> info;
    bool ok = false;
};

Scanned Scan(const Bytes& bytes, uint32_t mode = 6) {
    StreamPtr stream = StreamOnBytes(bytes);
    auto reader = std::make_unique<KvdFileIO::RiffReader>(stream.get());
    uint32_t form = 0;
    Scanned result;
    if (!reader->Open(form)) return result;
    result.info = std::make_unique<KvdDocumentInfo>(reader.release(), form);
    result.ok = result.info->Scan(mode);
    return result;
}

}  // namespace

TEST(KvdThumbnail, PackedDibAtEveryDepth) {
    struct Case {
        uint16_t bitCount;
        uint32_t clrUsed, headerSize;
        int32_t width, height;
    };
    const Case cases[] = {
        {1, 0, 40, 9, 3}, {4, 0, 40, 5, 2}, {4, 3, 40, 5, 2}, {8, 0, 40, 3, 3},
        {24, 0, 40, 5, 3}, {32, 0, 40, 2, 2}, {24, 0, 124, 4, 4}, {8, 16, 108, 7, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.bitCount << " bits, header " << c.headerSize);
        DibParams dib;
        dib.bitCount = c.bitCount;
        dib.clrUsed = c.clrUsed;
        dib.headerSize = c.headerSize;
        dib.width = c.width;
        dib.height = c.height;
        dib.seed = uint8_t(c.bitCount + c.headerSize);
        InfoPtr info = Open(Riff(Tag("KVD9"), {VrsnChunk(900), DispChunk(dib)}));
        ASSERT_NE(info, nullptr);
        DibBlock block = info->ReadPreviewDib();
        Bytes packed = ToBytes(block);
        std::free(block.data);
        EXPECT_EQ(packed, PackedDib(dib));
        ASSERT_GE(packed.size(), 40u);
        BITMAPINFOHEADER header;
        std::memcpy(&header, packed.data(), 40);
        EXPECT_EQ(header.biSize, 40u);
        EXPECT_EQ(header.biSizeImage, DibImageSize(dib));
    }
}

TEST(KvdThumbnail, BitmapAndIconFromTheDib) {
    const uint8_t red[4] = {0, 0, 255, 255};
    InfoPtr info = Open(Riff(Tag("KVDC"), {VrsnChunk(1200), SolidDisp(4, 2, red)}));
    ASSERT_NE(info, nullptr);
    HBITMAP bitmap = info->GetBitmap(SIZE{64, 64}, 0, true, nullptr);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->width, 64);
    EXPECT_EQ(bitmap->height, 32);
    EXPECT_EQ(Pixel(*bitmap, 0, 0), 0x0000FFFFu);
    EXPECT_EQ(Pixel(*bitmap, 63, 31), 0x0000FFFFu);
    DeleteObject(bitmap);

    HICON icon = info->GetIcon(nullptr, 8);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->color->width, 8);
    EXPECT_EQ(Pixel(*icon->color, 0, 0) & 0xFF, 0u);  // a transparent margin
    EXPECT_EQ(Pixel(*icon->color, 3, 4), 0x0000FFFFu);
    DestroyIcon(icon);

    // A see-through pixel shows the white of a bitmap, and stays clear in an icon.
    const uint8_t clear[4] = {0, 0, 255, 0};
    InfoPtr glass = Open(Riff(Tag("KVDC"), {VrsnChunk(1200), SolidDisp(2, 2, clear)}));
    bitmap = glass->GetBitmap(SIZE{2, 2}, 0, false, nullptr);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(Pixel(*bitmap, 1, 1), 0xFFFFFFFFu);
    DeleteObject(bitmap);
    icon = glass->GetIcon(nullptr, 4);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(Pixel(*icon->color, 1, 1) & 0xFF, 0u);
    DestroyIcon(icon);
}

TEST(KvdThumbnail, ThumbnailOnlyScanStepsOverTheSummary) {
    Summary sum;
    sum.productId = 2;
    Scanned s = Scan(Riff(Tag("KVDC"), {SumiChunk(sum), VrsnChunk(1200), PageList(), PageList(),
                                        DispChunk(DibParams{})}),
                     KvdDocumentInfo::kScanThumbnail);
    ASSERT_TRUE(s.ok);
    EXPECT_EQ(s.info->productId, 0);
    EXPECT_EQ(s.info->pageCount, 0);
    EXPECT_EQ(s.info->dibHeader.biSize, 40u);
}

TEST(KvdThumbnail, ColourProfilesOnRequest) {
    Bytes document = Riff(Tag("KVDC"), {VrsnChunk(1200), IccpList({1, 2, 3}, {4, 5})});
    Scanned plain = Scan(document);
    ASSERT_TRUE(plain.ok);
    EXPECT_TRUE(plain.info->iccDocument.empty());
    Scanned profiles = Scan(document, KvdDocumentInfo::kScanProfiles);
    ASSERT_TRUE(profiles.ok);
    EXPECT_EQ(profiles.info->iccDocument, Bytes({1, 2, 3}));
    EXPECT_EQ(profiles.info->iccSystem, Bytes({4, 5}));
}

TEST(KvdPageConfig, EveryVersionBand) {
    struct Case {
        uint32_t form;
        uint16_t version;
        uint16_t widthUnit;
        double width, height;  // inches
        double resolutionX, resolutionY;
    };
    const double none = 0.0;
    const Case cases[] = {
        {Tag("KVD4"), 404, 1, 0, 0, none, none},  // nothing is read
        {Tag("KVD5"), 501, 1, 8.5, 11, 300, 300},
        {Tag("KVD5"), 501, 2, 8500 * 10000.0 / 254000 / 1000, 11, 300, 300},
        {Tag("KVD5"), 501, 11, 8500 / 254000.0 / 1000, 11, 300, 300},  // unknown unit: the number as it is
        {Tag("kvd6"), 600, 1, 8.5, 11, 300, 300},
        {Tag("KVD7"), 700, 1, 8.5, 11, 600, 300},
        {Tag("KVD8"), 800, 1, 8.5, 11, 600, 300},
        {Tag("kvd8"), 801, 1, 8.5, 11, 600, 300},
        {Tag("KVD9"), 900, 1, 8.5, 11, 600, 300},
        {Tag("KVDA"), 1000, 1, 8.5, 11, 600, 300},
        {Tag("KVDB"), 1100, 1, 8.5, 11, 600, 300},
        {Tag("TCNA"), 1150, 1, 8.5, 11, 600, 300},
        {Tag("KVDC"), 1200, 1, 8.5, 11, 600, 300},
        {Tag("KVTD"), 1250, 1, 8.5, 11, 600, 300},
        {Tag("KVDD"), 1300, 1, 8.5, 11, 600, 300},
        {Tag("KVDN"), 2200, 1, 8.5, 11, 600, 300},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "version " << c.version << " unit " << c.widthUnit);
        PageConfig config;
        config.widthUnit = c.widthUnit;
        config.resolutionX = 23622048;  // 600 dpi
        for (uint32_t tag : {Tag("mcfg"), Tag("bcfg")}) {
            Scanned s = Scan(Riff(c.form, {VrsnChunk(c.version), DocList({PageConfigChunk(c.version, config, tag)})}));
            ASSERT_TRUE(s.ok);
            EXPECT_NEAR(s.info->pageWidth, c.width, 1e-9);
            EXPECT_NEAR(s.info->pageHeight, c.height, 1e-9);
            EXPECT_NEAR(s.info->resolutionX, c.resolutionX, 1e-3);
            EXPECT_NEAR(s.info->resolutionY, c.resolutionY, 1e-3);
        }
    }
}

TEST(KvdPageConfig, FontNamesByVersion) {
    struct Case {
        uint32_t form;
        uint16_t version;
        const wchar_t* expected;
    };
    const Case cases[] = {
        {Tag("KVD4"), 404, L""},  // no names stored yet
        {Tag("KVD5"), 501, L"Sans;\u00c9cole"},
        {Tag("KVDA"), 1000, L"Sans;\u00c9cole"},
        {Tag("KVDC"), 1200, L"Sans;\u00c9cole"},
        {Tag("KVDN"), 2200, L"Sans;\u00c9cole"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.version);
        Scanned s = Scan(Riff(c.form, {VrsnChunk(c.version),
                                       DocList({FontTable(c.version, {L"Sans", L"", L"\u00c9cole"})})}));
        ASSERT_TRUE(s.ok);
        EXPECT_EQ(s.info->fontNames.StdString(), c.expected);
    }
}
