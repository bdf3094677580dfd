// `fileinfo parts` and `cat`: the members of any zip file, through the
// document container (so the link table of this system's documents is
// followed; a zip of another origin simply has none). `cat` streams the
// part to standard output in blocks, whatever its size.
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <vector>

#include "Commands.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace fitool {
namespace {

constexpr size_t kBlock = 1 << 16;

ZipContainerRef OpenZip(const std::string& file, int* exitCode) {
    ZipContainerRef container = ZipContainerImpl::OpenFromPath(BrmPlatform::BrmStringW(Widen(file)));
    if (!container) *exitCode = Fail(file, "not a zip file, or unreadable");
    return container;
}

const char* MethodName(uint16_t method) {
    switch (method) {
    case 0: return "stored";
    case 8: return "deflated";
    default: return "other";
    }
}

void ListParts(const std::string& file, bool json, int* exitCode) {
    ZipContainerRef container = OpenZip(file, exitCode);
    if (!container) return;
    nlohmann::ordered_json parts = nlohmann::ordered_json::array();
    std::string table;
    for (const PartListing& part : container->ListParts()) {
        std::string name = Narrow(part.name.StdString());
        char crc[16];
        std::snprintf(crc, sizeof crc, "%08" PRIx32, part.crc32);
        const char* method = part.isLink ? "link" : MethodName(part.method);
        if (json) {
            parts.push_back({{"name", name},
                             {"size", part.uncompressedSize},
                             {"compressed", part.compressedSize},
                             {"method", method},
                             {"crc32", crc}});
        } else {
            char line[96];
            std::snprintf(line, sizeof line, "%12" PRIu64 " %12" PRIu64 " %-8s %s  ", part.uncompressedSize,
                          part.compressedSize, method, crc);
            table += line + name + "\n";
        }
    }
    std::string out = json ? DumpJson({{"file", file}, {"parts", parts}}, 2) + "\n" : table;
    std::fwrite(out.data(), 1, out.size(), stdout);
    *exitCode = kExitOk;
}

void CatPart(const std::string& file, const std::string& partName, int* exitCode) {
    ZipContainerRef container = OpenZip(file, exitCode);
    if (!container) return;
    IStream* stream = container->OpenPart(BrmPlatform::BrmStringW(Widen(partName)));
    if (!stream) {
        *exitCode = Fail(file, "no part \"" + partName + "\"");
        return;
    }
    std::vector<char> block(kBlock);
    *exitCode = kExitOk;
    for (;;) {
        ULONG got = 0;
        HRESULT hr = stream->Read(block.data(), ULONG(block.size()), &got);
        if (FAILED(hr)) {
            *exitCode = Fail(file, "part \"" + partName + "\" is damaged (" + HexHresult(hr) + ")");
            break;
        }
        if (got == 0) break;
        if (std::fwrite(block.data(), 1, got, stdout) != got) {
            *exitCode = Fail(file, "cannot write to standard output");
            break;
        }
    }
    stream->Release();
    std::fflush(stdout);
}

}  // namespace

void AddParts(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file, part;
        bool json = false;
    };
    auto o = std::make_shared<Options>();
    CLI::App* parts = app.add_subcommand("parts", "List the parts of a zip file or zip container document");
    parts->footer("Columns: size, compressed size, method, CRC-32, name.\nExample:\n  fileinfo parts drawing.kvd --json");
    parts->add_option("FILE", o->file, "The document")->required();
    parts->add_flag("--json", o->json, "Print JSON");
    parts->callback([o, exitCode] { ListParts(o->file, o->json, exitCode); });

    CLI::App* cat = app.add_subcommand("cat", "Write one part of a zip file or container document to standard output");
    cat->footer("Example:\n  fileinfo cat drawing.kvd META-INF/metadata.xml");
    cat->add_option("FILE", o->file, "The document")->required();
    cat->add_option("PART", o->part, "The part's name")->required();
    cat->callback([o, exitCode] { CatPart(o->file, o->part, exitCode); });
}

void AddExternalLinksFlag(CLI::App& app) {
    for (CLI::App* sub : app.get_subcommands({}))
        sub->add_flag_callback(
            "--no-external-links", [] { ContainerOptions::SetRefuseFileLinksDefault(true); },
            "Never open other files that a document's links name (for untrusted documents)");
}

}  // namespace fitool
