#include "Documents.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <fstream>
#include <iterator>
#include <tuple>

#include "fileinfo/PropertyKeys.h"
#include "fileinfo/PropsJson.h"
#include "platform/Bitmap.h"
#include "tests/support/archive/ArchiveWriter.h"
#include "tests/support/kvdzip/KvdZipWriter.h"
#include "tests/support/qpx/QpxWriter.h"
#include "tests/support/riff/DrawingChunks.h"

namespace reliability {

namespace {

struct TextDigest : PropertyVisitor {
    std::wstring text;
    void Visit(const void* record) override {
        const auto* chunk = static_cast<const TextChunk*>(record);
        text.append(chunk->text, size_t(chunk->length));
        text += L'|';
    }
};

std::string BitmapDigest(HBITMAP bitmap) {
    if (!bitmap) return "none;";
    uint64_t hash = 1469598103934665603u;
    for (size_t i = 0; i < size_t(bitmap->width) * size_t(bitmap->height) * 4; ++i)
        hash = (hash ^ bitmap->bits[i]) * 1099511628211u;
    std::string out = std::to_string(bitmap->width) + "x" + std::to_string(bitmap->height) + ":" + std::to_string(hash) + ";";
    DeleteObject(bitmap);
    return out;
}

}  // namespace

std::string ReadEverything(IFileInfo* info, EFileFormat format) {
    std::string out = fi::DumpJson(fi::PropsJson(info, "", format));
    uint8_t alpha = 0;
    out += BitmapDigest(info->GetBitmap(SIZE{96, 96}, 0, false, &alpha));
    const uint32_t pages = info->GetPageCount();
    for (uint32_t page = 1; page <= pages && page <= 3; ++page)
        out += BitmapDigest(info->GetPageBitmap(page, SIZE{64, 64}, 0, false, nullptr));
    if (HICON icon = info->GetIcon(nullptr, 32)) {
        out += BitmapDigest(icon->color);
        icon->color = nullptr;
        DestroyIcon(icon);
    }
    DibBlock dib = info->ReadPreviewDib();
    out += "dib" + std::to_string(dib.size) + ";";
    std::free(dib.data);
    TextDigest text;
    info->EnumTextChunks(text);
    out += std::to_string(std::hash<std::wstring>{}(text.text));
    return out;
}

std::vector<uint8_t> PaintImage(uint32_t side) {
    using namespace QpxTest;
    auto pattern = [](uint32_t x, uint32_t y) { return uint64_t((x * 7 + y * 13) & 0xFF) * 0x010101u ^ (x << 16); };
    Image image;
    image.description = "reliability";
    image.resolutionX = image.resolutionY = RawResolution(300);
    image.objects = {
        ImageObject(QpxFormat::kKindThumbnail, side, side, 24, 64, pattern),
        TextObject({{"Serif", u""}, {"", u"Sans \u00e9"}}),
        ImageObject(QpxFormat::kKindBackground, side, side / 2 + 1, 8, 64, pattern),
    };
    PROPVARIANT comment{};
    comment.vt = VT_LPWSTR;
    comment.pwszVal = const_cast<wchar_t*>(L"original comment");
    image.block = Meta({{PropertyKeys::kComments, &comment}});
    const Bytes end = EndMark();
    image.block.insert(image.block.end(), end.begin(), end.end());
    return Write(image);
}

std::vector<Document> AllDocuments() {
    std::vector<Document> docs;
    const std::pair<const char*, EFileFormat> kinds[] = {
        {".kvd", FileFormatDrawing}, {".kvt", FileFormatDrawing}, {".qpx", FileFormatPaint},
        {".jmv", FileFormatMetafile}, {".fill", FileFormatFill}};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(FILEINFO_SAMPLES_DIR)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& path : files) {
        for (const auto& [extension, format] : kinds) {
            if (path.extension() != extension) continue;
            std::ifstream in(path, std::ios::binary);
            docs.push_back({path.filename().string(), format,
                            std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {})});
        }
    }
    docs.push_back({"small.qpx", FileFormatPaint, PaintImage(40)});
    docs.push_back({"large.qpx", FileFormatPaint, PaintImage(300)});
    TestDocs::ArchiveOptions archive;
    archive.compressed = true;
    archive.meta = {TestDocs::PageRecord(2), TestDocs::StringRecord(TestDocs::Tag("note"), "note")};
    archive.thumbnail = TestDocs::PackedDib(TestDocs::DibParams{});
    docs.push_back({"archive.jmv", FileFormatMetafile, TestDocs::JmvArchive(archive)});
    return docs;
}

std::vector<Document> OtherTypeDocuments() {
    using namespace TestDocs;
    std::vector<Document> docs;
    // Each form with the program version the form stands for.
    const std::tuple<uint32_t, uint16_t, const char*> forms[] = {
        {Tag("MTVA"), 1000, "motion.mtv"}, {Tag("SYL1"), 1100, "symbols.syl"}, {Tag("PAT "), 1500, "pattern-riff.pat"}};
    for (const auto& [form, version, name] : forms) {
        Summary summary;
        summary.appVersion = version;
        DibParams dib;
        dib.width = 64;
        dib.height = 48;
        docs.push_back({name, FileFormatDrawing, Riff(form, {SumiChunk(summary), VrsnChunk(version), DispChunk(dib)})});
    }
    const std::pair<const char*, const char*> types[] = {
        {"application/x-vnd.brimo.zcf.tecnia.document+zip", "technical.tcz"},
        {"application/x-vnd.brimo.zcf.pattern+zip", "pattern-zcf.pat"},
        {"application/x-vnd.brimo.plotra.document+zip", "older-zip.kvd"},
        {"application/x-vnd.brimo.plotra.template+zip", "older-zip.kvt"},
        {"application/x-vnd.brimo.plotra.pattern+zip", "older-pattern.pat"},
        {"application/x-vnd.brimo.symbol.library+zip", "symbols-zip.syz"},
        {"application/x-vnd.brimo.zcf.plotra.template+zip", "template-zip.kvt"},
    };
    for (const auto& [type, name] : types) {
        kvdzip::Document doc;
        doc.mimeType = type;
        doc.metadata = kvdzip::FullMetadata(kvdzip::Facts{}, false);
        doc.images.push_back(kvdzip::Thumbnail(false, 64, 48));
        docs.push_back({name, FileFormatDrawing, kvdzip::Build(doc)});
    }
    return docs;
}

}  // namespace reliability
