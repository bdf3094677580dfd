// Writers of container drawing documents for tests, samples, benchmarks and
// fuzz seeds: a zip with "mimetype", the metadata part, the text part, the
// part table, previews, links and content parts, in either layout. The zip
// bytes come from the hand-made archive writer of tests/support/zip, so the
// reader is tested against files the library did not write itself; the
// XML parts are printed by the metadata layer from known values.
//
//   kvdzip::Document doc;                       // current layout
//   doc.metadata = kvdzip::FullMetadata(kvdzip::Facts{}, false);
//   doc.textInfo = kvdzip::TextInfo(kvdzip::Facts{}, false);
//   doc.images.push_back(kvdzip::Thumbnail(false));
//   std::vector<uint8_t> zip = kvdzip::Build(doc);
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "metadata/ComplexTypes.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace kvdzip {

inline constexpr char kDocumentType[] = "application/x-vnd.brimo.zcf.plotra.document+zip";
inline constexpr char kTemplateType[] = "application/x-vnd.brimo.zcf.plotra.template+zip";

// One image part. An empty name takes the layout's standard name for the
// kind and index ("previews/page1.png", "metadata/thumbnails/page1.bmp").
struct Image {
    std::string kind = "thumbnail";
    int index = -1;
    int width = 0;
    int height = 0;
    std::string mediaType = "image/png";
    std::vector<uint8_t> bytes;
    std::string name;
};

struct Document {
    bool legacy = false;
    std::string mimeType = kDocumentType;
    std::optional<std::string> metadata;  // XML text of the metadata part; none: no part
    std::optional<std::string> textInfo;  // XML text of the text part
    std::vector<Image> images;
    std::vector<std::pair<std::string, std::string>> links;  // part name, reference
    std::vector<ziptest::Entry> parts;                       // content and other members, as given
    bool writePartTable = true;
};

std::vector<uint8_t> Build(const Document& document);
// The standard member name of an image in a layout.
std::string ImageName(bool legacy, const std::string& kind, int index, const std::string& mediaType);

// The values FullMetadata writes, one per catalogue row; tests compare
// against the same object.
struct Facts {
    std::wstring title = L"Garden plan";
    std::wstring titleGerman = L"Gartenplan";
    std::wstring subject = L"Spring planting";
    std::wstring keywordsEnglish = L"garden, plan";
    std::wstring keywordsGerman = L"Garten, Plan";
    std::wstring notes = L"Second draft";
    std::wstring category;  // empty: the reader translates the template type
    std::vector<std::wstring> authors = {L"Ann Example", L"Ben Example"};
    std::wstring lastAuthor = L"Ben Example";
    std::wstring productName = L"Plotra";
    int appVersion = 2200;
    int buildNumber = 601;
    int coreVersion = 2200;
    int revision = 4;
    std::wstring rights = L"(c) Example Gardens";
    int pages = 2;
    double resolutionX = 300.0;
    double resolutionY = 150.0;
    std::wstring pageDimensions = L"210 x 297 mm";
    std::vector<std::wstring> fonts = {L"Serif", L"Sans"};
    std::wstring pageSizeName = L"A4";
    int orientation = 2;
    bool fontsEmbedded = true;
    std::wstring sided = L"double";
    std::wstring folds = L"tri-fold";
    std::wstring templateType = L"flyer";
    std::wstring industry = L"gardening";
    Metadata::ComplexTypes::TextInfo text;
    Metadata::ComplexTypes::ObjectInfo objects;
    Metadata::ComplexTypes::BitmapInfo bitmaps;
    Metadata::ComplexTypes::FillInfo fills;
    Metadata::ComplexTypes::OutlineInfo outlines;
    Metadata::ComplexTypes::EffectInfo effects;
    Metadata::ComplexTypes::ColorInfo colours;
    std::vector<std::wstring> styles = {L"Heading", L"Body"};
    // Open properties: a ushort under the first FMTID of the tests.
    int openValue = 42;
    // Text part.
    std::vector<std::wstring> pageNames = {L"Front", L"Back"};
    std::vector<std::wstring> layerNames = {L"Beds", L"Paths"};
    std::vector<std::wstring> objectNames = {L"Rose bed"};
    // Streams of runs: text, language, break word ("" for none).
    struct Run {
        std::wstring text;
        int language;
        std::string breakWord;
    };
    std::vector<std::vector<Run>> streams = {
        {{L"Garden plan", 1033, ""}, {L"Roses by the gate", 1033, "para"}, {L"Rosen am Tor", 1031, "line"}},
        {{L"Legend", 1033, ""}, {L"Path", 1033, "none"}},
    };

    Facts();
};

// The open property FullMetadata writes: FMTID, PID 7, "ushort".
extern const char kOpenFmtid[];

// The metadata part with every row of the catalogue set, in the current
// (dc, xmp, brm, kvd, kvt, kvdinfo) or the legacy (legacykvd) form.
std::string FullMetadata(const Facts& facts, bool legacy);
// The text part: page, layer and object names, and the text streams.
std::string TextInfo(const Facts& facts, bool legacy);

// The thumbnail of a layout (PNG in the current one, BMP in the legacy one):
// a few filled shapes on a light ground; `seed` varies colours and shapes.
Image Thumbnail(bool legacy, int width = 256, int height = 181, uint32_t seed = 1);

// A whole document of either layout with every part, two pages, text,
// previews of both pages and a content part.
Document FullDocument(bool legacy, const Facts& facts = Facts{});
// A current-layout document (320 x 240 thumbnail, one page) whose thumbnail
// member stands under content/ and is reached through a link from the name
// the part table gives it.
Document LinkedThumbnailDocument();

}  // namespace kvdzip
