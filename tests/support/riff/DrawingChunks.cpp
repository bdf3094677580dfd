// TestDocs: the drawing document's chunks and the thumbnail DIB.
#include "tests/support/riff/DrawingChunks.h"

#include <algorithm>

#include "metadata/Utf8.h"

namespace TestDocs {

namespace {

void AppendUtf16(ByteWriter& out, wchar_t c) {
    auto u = uint32_t(c);
    if (u >= 0x10000) {
        u -= 0x10000;
        out.U16(uint16_t(0xD800 | u >> 10)).U16(uint16_t(0xDC00 | (u & 0x3FF)));
    } else {
        out.U16(uint16_t(u));
    }
}

// Bytes skipped before the raw page size, and between it and the
// resolutions, in page configurations of versions above 600.
size_t LeadSkip(uint16_t version) {
    return version < 900 ? 0 : version < 1300 ? 4 : 12;
}
size_t MiddleSkip(uint16_t version) {
    switch (version) {
    case 700: return 76;
    case 800: return 60;
    case 900: case 1000: return 416;
    case 1100: case 1150: return 436;
    case 1200: case 1250: return 704;
    default: return version >= 1300 ? 696 : 0;
    }
}

ByteWriter& DibHeader(ByteWriter& out, const DibParams& dib, uint32_t biSize, uint32_t sizeImage,
                      uint32_t clrUsed) {
    return out.U32(biSize)
        .I32(dib.width)
        .I32(dib.height)
        .U16(1)
        .U16(dib.bitCount)
        .U32(0)
        .U32(sizeImage)
        .I32(2835)
        .I32(2835)
        .U32(clrUsed)
        .U32(0);
}

Bytes Colours(const DibParams& dib) {
    ByteWriter out;
    for (uint32_t i = 0; i < DibColourCount(dib); ++i) out.U32((dib.seed * 0x00102030u + i * 0x00010203u) & 0xFFFFFF);
    return out.Take();
}

Bytes Pixels(const DibParams& dib) {
    Bytes out(DibImageSize(dib));
    for (size_t i = 0; i < out.size(); ++i) out[i] = uint8_t(dib.seed * 31 + i * 7);
    return out;
}

}  // namespace

Chunk SumiChunk(const Summary& s) {
    ByteWriter out;
    for (int32_t v : s.clipRect) out.I32(v);
    out.U16(s.firstFlag).U16(s.secondFlag).U16(s.hasOleObjects).U16(s.platform);
    out.F32(s.compressionRatio).U32(s.field28).U32(s.field32).U32(s.appVersion).U32(s.buildNumber);
    out.U32(s.field44).U32(s.locale).U16(s.productId);
    return DataChunk(Tag("sumi"), out.Take());
}

Chunk VrsnChunk(uint16_t version) {
    return DataChunk(Tag("vrsn"), ByteWriter().U16(version).Take());
}

static Bytes EncodeText(const std::wstring& text, bool wide, bool terminate) {
    ByteWriter out;
    for (wchar_t c : text) {
        if (wide)
            AppendUtf16(out, c);
        else
            out.U8(uint32_t(c) < 0x80 || (uint32_t(c) >= 0xA0 && uint32_t(c) <= 0xFF) ? uint8_t(c) : uint8_t('?'));
    }
    if (terminate) wide ? out.U16(0) : out.U8(0);
    return out.Take();
}

Chunk StringChunk(uint32_t tag, const std::wstring& text, bool wide, bool terminate) {
    return DataChunk(tag, EncodeText(text, wide, terminate));
}

Chunk InfoList(const std::vector<std::pair<uint32_t, std::wstring>>& items, bool wide) {
    std::vector<Chunk> children;
    for (const auto& [tag, text] : items) children.push_back(StringChunk(tag, text, wide));
    return ListChunk(Tag("INFO"), std::move(children));
}

Chunk UrlChunk(const std::vector<std::vector<std::wstring>>& labels, bool wide) {
    Bytes body;
    for (const std::vector<std::wstring>& texts : labels) {
        std::vector<Chunk> strings;
        for (const std::wstring& text : texts) strings.push_back(StringChunk(Tag("elbs"), text, wide));
        Bytes entry = Serialize(ListChunk(Tag("elbl"), std::move(strings)));
        body.insert(body.end(), entry.begin(), entry.end());
    }
    return DataChunk(Tag("url "), std::move(body));
}

Chunk DocList(std::vector<Chunk> children) {
    return ListChunk(Tag("doc "), std::move(children));
}

Chunk TdltChunk() {
    return DataChunk(Tag("tdlt"), Bytes(8, 0));
}

static Chunk FontChunk(uint16_t version, const std::wstring& name) {
    ByteWriter out;
    out.Zeros(18);
    if (version >= 1200) {
        for (wchar_t c : name) AppendUtf16(out, c);
        out.U16(0);
        if (out.Get().size() < 160) out.Zeros(160 - out.Get().size());
        return DataChunk(Tag("font"), out.Take());
    }
    const std::string utf8 = Metadata::WideToUtf8(std::wstring_view(name));
    out.Append(Bytes(utf8.begin(), utf8.end())).U8(0);
    return DataChunk(Tag("font"), out.Take());
}

Chunk FontTable(uint16_t version, const std::vector<std::wstring>& names) {
    std::vector<Chunk> fonts;
    for (const std::wstring& name : names) fonts.push_back(FontChunk(version, name));
    return ListChunk(Tag("fntt"), std::move(fonts));
}

Chunk PageConfigChunk(uint16_t version, const PageConfig& c, uint32_t tag) {
    ByteWriter out;
    if (version <= 404) {
        out.Zeros(16);
    } else if (version <= 501) {
        out.U16(c.width).U16(c.height).Zeros(48).U16(c.widthUnit).U16(c.heightUnit);
    } else if (version <= 600) {
        out.Zeros(28).I32(c.rawWidth).I32(c.rawHeight);
    } else {
        out.Zeros(LeadSkip(version)).I32(c.rawWidth).I32(c.rawHeight);
        out.Zeros(MiddleSkip(version)).U32(c.resolutionY).U32(c.resolutionX);
    }
    return DataChunk(tag, out.Take());
}

Chunk PageList(std::vector<Chunk> children) {
    return ListChunk(Tag("page"), std::move(children));
}

Chunk IccpList(const Bytes& documentProfile, const Bytes& systemProfile) {
    return ListChunk(Tag("iccp"), {DataChunk(Tag("iccd"), documentProfile), DataChunk(Tag("iccs"), systemProfile)});
}

uint32_t DibImageSize(const DibParams& dib) {
    int64_t stride = (int64_t(dib.bitCount) * dib.width + 31) / 32 * 4;
    return uint32_t(stride * dib.height);
}

uint32_t DibColourCount(const DibParams& dib) {
    if (dib.bitCount >= 16) return 0;
    return dib.clrUsed ? dib.clrUsed : 1u << dib.bitCount;
}

Chunk DispChunk(const DibParams& dib) {
    ByteWriter header;
    // The stored image size is ignored by readers; store 0 to show it.
    DibHeader(header, dib, dib.headerSize, 0, dib.clrUsed);
    Bytes head = header.Take();
    head.resize(std::min<size_t>(dib.headerSize, 40));
    ByteWriter out;
    out.U32(dib.format).Append(head);
    if (dib.headerSize > 40) out.Zeros(dib.headerSize - 40);
    out.Append(Colours(dib)).Append(Pixels(dib));
    return DataChunk(Tag("DISP"), out.Take());
}

Bytes PackedDib(const DibParams& dib) {
    uint32_t clrUsed = dib.bitCount < 16 ? DibColourCount(dib) : dib.clrUsed;
    ByteWriter out;
    DibHeader(out, dib, 40, DibImageSize(dib), clrUsed);
    out.Append(Colours(dib)).Append(Pixels(dib));
    return out.Take();
}

Bytes ExchangeMetafile(const DibParams& dib) {
    return Riff(Tag("JMV1"), {VrsnChunk(0), DispChunk(dib)});
}

}  // namespace TestDocs
