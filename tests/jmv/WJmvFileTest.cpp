// The exchange metafile reader through the factory: archive first, then
// RIFF; no properties; a thrown archive error ends in "no bitmap".
#include <gtest/gtest.h>

#include "tests/kvd/KvdTestSupport.h"
#include "tests/support/archive/ArchiveWriter.h"

using namespace TestDocs;
using KvdTest::InfoPtr;

namespace {

ArchiveOptions WithThumbnail(const DibParams& dib, bool compressed) {
    ArchiveOptions o;
    o.compressed = compressed;
    o.meta = {U32Record(Tag("text"), 1)};
    o.thumbnail = PackedDib(dib);
    return o;
}

}  // namespace

TEST(WJmvFile, ThumbnailOfEachForm) {
    DibParams dib;
    dib.width = 6;
    dib.height = 5;
    struct Case {
        const char* name;
        Bytes file;
        bool bitmap;
    };
    ArchiveOptions noThumb = WithThumbnail(dib, false);
    noThumb.thumbnail.reset();
    ArchiveOptions throws = WithThumbnail(dib, true);
    throws.index = std::vector<uint64_t>{};
    const Case cases[] = {
        {"plain archive", JmvArchive(WithThumbnail(dib, false)), true},
        {"deflated archive", JmvArchive(WithThumbnail(dib, true)), true},
        {"archive without thumbnail", JmvArchive(noThumb), false},
        {"archive throwing 257", JmvArchive(throws), false},
        {"RIFF metafile", ExchangeMetafile(dib), true},
        {"RIFF drawing given as a metafile", Riff(Tag("KVD8"), {VrsnChunk(801), DispChunk(dib)}), false},
        {"RIFF metafile without thumbnail", Riff(Tag("JMV1"), {VrsnChunk(0)}), false},
        {"not a metafile", Bytes(64, 0x11), false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InfoPtr info = KvdTest::Open(c.file, FileFormatMetafile);
        ASSERT_NE(info, nullptr);
        HBITMAP bitmap = info->GetBitmap(SIZE{6, 5}, 0, false, nullptr);
        EXPECT_EQ(bitmap != nullptr, c.bitmap);
        if (bitmap) {
            EXPECT_EQ(bitmap->width, 6);
            EXPECT_EQ(bitmap->height, 5);
            // Asked again: the cached preview, the same image.
            HBITMAP again = info->GetBitmap(SIZE{6, 5}, 0, false, nullptr);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(0, std::memcmp(bitmap->bits, again->bits, 6 * 5 * 4));
            DeleteObject(again);
        }
        DeleteObject(bitmap);
    }
}

