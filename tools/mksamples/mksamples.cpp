// Writes the small sample documents of samples/ with the project's own
// document writers: `mksamples OUTDIR`. scripts/make_samples.sh runs it.
// `mksamples OUTDIR COUNT` writes COUNT small documents for benchmarks;
// `mksamples --qpx-seeds OUTDIR` the paint images that seed fuzz_qpx.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/fill/FillFiles.h"
#include "tests/support/kvdzip/KvdZipWriter.h"
#include "tests/support/riff/DrawingChunks.h"
#include "tools/mksamples/PaintSamples.h"

using namespace TestDocs;

namespace {

bool Save(const std::filesystem::path& dir, const char* name, const Bytes& bytes) {
    std::ofstream out(dir / name, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    std::printf("%s (%zu bytes)\n", (dir / name).c_str(), bytes.size());
    return bool(out);
}

Bytes Drawing(uint32_t form, uint16_t version, bool wide, bool compressed) {
    Summary sum;
    sum.appVersion = version;
    sum.buildNumber = 310;
    sum.productId = 1;
    sum.compressionRatio = compressed ? 2.5f : 0.0f;
    DibParams dib;
    dib.width = 96;
    dib.height = 64;
    dib.seed = uint8_t(version / 100);
    std::vector<Chunk> summary = {
        InfoList({{Tag("ICMT"), L"Ground floor plan, revision B"}, {Tag("IKEY"), L"plan;ground floor;site"}}, wide),
        UrlChunk({{L"C:\\plans\\site.kvd"}}, wide),
    };
    std::vector<Chunk> chunks = {SumiChunk(sum), VrsnChunk(version)};
    if (compressed) {
        chunks.push_back(CompressedSection(summary));
    } else {
        chunks.insert(chunks.end(), summary.begin(), summary.end());
    }
    chunks.push_back(DocList({FontTable(version, {L"Serif", L"Sans", L"Mono"}), PageConfigChunk(version, PageConfig{})}));
    chunks.push_back(PageList());
    chunks.push_back(PageList());
    chunks.push_back(DispChunk(dib));
    return Riff(form, chunks);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: mksamples OUTDIR [COUNT]\n");
        return 2;
    }
    if (argc == 3 && std::string(argv[1]) == "--qpx-seeds") {
        std::filesystem::create_directories(argv[2]);
        bool ok = true;
        for (const auto& [name, bytes] : PaintSamples::FuzzSeeds()) ok = Save(argv[2], name.c_str(), bytes) && ok;
        return ok ? 0 : 1;
    }
    std::filesystem::path dir = argv[1];
    std::filesystem::create_directories(dir);
    if (argc == 3) {
        const Bytes variants[] = {Drawing(Tag("kvd8"), 801, false, false), Drawing(Tag("TCNB"), 1200, true, true),
                                  Drawing(Tag("KVTD"), 1250, true, false)};
        long count = std::strtol(argv[2], nullptr, 10);
        for (long i = 0; i < count; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "doc%06ld.kvd", i);
            const Bytes& b = variants[size_t(i) % 3];
            std::ofstream(dir / name, std::ios::binary).write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
        }
        return 0;
    }
    DibParams metaDib;
    metaDib.width = 48;
    metaDib.height = 48;
    metaDib.bitCount = 8;
    bool ok = Save(dir, "plan-v8.kvd", Drawing(Tag("kvd8"), 801, false, false)) &&
              Save(dir, "plan-v12.kvd", Drawing(Tag("TCNB"), 1200, true, true)) &&
              Save(dir, "template-v12.kvt", Drawing(Tag("KVTD"), 1250, true, false)) &&
              Save(dir, "picture.jmv", ExchangeMetafile(metaDib)) &&
              Save(dir, "garden-zip.kvd", kvdzip::Build(kvdzip::FullDocument(false))) &&
              Save(dir, "flyer-legacy.kvt", kvdzip::Build(kvdzip::FullDocument(true))) &&
              Save(dir, "orchard-linked.kvd", kvdzip::Build(kvdzip::LinkedThumbnailDocument())) &&
              Save(dir, "bricks.fill", FillDocs::Build(FillDocs::BitmapSample())) &&
              Save(dir, "diamonds.fill", FillDocs::Build(FillDocs::VectorSample())) &&
              Save(dir, "sunset.fill", FillDocs::Build(FillDocs::FountainSample()));
    for (const auto& [name, bytes] : PaintSamples::Samples()) ok = Save(dir, name.c_str(), bytes) && ok;
    return ok ? 0 : 1;
}
