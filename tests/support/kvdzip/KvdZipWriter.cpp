// The container document writer: zip members, XML parts and drawn previews.
#include "tests/support/kvdzip/KvdZipWriter.h"

#include <algorithm>
#include <cstdlib>

#include "imaging/NativeBitmap.h"
#include "imaging/codecs/ImageCodecs.h"
#include "metadata/Container.h"
#include "metadata/LegacySchema.h"
#include "metadata/Schema.h"
#include "metadata/Utf8.h"
#include "metadata/xml/Node.h"
#include "utils/Guid.h"

namespace kvdzip {

const char kOpenFmtid[] = "{6b1e5f2a-3c4d-4e5f-8a9b-0c1d2e3f4a5b}";

namespace {

using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::MultiLanguageString;
namespace Current = ZipContainerSchema;
namespace Legacy = ZipContainerSchema::legacykvd;

std::vector<BrmStringW> Strings(const std::vector<std::wstring>& items) {
    return std::vector<BrmStringW>(items.begin(), items.end());
}

MultiLanguageString Texts(std::initializer_list<std::pair<const wchar_t*, std::wstring>> entries) {
    MultiLanguageString text;
    for (const auto& [language, value] : entries) text.Set(language, BrmStringW(value));
    return text;
}

std::string Escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

std::string PartTable(const std::vector<Image>& images) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<container xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\" "
        "xmlns:brm=\"urn:brimo:namespaces:zcf:xmlns:container\" version=\"1.0\"><rootfiles>";
    for (const Image& image : images) {
        xml += "<rootfile full-path=\"" + Escape(ImageName(false, image.kind, image.index, image.mediaType)) +
               "\" media-type=\"" + Escape(image.mediaType) + "\" brm:file-kind=\"" + Escape(image.kind) + "\"";
        if (image.index >= 0) xml += " brm:index=\"" + std::to_string(image.index) + "\"";
        if (image.width > 0 && image.height > 0) {
            xml += " brm:image-width=\"" + std::to_string(image.width) + "\" brm:image-height=\"" +
                   std::to_string(image.height) + "\"";
        }
        xml += "/>";
    }
    return xml + "</rootfiles></container>";
}

std::string LinkTable(const std::vector<std::pair<std::string, std::string>>& links) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<linkInfo>";
    for (const auto& [part, ref] : links) xml += "<link part=\"" + Escape(part) + "\" ref=\"" + Escape(ref) + "\"/>";
    return xml + "</linkInfo>";
}

std::vector<uint8_t> Encode(BrmUtils::NativeBitmap& bitmap, const char* mediaType) {
    ziptest::Ref<IStream> out = ziptest::EmptyStream();
    std::wstring mime(mediaType, mediaType + std::char_traits<char>::length(mediaType));
    IStream* stream = out.get();
    stream->AddRef();  // SaveImage takes one reference
    if (!BrmUtils::SaveImage(bitmap, mime.c_str(), stream)) return {};
    return ziptest::Contents(out.get());
}

uint32_t Mix(uint32_t seed, uint32_t salt) {
    uint32_t x = seed * 2654435761u + salt * 40503u + 0x9E3779B9u;
    x ^= x >> 15;
    x *= 2246822519u;
    return x ^ (x >> 13);
}

}  // namespace

Facts::Facts() {
    text.Paragraphs = 3;
    text.Lines = 5;
    text.Words = 11;
    text.Characters = 64;
    text.Languages = {1033, 1031};
    objects.Total = 9;
    objects.Curve = 2;
    objects.Rect = 3;
    objects.Text = 2;
    objects.OLELinked = 1;
    objects.OLEEmbedded = 1;
    bitmaps.Types = {1};
    bitmaps.LinkPaths = {L"/plans/site.kvd", L"/plans/roses.png"};
    fills.Uniform = 4;
    fills.Fountain = 1;
    fills.Colors = {L"Green", L"Rose"};
    fills.Palettes = {L"Garden"};
    fills.SpotColors = {L"Spot Green"};
    outlines.Solid = 3;
    outlines.Dashed = 1;
    outlines.Colors = {L"Black", L"Green"};
    outlines.Palettes = {L"Default", L"Garden"};
    outlines.SpotColors = {};
    effects.DropShadow = 1;
    effects.Transparency = 2;
    colours.RgbProfileName = L"sRGB";
    colours.CmykProfileName = L"Coated";
    colours.GrayscaleProfileName = L"Dot Gain 20%";
    colours.ColorMode = 1;
    colours.RenderingIntent = 2;
}

std::string ImageName(bool legacy, const std::string& kind, int index, const std::string& mediaType) {
    std::string number = index >= 0 ? std::to_string(index) : std::string();
    if (legacy) return "metadata/thumbnails/" + kind + number + ".bmp";
    std::string extension = mediaType == "image/jpeg" ? ".jpg" : mediaType == "image/bmp" ? ".bmp" : ".png";
    return "previews/" + kind + number + extension;
}

std::vector<uint8_t> Build(const Document& document) {
    ziptest::Archive archive;
    archive.entries.push_back(ziptest::MakeEntry("mimetype", ziptest::Bytes(document.mimeType)));
    const char* metadataName = document.legacy ? "metadata/metadata.xml" : "META-INF/metadata.xml";
    const char* textName = document.legacy ? "metadata/textinfo.xml" : "META-INF/textinfo.xml";
    if (!document.links.empty()) {
        archive.entries.push_back(ziptest::MakeEntry(document.legacy ? "links.xml" : "META-INF/links.xml",
                                                     ziptest::Bytes(LinkTable(document.links)), 8));
    }
    if (document.metadata) archive.entries.push_back(ziptest::MakeEntry(metadataName, ziptest::Bytes(*document.metadata), 8));
    if (document.textInfo) archive.entries.push_back(ziptest::MakeEntry(textName, ziptest::Bytes(*document.textInfo), 8));
    if (!document.legacy && document.writePartTable) {
        archive.entries.push_back(ziptest::MakeEntry("META-INF/container.xml", ziptest::Bytes(PartTable(document.images)), 8));
    }
    for (const Image& image : document.images) {
        std::string name = image.name.empty() ? ImageName(document.legacy, image.kind, image.index, image.mediaType)
                                              : image.name;
        archive.entries.push_back(ziptest::MakeEntry(name, image.bytes, image.mediaType == "image/bmp" ? 8 : 0));
    }
    for (const ziptest::Entry& entry : document.parts) archive.entries.push_back(entry);
    return ziptest::Build(archive);
}

std::string FullMetadata(const Facts& f, bool legacy) {
    Metadata::Container c = Metadata::Container::CreateEmpty();
    ZipContainerSchema::OpenMetadataProperty open;
    open.formatId = BrmUtils::Guid(kOpenFmtid);
    open.propertyId = 7;
    open.type = L"ushort";
    open.value = BrmStringW(std::to_wstring(f.openValue));
    const std::vector<ZipContainerSchema::OpenMetadataProperty> openList = {open};
    std::wstring joinedAuthors;
    for (const auto& a : f.authors) joinedAuthors += (joinedAuthors.empty() ? L"" : L";") + a;
    // Each form's rows in its own order; a row of one form only has no row in the other.
    const struct {
        const Metadata::PropertyDescriptor *legacy, *current;
        Any value;
    } rows[] = {
        {&Legacy::Title, &Current::dc::title, Any(Texts({{L"en", f.title}, {L"de", f.titleGerman}}))},
        {&Legacy::Subject, nullptr, Any(BrmStringW(f.subject))},
        {nullptr, &Current::brm::Subject, Any(Texts({{L"en", f.subject}}))},
        {&Legacy::Keywords, nullptr, Any(BrmStringW(f.keywordsEnglish))},
        {nullptr, &Current::brm::Keywords, Any(Texts({{L"en", f.keywordsEnglish}, {L"de", f.keywordsGerman}}))},
        {&Legacy::Notes, nullptr, Any(BrmStringW(f.notes))},
        {nullptr, &Current::brm::Notes, Any(Texts({{L"en", f.notes}}))},
        {&Legacy::Type, nullptr, Any(BrmStringW(f.templateType))},
        {nullptr, f.category.empty() ? nullptr : &Current::brm::Category, Any(Texts({{L"en", f.category}}))},
        {&Legacy::Author, nullptr, Any(BrmStringW(joinedAuthors))},
        {nullptr, &Current::dc::creator, Any(Strings(f.authors))},
        {&Legacy::LastAuthor, &Current::brm::LastAuthor, Any(BrmStringW(f.lastAuthor))},
        {&Legacy::ProductName, &Current::kvd::ProductName, Any(BrmStringW(f.productName))},
        {&Legacy::AppVersion, &Current::kvd::AppVersion, Any(f.appVersion)},
        {&Legacy::BuildNumber, &Current::kvd::BuildNumber, Any(f.buildNumber)},
        {&Legacy::CoreVersion, &Current::kvd::CoreVersion, Any(f.coreVersion)},
        {&Legacy::Revision, &Current::brm::Revision, Any(f.revision)},
        {&Legacy::Copyright, nullptr, Any(BrmStringW(f.rights))},
        {nullptr, &Current::dc::rights, Any(Texts({{L"en", f.rights}}))},
        {&Legacy::NumPages, &Current::kvdinfo::NumPages, Any(f.pages)},
        {&Legacy::TextInfo, &Current::kvdinfo::TextInfo, Any(f.text)},
        {&Legacy::ResolutionX, &Current::kvdinfo::ResolutionX, Any(f.resolutionX)},
        {&Legacy::ResolutionY, &Current::kvdinfo::ResolutionY, Any(f.resolutionY)},
        {&Legacy::PageDimensions, &Current::kvdinfo::PageDimensions, Any(BrmStringW(f.pageDimensions))},
        {&Legacy::FontsUsed, &Current::kvdinfo::FontsUsed, Any(Strings(f.fonts))},
        {&Legacy::PageSizeName, &Current::kvdinfo::PageSizeName, Any(BrmStringW(f.pageSizeName))},
        {&Legacy::PageOrientation, &Current::kvdinfo::PageOrientation, Any(f.orientation)},
        {&Legacy::FontsEmbedded, nullptr, Any(f.fontsEmbedded ? 1 : 0)},
        {nullptr, &Current::kvdinfo::FontsEmbedded, Any(f.fontsEmbedded)},
        {&Legacy::Objects, &Current::kvdinfo::Objects, Any(f.objects)},
        {&Legacy::BitmapInfo, &Current::kvdinfo::BitmapInfo, Any(f.bitmaps)},
        {&Legacy::Fills, &Current::kvdinfo::FillInfo, Any(f.fills)},
        {&Legacy::Outlines, &Current::kvdinfo::OutlineInfo, Any(f.outlines)},
        {&Legacy::Effects, &Current::kvdinfo::Effects, Any(f.effects)},
        {&Legacy::Styles, &Current::kvdinfo::Styles, Any(Strings(f.styles))},
        {&Legacy::Color, &Current::kvdinfo::ColorInfo, Any(f.colours)},
        {&Legacy::Sided, &Current::kvt::Sided, Any(BrmStringW(f.sided))},
        {&Legacy::Folds, &Current::kvt::Folds, Any(BrmStringW(f.folds))},
        {nullptr, &Current::kvt::Type, Any(BrmStringW(f.templateType))},
        {&Legacy::Industry, &Current::kvt::Industry, Any(BrmStringW(f.industry))},
        {&Legacy::Properties, &Current::brm::OpenMetadata, Any(openList)},
        {nullptr, &Current::xmp::MetadataDate, Any(SYSTEMTIME{2000, 1, 6, 1, 12, 0, 0, 0})},
    };
    for (const auto& row : rows) {
        if (const Metadata::PropertyDescriptor* descriptor = legacy ? row.legacy : row.current) {
            c.SetProperty(*descriptor, row.value);
        }
    }
    return c.SaveText();
}

std::string TextInfo(const Facts& f, bool /*legacy*/) {
    // Both layouts keep the text part in the legacy vocabulary.
    Metadata::Container c = Metadata::Container::CreateEmpty();
    c.SetProperty(Legacy::PageNames, Any(Strings(f.pageNames)));
    c.SetProperty(Legacy::LayerNames, Any(Strings(f.layerNames)));
    c.SetProperty(Legacy::ObjectNames, Any(Strings(f.objectNames)));
    XmlNS::Node* description = c.FindDescription();
    description->DeclareNamespace(Metadata::Namespaces::legacykvd);
    const Metadata::QualifiedName lang{&Metadata::Namespaces::legacykvd, "lang"};
    const Metadata::QualifiedName breakName{&Metadata::Namespaces::legacykvd, "break"};
    for (const auto& stream : f.streams) {
        XmlNS::Node* streamNode = description->AddChild(ZipContainerSchema::names::TextStream);
        for (const auto& run : stream) {
            XmlNS::Node* runNode =
                streamNode->AddChild(ZipContainerSchema::names::TextRun, Metadata::WideToUtf8(std::wstring_view(run.text)));
            runNode->SetAttribute(lang, std::to_string(run.language));
            if (!run.breakWord.empty()) runNode->SetAttribute(breakName, run.breakWord);
        }
    }
    return c.SaveText();
}

// Encoded as "image/png", "image/jpeg" or "image/bmp".
static std::vector<uint8_t> DrawingImage(int width, int height, uint32_t seed, const char* mediaType) {
    auto bitmap = BrmUtils::NativeBitmap::Create(width, height, BrmUtils::PixelFormat::Rgb24);
    if (!bitmap) return {};
    const uint32_t palette[] = {0xFF2E7D32, 0xFFD81B60, 0xFF1E88E5, 0xFFFDD835, 0xFF6D4C41, 0xFF8E24AA};
    auto colour = [&](uint32_t salt) { return palette[Mix(seed, salt) % 6]; };
    const int w = width, h = height;
    // Shapes in proportion to the image: a framed page, a disc, a bar, a triangle.
    const int cx = w * int(30 + Mix(seed, 1) % 20) / 100, cy = h * 45 / 100, r = std::min(w, h) / 4;
    const int barTop = h * 70 / 100, barBottom = h * 82 / 100;
    const int tx = w * 72 / 100, ty = h * 18 / 100, tw = w / 5, th = h / 3;
    auto rows = bitmap->LockBits();
    for (int y = 0; y < h; ++y) {
        uint32_t* row = rows->GetRow(y);
        for (int x = 0; x < w; ++x) {
            uint32_t c = 0xFFF7F4EC;  // paper
            if (x < 3 || y < 3 || x >= w - 3 || y >= h - 3) c = 0xFF455A64;
            const int dx = x - cx, dy = y - cy;
            if (dx * dx + dy * dy <= r * r) c = colour(2);
            if (dx * dx + dy * dy <= (r / 2) * (r / 2)) c = colour(3);
            if (y >= barTop && y < barBottom && x >= w / 10 && x < w * 9 / 10) c = colour(4);
            // An upright triangle: its half-width grows with the distance from the apex.
            if (y >= ty && y < ty + th && th > 0 && std::abs(x - tx) * th <= (y - ty) * tw / 2) c = colour(5);
            row[x] = c;
        }
    }
    rows.reset();
    return Encode(*bitmap, mediaType);
}

Image Thumbnail(bool legacy, int width, int height, uint32_t seed) {
    Image image;
    image.kind = "thumbnail";
    image.width = width;
    image.height = height;
    image.mediaType = legacy ? "image/bmp" : "image/png";
    image.bytes = DrawingImage(width, height, seed, image.mediaType.c_str());
    return image;
}

// The preview of a page (1-based).
static Image PagePreview(bool legacy, int page, int width = 256, int height = 181) {
    Image image = Thumbnail(legacy, width, height, uint32_t(page) * 7 + 3);
    image.kind = "page";
    image.index = page;
    return image;
}

Document FullDocument(bool legacy, const Facts& facts) {
    Document doc;
    doc.legacy = legacy;
    doc.mimeType = legacy ? kTemplateType : kDocumentType;
    doc.metadata = FullMetadata(facts, legacy);
    doc.textInfo = TextInfo(facts, legacy);
    doc.images = {Thumbnail(legacy), PagePreview(legacy, 1), PagePreview(legacy, 2, 181, 256)};
    doc.parts.push_back(ziptest::MakeEntry("content/root.dat", ziptest::Text(4096, 5), 8));
    doc.parts.push_back(ziptest::MakeEntry("content/data/image1.bin", ziptest::Noise(2048, 6), 0));
    return doc;
}

Document LinkedThumbnailDocument() {
    Facts facts;
    facts.title = L"Orchard sketch";
    facts.pages = 1;
    Document doc;
    doc.metadata = FullMetadata(facts, false);
    doc.textInfo = TextInfo(facts, false);
    Image thumbnail = Thumbnail(false, 320, 240, 9);
    thumbnail.name = "content/images/cover.png";
    doc.links.push_back({ImageName(false, "thumbnail", -1, "image/png"), "self:///" + thumbnail.name});
    doc.images.push_back(thumbnail);
    return doc;
}

}  // namespace kvdzip
