// The tool's answers on generated documents against the library's own. A
// format whose reader is not in the library yet must fail cleanly; once it
// is, the same tests check the output field by field.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Tool.h"
#include "ToolRunner.h"
#include "fileinfo/IFileInfo.h"
#include "imaging/codecs/ImageCodecs.h"

namespace tooltest {
namespace {

using fitool::Document;

struct Sample {
    const char* name;
    std::vector<uint8_t> bytes;
    EFileFormat format;
};

std::vector<Sample> Samples() {
    return {
        {"drawing.kvd", DrawingDocument(), FileFormatDrawing},
        {"plain.kvd", DrawingDocument(L"\u00e9t\u00e9 \u2603", false), FileFormatDrawing},
        {"picture.jmv", Metafile(), FileFormatMetafile},
    };
}

Document OpenInProcess(const std::string& path, EFileFormat format) {
    return Document(IFileInfo::GetInst(fitool::Widen(path).c_str(), format));
}

TEST(ToolDocuments, ThumbnailIconAndDibMatchTheLibrary) {
    Scratch s;
    for (const auto& sample : Samples()) {
        SCOPED_TRACE(sample.name);
        std::string path = s.Write(sample.name, sample.bytes);
        Document doc = OpenInProcess(path, sample.format);

        HBITMAP bmp = doc ? doc->GetBitmap(SIZE{64, 48}, 0, true, nullptr) : nullptr;
        Result r = RunTool({"thumbnail", path, "-o", s.Path("t.png"), "--size", "64x48", "--enlarge"});
        if (!bmp) {
            EXPECT_EQ(r.exitCode, 1);
            EXPECT_FALSE(std::filesystem::exists(s.Path("t.png")));
        } else {
            ASSERT_EQ(r.exitCode, 0) << r.err;
            auto png = ReadFile(s.Path("t.png"));
            auto image = BrmUtils::LoadImage(png.data(), png.size());
            ASSERT_TRUE(image);
            EXPECT_EQ(image->Width(), bmp->width);
            EXPECT_EQ(image->Height(), bmp->height);
            DeleteObject(bmp);
            std::filesystem::remove(s.Path("t.png"));
        }

        HICON icon = doc ? doc->GetIcon(nullptr, 32) : nullptr;
        r = RunTool({"icon", path, "-o", s.Path("i.png"), "--size", "32"});
        EXPECT_EQ(r.exitCode, icon ? 0 : 1) << r.err;
        if (icon) {
            auto png = ReadFile(s.Path("i.png"));
            auto image = BrmUtils::LoadImage(png.data(), png.size());
            ASSERT_TRUE(image);
            EXPECT_EQ(image->Width(), 32);
            EXPECT_TRUE(image->HasAlpha());
            DestroyIcon(icon);
        }

        DibBlock dib = doc ? doc->ReadPreviewDib() : DibBlock{};
        r = RunTool({"dib", path, "-o", s.Path("d.bmp")});
        EXPECT_EQ(r.exitCode, dib.data ? 0 : 1) << r.err;
        if (dib.data) {
            auto file = ReadFile(s.Path("d.bmp"));
            ASSERT_EQ(file.size(), dib.size + 14);
            EXPECT_EQ(file[0], 'B');
            EXPECT_EQ(file[1], 'M');
            EXPECT_EQ(0, std::memcmp(file.data() + 14, dib.data, dib.size));
            std::free(dib.data);
        }
    }
}

struct ChunkCounter : PropertyVisitor {
    std::vector<std::string> texts;
    void Visit(const void* record) override {
        const auto* c = static_cast<const TextChunk*>(record);
        texts.push_back(fitool::Narrow(c->text, size_t(c->length)));
    }
};

TEST(ToolDocuments, TextMatchesTheLibrary) {
    Scratch s;
    for (const auto& sample : Samples()) {
        SCOPED_TRACE(sample.name);
        std::string path = s.Write(sample.name, sample.bytes);
        Document doc = OpenInProcess(path, sample.format);
        ChunkCounter chunks;
        HRESULT hr = doc ? doc->EnumTextChunks(chunks) : E_FAIL;
        Result r = RunTool({"text", path, "--json"});
        if (!doc || FAILED(hr)) {
            EXPECT_EQ(r.exitCode, 1);
            continue;
        }
        ASSERT_EQ(r.exitCode, 0) << r.err;
        auto j = nlohmann::json::parse(r.out);
        EXPECT_EQ(j["hr"], fitool::HexHresult(hr));
        ASSERT_EQ(j["chunks"].size(), chunks.texts.size());
        for (size_t i = 0; i < chunks.texts.size(); ++i) EXPECT_EQ(j["chunks"][i]["text"], chunks.texts[i]);
    }
}

// A value the reader refuses leaves the file as it was, byte for byte.
TEST(ToolDocuments, SetNeverLeavesAHalfWrittenFile) {
    Scratch s;
    std::vector<uint8_t> original = DrawingDocument();
    std::string path = s.Write("d.kvd", original);
    Result r = RunTool({"set", path, "System.Title=New", "System.Document.PageCount=many"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(ReadFile(path), original);
    if (r.out.empty()) return;  // no reader for the format yet: nothing was tried
    EXPECT_NE(r.out.find("System.Document.PageCount 0x80070057"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("commit skipped"), std::string::npos) << r.out;
}

// The scan writes its JSON straight to a buffer from a stream opened once;
// every line must stay byte for byte the tree form of a reader opened on the
// path, for the generated documents and for every sample.
TEST(ToolDocuments, ScanWritesTheTreeFormOfEachDocumentOnTwoJobs) {
    Scratch s;
    const int count = 12;
    for (int i = 0; i < count; ++i) s.Write("tree/" + std::to_string(i % 3) + "/doc" + std::to_string(i) + ".kvd", DrawingDocument());
    s.Write("tree/readme.txt", {'x'});
    Result r = RunTool({"scan", s.Path("tree"), FILEINFO_SAMPLES, "--jobs", "2", "--jsonl"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    size_t lines = 0;
    std::istringstream in(r.out);
    for (std::string line; std::getline(in, line); ++lines) {
        const std::string file = nlohmann::json::parse(line)["file"];
        bool readable = false;
        const std::optional<EFileFormat> format = fitool::DetectFormat(file, &readable, nullptr);
        ASSERT_TRUE(format) << file;
        Document doc = OpenInProcess(file, *format);
        ASSERT_TRUE(doc) << file;
        EXPECT_EQ(line, fitool::DumpJson(fitool::PropsJson(doc.get(), file, *format))) << file;
    }
    EXPECT_GT(lines, size_t(count));
    EXPECT_NE(r.err.find(std::to_string(lines) + " documents, 0 failed"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace tooltest
