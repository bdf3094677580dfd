// The desktop thumbnailer: arguments as the desktop passes them, file URIs,
// and a PNG no larger than asked.
#include <gtest/gtest.h>

#include "ToolRunner.h"
#include "imaging/codecs/ImageCodecs.h"

namespace tooltest {
namespace {

TEST(Thumbnailer, WritesAPngWithinTheSizeOrFailsCleanly) {
    Scratch s;
    std::string doc = s.Write("plan with space.kvd", DrawingDocument());
    std::string uri = "file://" + s.Path("plan%20with%20space.kvd");
    struct Case {
        std::vector<std::string> args;
        int exitCode;
    };
    const Case cases[] = {
        {{"-s", "32", doc, s.Path("a.png")}, 0},
        {{"-s", "32", uri, s.Path("b.png")}, 0},
        {{"-s", "0", doc, s.Path("c.png")}, 2},
        {{"-s", "32", doc}, 2},
        {{"--size", "32", doc, s.Path("c.png")}, 2},
        {{"-s", "32", s.Path("missing.kvd"), s.Path("c.png")}, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args.size() > 2 ? c.args[2] : c.args[0]);
        Result r = RunProgram(FILEINFO_THUMBNAILER, c.args);
        EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    }
    for (const char* name : {"a.png", "b.png"}) {
        auto png = ReadFile(s.Path(name));
        auto image = BrmUtils::LoadImage(png.data(), png.size());
        ASSERT_TRUE(image) << name;
        EXPECT_LE(std::max(image->Width(), image->Height()), 32);
    }
    EXPECT_FALSE(std::filesystem::exists(s.Path("c.png")));
}

}  // namespace
}  // namespace tooltest
