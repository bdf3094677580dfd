// Packed DIBs of every bit count and compression decode to the right
// pixels, keep or drop alpha by the rules, and damaged ones give null.
#include <algorithm>
#include <climits>
#include <cstdlib>

#include <gtest/gtest.h>

#include "imaging/Thumbnail.h"
#include "ImagingTestUtil.h"

using namespace BrmUtils;
using imaging_test::BuildDib;
using imaging_test::DibSpec;
using imaging_test::PixelAt;

namespace {

struct Probe {
    int x, y;
    uint32_t expected;  // premultiplied 0xAARRGGBB
};

struct DibCase { const char* name; DibSpec spec; std::vector<Probe> probes; };

std::vector<uint32_t> Ramp256() {
    std::vector<uint32_t> t(256);
    for (uint32_t i = 0; i < 256; ++i) t[i] = (i << 16) | ((255 - i) << 8) | 7;
    return t;
}

std::unique_ptr<NativeBitmap> DecodeSameSize(const std::vector<uint8_t>& dib, int w, int h) {
    return DibToBitmap(dib.data(), dib.size(), {w, h < 0 ? -h : h}, false, true, true);
}

TEST(DibToBitmap, DecodesEveryLayout) {
    const uint32_t mask565[] = {0xF800, 0x07E0, 0x001F};
    const DibCase cases[] = {
        {"1-bit, padded rows, bottom-up",
         {10, 2, 1, BI_RGB, 0, 1, {0x112233, 0xAABBCC}, {0x80, 0x40, 0, 0, 0xFF, 0xC0, 0, 0}},
         {{0, 0, 0xFFAABBCC}, {9, 0, 0xFFAABBCC}, {0, 1, 0xFFAABBCC}, {5, 1, 0xFF112233}, {9, 1, 0xFFAABBCC}}},
        {"4-bit, 16 colours assumed",
         {3, 1, 4, BI_RGB, 0, 1, std::vector<uint32_t>{0, 0x111111, 0x222222, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 0xFFFFFF},
          {0x1F, 0x20, 0, 0}},
         {{0, 0, 0xFF111111}, {1, 0, 0xFFFFFFFF}, {2, 0, 0xFF222222}}},
        {"8-bit with biClrUsed 0 has 256 colours", {2, 1, 8, BI_RGB, 0, 1, Ramp256(), {200, 3, 0, 0}},
         {{0, 0, 0xFFC83707}, {1, 0, 0xFF03FC07}}},
        {"8-bit with 2 colours, index past the table is black",
         {3, 1, 8, BI_RGB, 2, 1, {0xFF0000, 0x00FF00}, {1, 0, 5, 0}},
         {{0, 0, 0xFF00FF00}, {1, 0, 0xFFFF0000}, {2, 0, 0xFF000000}}},
        {"16-bit 5-5-5", {2, 1, 16, BI_RGB, 0, 1, {}, {0x00, 0x7C, 0xE0, 0x03}}, {{0, 0, 0xFFFF0000}, {1, 0, 0xFF00FF00}}},
        {"16-bit bit fields 5-6-5", {2, 1, 16, BI_BITFIELDS, 0, 1, {mask565[0], mask565[1], mask565[2]}, {0xE0, 0x07, 0x10, 0x00}},
         {{0, 0, 0xFF00FF00}, {1, 0, 0xFF000083}}},
        {"24-bit bottom-up",
         {3, 2, 24, BI_RGB, 0, 1, {}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 0x10, 0x20, 0x30, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
         {{0, 1, 0xFF030201}, {2, 1, 0xFF090807}, {0, 0, 0xFF302010}}},
        {"24-bit top-down",
         {3, -2, 24, BI_RGB, 0, 1, {}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 0x10, 0x20, 0x30, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
         {{0, 0, 0xFF030201}, {2, 0, 0xFF090807}, {0, 1, 0xFF302010}}},
        {"32-bit keeps alpha, bottom-up", {1, 2, 32, BI_RGB, 0, 1, {}, {0, 0, 255, 128, 255, 0, 0, 255}},
         {{0, 1, 0x80800000}, {0, 0, 0xFF0000FF}}},
        {"32-bit with negative height is not flipped", {1, -2, 32, BI_RGB, 0, 1, {}, {0, 0, 255, 128, 255, 0, 0, 255}},
         {{0, 0, 0x80800000}, {0, 1, 0xFF0000FF}}},
        {"32-bit bit fields lose alpha", {1, 1, 32, BI_BITFIELDS, 0, 1, {0xFF0000, 0xFF00, 0xFF}, {0, 0, 255, 128}},
         {{0, 0, 0xFFFF0000}}},
        {"32-bit bit fields without room for masks use 8-8-8", {1, 1, 32, BI_BITFIELDS, 0, 1, {}, {1, 2, 3, 0}},
         {{0, 0, 0xFF030201}}},
        {"32-bit of two planes loses alpha", {1, 1, 32, BI_RGB, 0, 2, {}, {0, 0, 255, 0}}, {{0, 0, 0xFFFF0000}}},
        {"RLE8 runs, absolute run, end of line, end of bitmap",
         {4, 2, 8, BI_RLE8, 4, 1, {0x000000, 0x0000FF, 0x00FF00, 0xFF0000},
          {2, 1, 2, 2, 0, 0, 0, 3, 3, 2, 1, 0, 0, 1}},
         {{0, 1, 0xFF0000FF}, {3, 1, 0xFF00FF00}, {0, 0, 0xFFFF0000}, {2, 0, 0xFF0000FF}, {3, 0, 0xFF000000}}},
        {"RLE4 alternating run and delta", {4, 2, 4, BI_RLE4, 3, 1, {0x000000, 0x0000FF, 0x00FF00},
                                            {0, 2, 1, 1, 4, 0x12, 0, 1}},
         {{0, 1, 0xFF000000}, {1, 0, 0xFF0000FF}, {2, 0, 0xFF00FF00}, {3, 0, 0xFF0000FF}, {0, 0, 0xFF000000}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto dib = BuildDib(c.spec);
        auto b = DecodeSameSize(dib, c.spec.width, c.spec.height);
        ASSERT_TRUE(b);
        for (const auto& p : c.probes) EXPECT_EQ(PixelAt(*b, p.x, p.y), p.expected) << p.x << "," << p.y;
        // Shrunk while decoding: the same pixels as decoded whole, then shrunk.
        const SIZE half{std::max(c.spec.width / 2, 1), std::max(std::abs(c.spec.height) / 2, 1)};
        auto direct = DibToBitmap(dib.data(), dib.size(), half, false, true, true);
        auto later = ScaleImage(*b, half, false, true, true);
        ASSERT_EQ(!direct, !later);
        for (int y = 0; direct && y < direct->Height(); ++y)
            for (int x = 0; x < direct->Width(); ++x) EXPECT_EQ(PixelAt(*direct, x, y), PixelAt(*later, x, y));
    }
}

std::vector<uint8_t> WithHeader(std::vector<uint8_t> dib, size_t offset, int32_t value) {
    std::memcpy(dib.data() + offset, &value, 4);
    return dib;
}

std::vector<uint8_t> WithWord(std::vector<uint8_t> dib, size_t offset, uint16_t value) {
    std::memcpy(dib.data() + offset, &value, 2);
    return dib;
}

TEST(DibToBitmap, DamagedBlocksGiveNull) {
    const auto good = BuildDib({2, 2, 24, BI_RGB, 0, 1, {}, std::vector<uint8_t>(16, 0x55)});
    ASSERT_TRUE(DecodeSameSize(good, 2, 2));
    // Built from a range rather than by pop_back on a copy: GCC 12 at -O3
    // reports a false -Warray-bounds on pop_back of a copied vector.
    const std::vector<uint8_t> truncated(good.begin(), good.end() - 1);
    auto headerOnly = good;
    headerOnly.resize(39);
    const auto paletted = BuildDib({2, 1, 8, BI_RGB, 0, 1, std::vector<uint32_t>(200), {0, 0, 0, 0}});
    const struct { const char* name; std::vector<uint8_t> bytes; } cases[] = {
        {"empty", {}},
        {"shorter than a header", headerOnly},
        {"pixels one byte short", truncated},
        {"core header size", WithHeader(good, 0, 12)},
        {"header size past the block", WithHeader(good, 0, 4000)},
        {"width 0", WithHeader(good, 4, 0)},
        {"negative width", WithHeader(good, 4, -2)},
        {"height 0", WithHeader(good, 8, 0)},
        {"most negative height", WithHeader(good, 8, INT_MIN)},
        {"absurd width", WithHeader(good, 4, 1 << 20)},
        {"absurd height", WithHeader(good, 8, -(1 << 20))},
        {"huge rows the block cannot hold", WithHeader(good, 8, 16000)},
        {"2 bits per pixel", WithWord(good, 14, 2)},
        {"embedded image compression", WithHeader(good, 16, 4)},
        {"bit fields on 24 bits", WithHeader(good, 16, int32_t(BI_BITFIELDS))},
        {"RLE8 on 24 bits", WithHeader(good, 16, int32_t(BI_RLE8))},
        {"256-colour table missing", paletted},
        {"colour count past the block", WithHeader(paletted, 32, -1)},
        {"top-down RLE", BuildDib({2, -2, 8, BI_RLE8, 1, 1, {0}, {0, 1}})},
        {"RLE far larger than its runs", BuildDib({16384, 16384, 8, BI_RLE8, 1, 1, {0}, {0, 1}})},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(DibToBitmap(c.bytes.empty() ? nullptr : c.bytes.data(), c.bytes.size(), {2, 2}, true, true, true))
            << c.name;
    }
    EXPECT_FALSE(DibToBitmap(nullptr, 100, {2, 2}, true, true, true));
}

}  // namespace
