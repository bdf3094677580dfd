// The byte layout of the binary paint image: its header, the records that
// may follow it, the object records and the property block. The reader and
// the test writer both take the numbers from here, so the two cannot drift.
#pragma once

#include <cstdint>

namespace QpxFormat {

// Four-character ids stand in the file in reading order ("META" is the bytes
// 'M' 'E' 'T' 'A'), so read as a little-endian u32 they equal this value.
constexpr uint32_t Id(const char (&text)[5]) {
    return uint32_t(uint8_t(text[0])) | uint32_t(uint8_t(text[1])) << 8 | uint32_t(uint8_t(text[2])) << 16 |
           uint32_t(uint8_t(text[3])) << 24;
}

constexpr uint32_t kHeaderSize = 316;
constexpr uint32_t kMagicSize = 8;
// The newest generation puts one more header of this size in front of the real one.
constexpr char kDoubledMagic[] = "PP11QPX9FILE";
constexpr char kMagic7[] = "QPX7FILE";
constexpr char kMagic8[] = "QPX8FILE";
constexpr char kMagic9[] = "QPX9FILE";

// Header fields.
constexpr uint32_t kColourModeAt = 8;
constexpr uint32_t kSkipAt = 12;
constexpr uint32_t kResolutionXAt = 24;
constexpr uint32_t kResolutionYAt = 28;
constexpr uint32_t kObjectCountAt = 40;
constexpr uint32_t kFlagsAt = 48;
constexpr uint32_t kTableOffsetAt = 52;
constexpr uint32_t kTailOffsetAt = 56;
constexpr uint32_t kDescriptionAt = 60;
constexpr uint32_t kDescriptionSize = 256;

// Flags and the records they add behind the header, in this order.
constexpr uint32_t kFlagExtended = 0x100;  // 24 bytes: i64 data offset, u32 skip at 8, i64 tail size at 16
constexpr uint32_t kFlagWide = 0x200;      // 516 bytes of UTF-16 description
constexpr uint32_t kFlagSize = 0x400;      // 8 bytes: i64 size
constexpr uint32_t kExtendedSize = 24;
constexpr uint32_t kExtendedSkipAt = 8;
constexpr uint32_t kExtendedTailSizeAt = 16;
constexpr uint32_t kWideSize = 516;
constexpr uint32_t kSizeRecordSize = 8;

// Objects: a 60-byte record, `extra size` bytes, then for an image the tiles.
constexpr uint32_t kObjectSize = 60;
constexpr uint32_t kObjectWidthAt = 0;
constexpr uint32_t kObjectHeightAt = 4;
constexpr uint32_t kObjectKindAt = 24;
constexpr uint32_t kObjectBitsAt = 28;
constexpr uint32_t kObjectExtraAt = 32;
constexpr uint32_t kObjectTileAt = 36;
constexpr uint32_t kKindBackground = 1;
constexpr uint32_t kKindText = 8;
constexpr uint32_t kKindThumbnail = 16;
// Tile edge when the object gives 0: a tile of 0x10000 pixels.
constexpr uint32_t kDefaultTileEdge = 256;
constexpr uint32_t kMaxThumbnailWidth = 768;

// Sub-records of a text object start this far into its extra bytes.
constexpr uint32_t kSubRecordsAt = 8;
constexpr uint32_t kFontId = Id("fnio");
constexpr uint32_t kFontSize = 316;
constexpr uint32_t kFontNarrowAt = 76;
constexpr uint32_t kFontNarrowSize = 112;
constexpr uint32_t kFontWideAt = 188;

// The property block.
constexpr uint32_t kMetaId = Id("META");
constexpr uint32_t kProfileId = Id("CLRP");
constexpr uint32_t kIntentId = Id("IDNR");
constexpr uint32_t kEndId = 0xFFFFFFFFu;
constexpr uint32_t kKeySize = 20;

}  // namespace QpxFormat
