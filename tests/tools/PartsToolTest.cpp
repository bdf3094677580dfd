// `fileinfo parts` and `cat` on zips of any origin, and --no-external-links.
#include <gtest/gtest.h>

#include "tests/support/zip/ZipTestArchive.h"
#include "tests/tools/ToolRunner.h"

using namespace tooltest;

namespace {

TEST(PartsTool, ListsAndCatsAnyZip) {
    Scratch s;
    std::string plain = s.Write("plain.txt", ziptest::Bytes("outside"));
    ziptest::Archive zip;
    zip.entries.push_back(ziptest::MakeEntry("a.txt", ziptest::Text(70000), 8));
    zip.entries.push_back(ziptest::MakeEntry(
        "META-INF/links.xml",
        ziptest::Bytes("<linkInfo><link part=\"ext\" ref=\"file://" + plain + "\"/></linkInfo>")));
    auto big = ziptest::MakeEntry("z64.bin", ziptest::Bytes("sixty-four"));
    big.zip64 = true;
    zip.entries.push_back(big);
    std::string file = s.Write("any.zip", ziptest::Build(zip));

    Result list = RunTool({"parts", file, "--json"});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_NE(list.out.find("\"name\": \"a.txt\",\n      \"size\": 70000"), std::string::npos) << list.out;
    EXPECT_NE(list.out.find("\"method\": \"deflated\""), std::string::npos);
    EXPECT_NE(list.out.find("\"method\": \"link\""), std::string::npos);

    auto text = ziptest::Text(70000);
    EXPECT_EQ(RunTool({"cat", file, "a.txt"}).out, std::string(text.begin(), text.end()));
    EXPECT_EQ(RunTool({"cat", file, "z64.bin"}).out, "sixty-four");
    EXPECT_EQ(RunTool({"cat", file, "ext"}).out, "outside");
    for (auto args : {std::vector<std::string>{"cat", file, "ext", "--no-external-links"},
                      std::vector<std::string>{"cat", file, "absent"}}) {
        Result r = RunTool(args);
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_EQ(r.out, "");
    }
    EXPECT_EQ(RunTool({"props", "--no-external-links", file}).exitCode, 1);  // accepted everywhere
}

}  // namespace
