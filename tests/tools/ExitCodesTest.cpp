// The contract other programs rely on: exit codes and one-line errors, for
// bad arguments, unreadable, unsupported and hostile files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "ToolRunner.h"
#include "tests/support/riff/DrawingChunks.h"

namespace tooltest {
namespace {

void ExpectOneErrorLine(const Result& r, const std::string& prefix) {
    auto lines = r.ErrLines();
    ASSERT_EQ(lines.size(), 1u) << r.err;
    EXPECT_EQ(lines[0].rfind(prefix, 0), 0u) << lines[0];
}

TEST(ToolExitCodes, UsageErrorsAnswerTwoWithOneLine) {
    Scratch s;
    std::string doc = s.Write("d.kvd", DrawingDocument());
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"frobnicate", doc},
        {"props"},
        {"props", doc, "--type", "bogus"},
        {"props", doc, "--nope"},
        {"thumbnail", doc},
        {"thumbnail", doc, "-o", s.Path("t.png"), "--size", "0"},
        {"thumbnail", doc, "-o", s.Path("t.png"), "--size", "12x"},
        {"thumbnail", doc, "-o", s.Path("t.png"), "--size", "99999"},
        {"thumbnail", doc, "-o", s.Path("t.png"), "--page", "0"},
        {"icon", doc, "-o", s.Path("i.png")},
        {"icon", doc, "-o", s.Path("i.png"), "--size", "-3"},
        {"set", doc},
        {"set", doc, "NoEqualsSign"},
        {"set", doc, "Unknown.Name=1"},
        {"set", doc, "{F29F85E0-4FF9-1068-AB91-08002B27B3D9}/x=1"},
        {"cat", doc},
        {"scan"},
        {"scan", doc, "--jobs", "0"},
    };
    for (const auto& args : cases) {
        std::string joined;
        for (const auto& a : args) joined += a + " ";
        SCOPED_TRACE(joined);
        Result r = RunTool(args);
        EXPECT_EQ(r.exitCode, 2);
        ExpectOneErrorLine(r, "fileinfo: ");
        EXPECT_TRUE(r.out.empty()) << r.out;
    }
    EXPECT_FALSE(std::filesystem::exists(s.Path("t.png")));
}

TEST(ToolExitCodes, FilesThatGiveNothingAnswerOneWithFileAndReason) {
    Scratch s;
    std::string text = s.Write("notes.txt", {'h', 'i', '\n'});
    std::string empty = s.Write("empty.kvd", {});
    std::string missing = s.Path("missing.kvd");
    std::string folder = s.Path("");
    // A FIFO with no writer would block a reader that opened it: answered at once.
    std::string fifo = s.Path("pipe.kvd");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::vector<std::vector<std::string>> cases = {
        {"props", missing},
        {"props", fifo},
        {"thumbnail", fifo, "-o", s.Path("x.png")},
        {"text", "/dev/zero"},
        {"props", folder},
        {"props", text},
        {"props", empty},
        {"text", text, "--json"},
        {"thumbnail", missing, "-o", s.Path("x.png")},
        {"icon", text, "-o", s.Path("x.png"), "--size", "32"},
        {"dib", missing, "-o", s.Path("x.bmp")},
        {"set", missing, "System.Title=x"},
        {"parts", text},
        {"cat", text, "mimetype"},
    };
    for (const auto& args : cases) {
        SCOPED_TRACE(args[0] + " " + args[1]);
        Result r = RunTool(args);
        EXPECT_EQ(r.exitCode, 1);
        ExpectOneErrorLine(r, "fileinfo: " + args[1] + ": ");
    }
    EXPECT_FALSE(std::filesystem::exists(s.Path("x.png")));
    EXPECT_FALSE(std::filesystem::exists(s.Path("x.bmp")));
}

TEST(ToolExitCodes, ScanOfAMissingPathFailsButScansTheRest) {
    Scratch s;
    s.Write("a.txt", {'x'});
    Result r = RunTool({"scan", s.Path("nothing-here"), s.Path("a.txt")});
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.ErrLines().size(), 2u) << r.err;
    EXPECT_EQ(r.ErrLines()[0], "fileinfo: " + s.Path("nothing-here") + ": no such file or folder");
    EXPECT_NE(r.ErrLines()[1].find("scanned 1 files: 0 documents, 0 failed, 1 skipped"), std::string::npos);
}

// Broken and hostile documents: every subcommand answers 0 or 1, never dies,
// and a failure is one line naming the file.
TEST(ToolExitCodes, HostileFilesNeverCrashTheTool) {
    using namespace TestDocs;
    Scratch s;
    std::vector<uint8_t> good = DrawingDocument();
    std::vector<uint8_t> truncated(good.begin(), good.begin() + long(good.size() / 2));
    std::vector<uint8_t> lyingSize = Riff(Tag("TCNB"), {SumiChunk(Summary{})}, 0x7FFFFFF0u);
    std::vector<uint8_t> hugeChunk = {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'T', 'C', 'N', 'B', 'D', 'I', 'S', 'P', 0xF0, 0xFF, 0xFF, 0xFF};
    std::vector<uint8_t> qpxMagic = {'Q', 'P', 'X', '9', 'F', 'I', 'L', 'E'};
    std::vector<uint8_t> jmvMagic = {'J', 'M', 'V', '3', 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F};
    std::vector<uint8_t> zipHead = {'P', 'K', 3, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
    std::vector<uint8_t> noise(3000);
    for (size_t i = 0; i < noise.size(); ++i) noise[i] = uint8_t(i * 2654435761u >> 13);
    const std::vector<std::pair<std::string, std::vector<uint8_t>>> files = {
        {"truncated.kvd", truncated}, {"lying.kvd", lyingSize}, {"huge.kvd", hugeChunk},
        {"magic.qpx", qpxMagic},      {"magic.jmv", jmvMagic},  {"head.fill", zipHead},
        {"noise.kvd", noise},
    };
    for (const auto& [name, bytes] : files) {
        std::string path = s.Write(name, bytes);
        const std::vector<std::vector<std::string>> runs = {
            {"props", path, "--json"},
            {"thumbnail", path, "-o", s.Path("t.png")},
            {"icon", path, "-o", s.Path("i.png"), "--size", "48"},
            {"dib", path, "-o", s.Path("d.bmp")},
            {"text", path},
        };
        for (const auto& args : runs) {
            SCOPED_TRACE(name + " " + args[0]);
            Result r = RunTool(args);
            ASSERT_TRUE(r.exitCode == 0 || r.exitCode == 1) << r.exitCode << r.err;
            if (r.exitCode == 1) ExpectOneErrorLine(r, "fileinfo: ");
        }
    }
}

}  // namespace
}  // namespace tooltest
