// The tool on container drawing documents: `set` of every writable row reads
// back the same, `cat` takes out a metadata part that ExifTool reads, and
// `thumbnail --page` gives the page previews.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/kvdzip/KvdZipWriter.h"
#include "tests/support/zip/ZipTestArchive.h"
#include "tests/tools/ToolRunner.h"

using namespace tooltest;

namespace {

TEST(KvdZipTool, SetCatAndPages) {
    Scratch s;
    kvdzip::Facts facts;
    facts.keywordsGerman.clear();
    const std::string file = s.Write("garden.kvd", kvdzip::Build(kvdzip::FullDocument(false, facts)));
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"System.Title", "New title"},       {"System.Subject", "New subject"}, {"System.Keywords", "alpha; beta"},
        {"System.Comment", "New notes"},     {"System.Category", "Maps"},       {"System.Author", "Cleo; Dan"},
        {"System.Document.RevisionNumber", "7"}, {"System.Copyright", "(c) Cleo"},
    };
    std::vector<std::string> args = {"set", file};
    for (const auto& [name, value] : rows) args.push_back(name + "=" + value);
    Result set = RunTool(args);
    ASSERT_EQ(set.exitCode, 0) << set.out << set.err;
    Result props = RunTool({"props", file});
    for (const auto& [name, value] : rows) {
        EXPECT_NE(props.out.find(name + std::string(51 - name.size(), ' ') + value + "\n"), std::string::npos) << name;
    }

    Result cat = RunTool({"cat", file, "META-INF/metadata.xml"});
    ASSERT_EQ(cat.exitCode, 0);
    if (std::system("command -v exiftool >/dev/null 2>&1") == 0) {
        const std::string xmp = s.Write("m.xmp", std::vector<uint8_t>(cat.out.begin(), cat.out.end()));
        std::string exif;
        ziptest::RunCommand("exiftool -s -XMP-dc:Title -XMP-dc:Creator -XMP-xmp:MetadataDate " + ziptest::Quote(xmp), &exif);
        EXPECT_NE(exif.find("New title"), std::string::npos) << exif;
        EXPECT_NE(exif.find("Cleo, Dan"), std::string::npos) << exif;
        EXPECT_NE(exif.find("MetadataDate"), std::string::npos) << exif;
    }

    for (const char* page : {"1", "2"}) {
        EXPECT_EQ(RunTool({"thumbnail", file, "--page", page, "-o", s.Path(std::string("p") + page + ".png")}).exitCode, 0);
    }
    EXPECT_EQ(RunTool({"thumbnail", file, "--page", "3", "-o", s.Path("p3.png")}).exitCode, 1);
}

}  // namespace
