// `fileinfo text`: the document's text runs, plain or as JSON.
#include <cstdio>
#include <memory>

#include "Commands.h"

namespace fitool {
namespace {

struct ChunkCollector : PropertyVisitor {
    nlohmann::ordered_json chunks = nlohmann::ordered_json::array();
    std::string plain;
    void Visit(const void* record) override {
        const auto* chunk = static_cast<const TextChunk*>(record);
        std::string text = chunk->text && chunk->length > 0 ? Narrow(chunk->text, size_t(chunk->length)) : std::string();
        const char* brk = chunk->chunkBreak == CHUNK_EOP ? "eop" : chunk->chunkBreak == CHUNK_EOC ? "eoc" : "none";
        // A break stands between the previous run and this one.
        if (!chunks.empty()) {
            if (chunk->chunkBreak == CHUNK_EOP) plain += "\n";
            if (chunk->chunkBreak == CHUNK_EOC) plain += "\n\n";
        }
        chunks.push_back({{"text", text}, {"lang", chunk->language}, {"break", brk}});
        plain += text;
    }
};

}  // namespace

void AddText(CLI::App& app, int* exitCode) {
    struct Options {
        std::string file;
        bool json = false;
        TypeOption type;
    };
    auto o = std::make_shared<Options>();
    CLI::App* sub = app.add_subcommand("text", "Print the document's text");
    sub->footer("Example:\n  fileinfo text drawing.kvd\n  fileinfo text drawing.kvd --json");
    sub->add_option("FILE", o->file, "The document")->required();
    sub->add_flag("--json", o->json, "Print the runs with language and breaks as JSON");
    AddTypeOption(sub, o->type);
    sub->callback([o, exitCode] {
        EFileFormat format{};
        Document doc = OpenDocument(o->file, o->type.Get(), &format);
        if (!doc) {
            *exitCode = kExitFailed;
            return;
        }
        ChunkCollector collector;
        HRESULT hr = doc->EnumTextChunks(collector);
        if (o->json) {
            std::string out = DumpJson({{"hr", HexHresult(hr)}, {"chunks", collector.chunks}}, 2) + "\n";
            std::fwrite(out.data(), 1, out.size(), stdout);
            *exitCode = FAILED(hr) ? Fail(o->file, "no text (" + HexHresult(hr) + ")") : kExitOk;
            return;
        }
        if (FAILED(hr) || collector.chunks.empty()) {
            *exitCode = Fail(o->file, FAILED(hr) ? "no text (" + HexHresult(hr) + ")" : "no text");
            return;
        }
        collector.plain += "\n";
        std::fwrite(collector.plain.data(), 1, collector.plain.size(), stdout);
        *exitCode = kExitOk;
    });
}

}  // namespace fitool
