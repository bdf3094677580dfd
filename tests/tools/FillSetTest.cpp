// `fileinfo set` on fill files: what is written reads back, the content
// type is the fill's kind again after a commit, the licence statement is in
// the metadata once however often the file is saved, and the zip stays sound.
#include <gtest/gtest.h>

#include <filesystem>

#include <nlohmann/json.hpp>

#include "ToolRunner.h"
#include "tests/support/fill/FillFiles.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace tooltest {
namespace {

std::string Props(const std::string& path) {
    Result r = RunTool({"props", path, "--json"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    std::string lines;
    const auto props = nlohmann::json::parse(r.out);
    for (const auto& p : props["properties"]) {
        if (!p["value"].is_null()) lines += p["name"].get<std::string>() + "=" + p["value"].dump() + "\n";
    }
    return lines;
}

size_t Count(const std::string& text, const std::string& needle) {
    size_t n = 0;
    for (size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) ++n;
    return n;
}

TEST(ToolFill, SetWritesBackAndKeepsTheFileSound) {
    Scratch s;
    FillDocs::FillFile file = FillDocs::BitmapSample();
    // A hand-written description: the commit writes it afresh.
    file.fillXml = "<!-- by hand -->\n<fill xmlns='urn:brimo:namespaces:zcf:xmlns:fill' version='1.00' "
                   "type='bitmap-tiles'><tilingInfo><size width='8' height='8'/><offset/><angle>0</angle>"
                   "<skew>0</skew><rowColumnOffset type='columns'/><mirror/></tilingInfo>"
                   "<tile media-type='image/png'>content/tile.png</tile></fill>";
    file.props.subFormat = L"hand made";
    const std::string path = s.Write("bricks.fill", FillDocs::Build(file));
    EXPECT_NE(Props(path).find("System.ContentType=[\"hand made\"]"), std::string::npos);

    for (int round = 0; round < 2; ++round) {
        Result r = RunTool({"set", path, "System.Title=Wall " + std::to_string(round), "System.Keywords=brick; old",
                            "System.Comment=Re-pointed", "System.Category=Masonry", "System.ContentType=custom"});
        ASSERT_EQ(r.exitCode, 0) << r.out << r.err;
        const std::string props = Props(path);
        EXPECT_NE(props.find("System.Title=\"Wall " + std::to_string(round) + "\""), std::string::npos) << props;
        EXPECT_NE(props.find("System.Keywords=[\"brick\",\"old\"]"), std::string::npos) << props;
        EXPECT_NE(props.find("System.Comment=\"Re-pointed\""), std::string::npos) << props;
        EXPECT_NE(props.find("System.Category="), std::string::npos) << props;
        EXPECT_NE(props.find("Masonry"), std::string::npos) << props;
        EXPECT_NE(props.find("System.ContentType=[\"bitmap-tiles\"]"), std::string::npos) << props;
        EXPECT_NE(props.find("fill sample writer"), std::string::npos) << props;

        // The temporary file the commit wrote has replaced the document.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(s.Path("")), {}), 1);
        std::string out;
        if (!ziptest::HaveTool("unzip")) continue;
        EXPECT_EQ(ziptest::RunCommand("unzip -t " + ziptest::Quote(path), &out), 0) << out;
        ziptest::RunCommand("unzip -p " + ziptest::Quote(path) + " META-INF/metadata.xml", &out);
        EXPECT_EQ(Count(out, "<cc:License"), 1u) << out;
        ziptest::RunCommand("unzip -p " + ziptest::Quote(path) + " content/fill.xml", &out);
        EXPECT_EQ(out.find("by hand"), std::string::npos) << out;
        EXPECT_NE(out.find("version=\"1.0\""), std::string::npos) << out;
        EXPECT_NE(out.find("content/tile.png"), std::string::npos) << out;
    }
}

}  // namespace
}  // namespace tooltest
