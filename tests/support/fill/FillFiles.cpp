// Writers of fill files for tests and samples (see FillFiles.h).
#include "tests/support/fill/FillFiles.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

#include "fill/BitmapPatternInfo.h"
#include "fill/FountainFillInfo.h"
#include "fill/VectorPatternInfo.h"
#include "imaging/codecs/Codecs.h"
#include "metadata/Container.h"
#include "metadata/Schema.h"
#include "metadata/Utf8.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace FillDocs {

namespace {

namespace S = ZipContainerSchema;
using BrmUtils::NativeBitmap;
using BrmPlatform::BrmStringW;

constexpr int kThumbEdge = 96;

std::string PartTable(const FillFile& file) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<container xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\" "
        "xmlns:brm=\"urn:brimo:namespaces:zcf:xmlns:container\" version=\"1.0\"><rootfiles>";
    if (file.withMain) {
        xml += "<rootfile full-path=\"content/fill.xml\" media-type=\"application/x-vnd.brimo.zcf.fill\" "
               "brm:file-kind=\"main\"/>";
    }
    if (!file.thumbnail.empty()) {
        xml += "<rootfile full-path=\"previews/thumbnail.png\" media-type=\"image/png\" brm:file-kind=\"thumbnail\" "
               "brm:image-width=\"" + std::to_string(file.thumbnailWidth) + "\" brm:image-height=\"" +
               std::to_string(file.thumbnailHeight) + "\"/>";
    }
    return xml + "</rootfiles></container>";
}

void SetText(Metadata::Container& metadata, const Metadata::PropertyDescriptor& row, const std::wstring& text) {
    if (!text.empty()) metadata.SetLocalizedText(row, L"x-default", BrmStringW(text));
}

std::unique_ptr<NativeBitmap> Paint(int width, int height, uint32_t (*color)(int x, int y, const void*), const void* ctx) {
    auto bitmap = NativeBitmap::Create(width, height, BrmUtils::PixelFormat::Rgb24);
    auto pixels = bitmap->LockBits();
    for (int y = 0; y < height; ++y) {
        uint32_t* row = pixels->GetRow(y);
        for (int x = 0; x < width; ++x) row[x] = 0xFF000000u | color(x, y, ctx);
    }
    return bitmap;
}

// A 16 x 16 brick: red with a light mortar line, asymmetric so mirroring shows.
uint32_t Brick(int x, int y, const void*) {
    if (y % 8 == 7 || (x == (y < 8 ? 3 : 11))) return 0xE8E0D0;
    return x < 8 ? 0xB03020 : 0x8C2418;
}

uint32_t Diamonds(int x, int y, const void*) {
    const int u = (x + y) / 12, v = (x - y + 96) / 12;
    return (u + v) % 2 ? 0x2060C0 : 0xF0F4FF;
}

// The RGB model of a stop as 0xRRGGBB; black when there is none.
uint32_t StopRgb(const FillColorStop& stop) {
    auto it = stop.color.find(L"RGB");
    if (it == stop.color.end()) return 0;
    unsigned r = 0, g = 0, b = 0;
    std::swscanf(it->second.GetString(), L"%u,%u,%u", &r, &g, &b);
    return (std::min(r, 255u) << 16) | (std::min(g, 255u) << 8) | std::min(b, 255u);
}

uint32_t Gradient(int x, int y, const void* ctx) {
    const auto& f = *static_cast<const FountainSettings*>(ctx);
    if (f.stops.empty()) return 0xFFFFFF;
    // Position along the fill's rotated x axis, 0 at the left edge.
    const double angle = std::atan2(f.matrix[3], f.matrix[0]);
    const double cx = x - kThumbEdge / 2.0, cy = y - kThumbEdge / 2.0;
    const double t = std::clamp(0.5 + (cx * std::cos(angle) + cy * std::sin(angle)) / kThumbEdge, 0.0, 1.0);
    auto next = f.stops.lower_bound(t);
    if (next == f.stops.begin()) return StopRgb(next->second);
    if (next == f.stops.end()) return StopRgb(std::prev(next)->second);
    auto prev = std::prev(next);
    const double w = (t - prev->first) / (next->first - prev->first);
    const uint32_t a = StopRgb(prev->second), b = StopRgb(next->second);
    uint32_t out = 0;
    for (int shift : {16, 8, 0}) {
        const double ca = (a >> shift) & 0xFF, cb = (b >> shift) & 0xFF;
        out |= uint32_t(std::lround(ca + (cb - ca) * w)) << shift;
    }
    return out;
}

// Samples keep their identity from one generation to the next.
void FixIdentity(FillInfo& fill, int n) {
    wchar_t text[40];
    std::swprintf(text, 40, L"5a3f0c1e-7d2b-4c9a-8e11-00000000000%d", n);
    fill.identity.documentId = BrmUtils::Guid(text);
    text[34] = L'a';
    fill.identity.instanceId = BrmUtils::Guid(text);
}

}  // namespace

Bytes EncodePng(const NativeBitmap& bitmap) {
    Bytes out;
    BrmUtils::Codecs::EncodePng(bitmap, {}, out);
    return out;
}

Bytes Build(const FillFile& file) {
    Metadata::Container metadata = Metadata::Container::CreateEmpty();
    std::string fillXml = file.fillXml;
    if (file.fill && fillXml.empty()) {
        auto root = NewFillElement();
        file.fill->Write(metadata, *root, nullptr);
        fillXml = Brm::XmlFile::FromTree(root.get())->ToText();
    }
    const Properties& p = file.props;
    SetText(metadata, S::dc::title, p.title);
    SetText(metadata, S::brm::Keywords, p.keywords);
    SetText(metadata, S::brm::Notes, p.comments);
    SetText(metadata, S::brm::Category, p.category);
    if (!p.subFormat.empty()) metadata.SetProperty(S::brm::SubFormat, BrmUtils::Any(BrmStringW(p.subFormat)));
    if (!p.creatorTool.empty()) metadata.SetProperty(S::xmp::CreatorTool, BrmUtils::Any(BrmStringW(p.creatorTool)));

    ziptest::Archive zip;
    zip.entries.push_back(ziptest::MakeEntry("mimetype", ziptest::Bytes(file.mimetype)));
    zip.entries.push_back(ziptest::MakeEntry("META-INF/container.xml", ziptest::Bytes(PartTable(file)), 8));
    zip.entries.push_back(ziptest::MakeEntry("META-INF/metadata.xml", ziptest::Bytes(metadata.SaveText()), 8));
    if (!file.thumbnail.empty()) zip.entries.push_back(ziptest::MakeEntry("previews/thumbnail.png", file.thumbnail));
    if (file.withMain) zip.entries.push_back(ziptest::MakeEntry("content/fill.xml", ziptest::Bytes(fillXml), 8));
    for (const auto& [name, bytes] : file.parts) zip.entries.push_back(ziptest::MakeEntry(name, bytes, 8));
    return ziptest::Build(zip);
}

FillFile BitmapSample() {
    auto fill = std::make_shared<BitmapPatternInfo>();
    fill->layout.width = 16;
    fill->layout.height = 16;
    fill->layout.mirrorHorizontal = true;
    fill->layout.byColumns = false;
    fill->layout.amount = 0.5;
    fill->layout.tile = L"content/tile.png";
    fill->layout.tileMediaType = L"image/png";
    fill->filters = {{L"brightness", L"10"}, {L"contrast", L"-5"}};
    FillFile file;
    file.parts.emplace_back("content/tile.png", EncodePng(*Paint(16, 16, Brick, nullptr)));
    // The thumbnail repeats the tile with every other row shifted by half a
    // tile and every other column mirrored, as the fill says.
    struct Layout { static uint32_t Color(int x, int y, const void*) {
        const int row = y / 16, shifted = x + (row % 2) * 8, column = shifted / 16;
        const int tx = column % 2 ? 15 - shifted % 16 : shifted % 16;
        return Brick(tx, y % 16, nullptr);
    } };
    file.thumbnail = EncodePng(*Paint(kThumbEdge, kThumbEdge, Layout::Color, nullptr));
    FixIdentity(*fill, 1);
    file.fill = std::move(fill);
    file.props = {L"Red brick wall", L"brick;wall;red", L"Half-brick bond, mirrored columns", L"Patterns", L"",
                  L"fill sample writer"};
    file.thumbnailWidth = file.thumbnailHeight = kThumbEdge;
    return file;
}

FillFile VectorSample() {
    auto fill = std::make_shared<VectorPatternInfo>();
    fill->layout.units = TileLayout::kTenthMicrons;
    fill->layout.width = 50000;
    fill->layout.height = 50000;
    fill->layout.angle = 45;
    fill->layout.byColumns = true;
    fill->layout.tile = L"content/tile.kvd";
    fill->layout.tileMediaType = L"application/x-vnd.brimo.kvd";
    fill->crop = {0, 0, 50000, 50000};
    FillFile file;
    file.parts.emplace_back("content/tile.kvd", ziptest::Bytes("a vector tile drawing"));
    file.thumbnail = EncodePng(*Paint(kThumbEdge, kThumbEdge, Diamonds, nullptr));
    FixIdentity(*fill, 2);
    file.fill = std::move(fill);
    file.props = {L"Blue diamonds", L"diamond;blue", L"A drawing tile turned by 45 degrees", L"Patterns", L"",
                  L"fill sample writer"};
    file.thumbnailWidth = file.thumbnailHeight = kThumbEdge;
    return file;
}

FillFile FountainSample() {
    auto fill = std::make_shared<FountainFillInfo>();
    auto& f = fill->fountain;
    f.type = L"linear";
    f.spread = L"pad";
    f.blend = L"simple";
    f.matrix = *FillMatrix::Compose({1.5, 1, std::tan(0.1), 0.5, 0, 0});
    f.steps = 64;
    const std::pair<double, const wchar_t*> stops[] = {
        {0, L"255,200,40"}, {0.45, L"240,90,30"}, {0.7, L"150,40,110"}, {1, L"20,20,80"}};
    for (const auto& [position, rgb] : stops) {
        f.stops[position] = {{{L"RGB", rgb}}, 1.0, L"direct", 0.5, position};
    }
    f.stops[0.7].midpoint = 0.4;
    FillFile file;
    file.thumbnail = EncodePng(*Paint(kThumbEdge, kThumbEdge, Gradient, &f));
    FixIdentity(*fill, 3);
    file.fill = std::move(fill);
    file.props = {L"Sunset", L"gradient;warm", L"Four stops from yellow to night blue", L"Gradients", L"",
                  L"fill sample writer"};
    file.thumbnailWidth = file.thumbnailHeight = kThumbEdge;
    return file;
}

}  // namespace FillDocs
