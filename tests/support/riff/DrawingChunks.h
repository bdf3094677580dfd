// TestDocs: builders for the chunks of the older drawing documents and of the
// RIFF exchange metafile, in the layouts their readers expect. Combine them
// with Riff() and CompressedSection() from RiffWriter.h:
//
//   Summary sum;  sum.appVersion = 1000;  sum.productId = 1;
//   Bytes file = Riff(Tag("KVDC"), {
//       SumiChunk(sum), VrsnChunk(1200),
//       InfoList({{Tag("ICMT"), L"a comment"}, {Tag("IKEY"), L"k1;k2"}}, true),
//       UrlChunk({{L"C:\\a.kvd"}, {L"C:\\b.kvd"}}, true),
//       DocList({FontTable(1200, {L"Arial"}), PageConfigChunk(1200, PageConfig{})}),
//       PageList(), PageList(),
//       DispChunk(DibParams{}),
//   });
//
// Strings: `wide` writes UTF-16LE (documents of version 1200 and later,
// except the exchange metafile), otherwise narrow Windows-1252 bytes, where a
// character that has no byte becomes '?'. Nothing is terminated unless asked.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/riff/RiffWriter.h"

namespace TestDocs {

// The `sumi` record, 54 bytes.
struct Summary {
    int32_t clipRect[4] = {0, 0, 0, 0};
    uint16_t firstFlag = 0;
    uint16_t secondFlag = 0;
    uint16_t hasOleObjects = 0;
    uint16_t platform = 0;
    float compressionRatio = 0.0f;
    uint32_t field28 = 0;
    uint32_t field32 = 0;
    uint32_t appVersion = 0;   // as stored, before any correction by product
    uint32_t buildNumber = 0;
    uint32_t field44 = 0;
    uint32_t locale = 0;
    uint16_t productId = 0;
};
Chunk SumiChunk(const Summary& summary);
// `vrsn`: the u16 version.
Chunk VrsnChunk(uint16_t version);

// Text as the document stores it (see the top of this file).
Chunk StringChunk(uint32_t tag, const std::wstring& text, bool wide, bool terminate = false);
// `LIST INFO` with one string chunk per item (ICMT comments, IKEY keywords, ...).
Chunk InfoList(const std::vector<std::pair<uint32_t, std::wstring>>& items, bool wide);
// `url `: a plain chunk whose data are `LIST elbl` entries, each holding
// one `elbs` string chunk per text.
Chunk UrlChunk(const std::vector<std::vector<std::wstring>>& labels, bool wide);

// `LIST doc ` with the given children; `tdlt` marks text defaults.
Chunk DocList(std::vector<Chunk> children);
Chunk TdltChunk();
// `LIST fntt` of `font` chunks as a document of this version writes them: the
// name at offset 18, UTF-8 and zero-terminated below 1200 (at least 19 bytes),
// UTF-16 and zero-terminated from 1200 on (160 bytes).
Chunk FontTable(uint16_t version, const std::vector<std::wstring>& names);

// The page configuration. Which fields are written depends on the version:
// up to 404 nothing useful; 405 to 501 width, height and their units;
// 502 to 600 the raw size; above 600 the raw size and both resolutions.
struct PageConfig {
    uint16_t width = 8500, height = 11000;    // thousandths of the units
    uint16_t widthUnit = 1, heightUnit = 1;   // 1: inches
    int32_t rawWidth = 2159000, rawHeight = 2794000;  // tenths of a micrometre
    uint32_t resolutionY = 11811024, resolutionX = 11811024;  // dpi * 1e6 / 25.4
};
Chunk PageConfigChunk(uint16_t version, const PageConfig& config, uint32_t tag = Tag("mcfg"));

// `LIST page`, empty unless children are given.
Chunk PageList(std::vector<Chunk> children = {});

// `LIST iccp` with the document's (`iccd`) and the system's (`iccs`) profile.
Chunk IccpList(const Bytes& documentProfile, const Bytes& systemProfile);

// A thumbnail: clipboard format, then a DIB of the given form. Pixels and
// colours follow from seed, so two specs with the same fields give the same
// bytes.
struct DibParams {
    int32_t width = 4;
    int32_t height = 3;
    uint16_t bitCount = 24;      // 1, 4, 8, 24 or 32
    uint32_t clrUsed = 0;        // 0: the full table for 1 to 8 bits
    uint32_t headerSize = 40;    // more than 40 adds zero bytes after the header
    uint32_t format = 8;         // CF_DIB
    uint8_t seed = 1;
};
Chunk DispChunk(const DibParams& dib);
// What a reader hands out for this DISP: a 40-byte header (biSize 40,
// biClrUsed filled in, biSizeImage recomputed), the colours, the pixels.
Bytes PackedDib(const DibParams& dib);
// The bytes of the image rows: ((bitCount * width + 31) / 32) * height * 4.
uint32_t DibImageSize(const DibParams& dib);
// Entries of the colour table: clrUsed, or 1 << bitCount for 1 to 8 bits.
uint32_t DibColourCount(const DibParams& dib);

// A RIFF exchange metafile (form "JMV1") holding the thumbnail, with a `vrsn`
// of 0 as the form has no row in the form table.
Bytes ExchangeMetafile(const DibParams& dib);

}  // namespace TestDocs
