// A document written here is valid XMP to an independent reader: ExifTool
// reads the standard properties back. Skipped when exiftool is not
// installed (scripts/deps.sh installs it).
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <unistd.h>

#include "MetadataDocuments.h"
#include "metadata/Schema.h"

namespace {

namespace S = ZipContainerSchema;
using Metadata::Container;

bool HaveExifTool() { return std::system("command -v exiftool >/dev/null 2>&1") == 0; }

std::string RunCommand(const std::string& command) {
    std::string out;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
        pclose(pipe);
    }
    return out;
}

struct ZoneCase {
    const char* tz;
    const char* suffix;  // how the zone reads in ExifTool's date text
};

TEST(ExifTool, ReadsTheStandardPropertiesBack) {
    if (!HaveExifTool()) GTEST_SKIP() << "exiftool is not installed; run scripts/deps.sh";
    const ZoneCase zones[] = {{"UTC0", "Z"}, {"XST-2", "+02:00"}, {"XST+5", "-05:00"}};
    for (const auto& z : zones) {
        MetadataTest::ZoneScope zone(z.tz);
        Container m = Container::CreateEmpty();
        m.SetLocalizedText(S::dc::title, L"x-default", L"Hello \u00e9 & <world>");
        m.SetLocalizedText(S::dc::title, L"de", L"Hallo");
        m.SetPropertyText(S::dc::creator, L"Ann Author, Bob Builder");
        m.SetProperty(S::xmp::CreateDate, SYSTEMTIME{2021, 6, 0, 15, 1, 30, 45, 0});
        m.SetProperty(S::xmp::ModifyDate, SYSTEMTIME{2022, 12, 0, 31, 23, 59, 58, 0});
        m.SetProperty(S::xmp::MetadataDate, SYSTEMTIME{2000, 2, 0, 29, 0, 0, 0, 0});
        // Own namespaces and complex forms must not disturb the reader.
        m.SetProperty(S::kvd::ClipRect, RECT{1, 2, 3, 4});
        m.SetProperty(S::kvdinfo::Effects, Metadata::ComplexTypes::EffectInfo{});

        char path[] = "/tmp/fileinfo-xmp-XXXXXX.xmp";
        const int fd = mkstemps(path, 4);
        ASSERT_GE(fd, 0);
        const std::string text = m.SaveText();
        ASSERT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(fd);
        const std::string out = RunCommand(std::string("exiftool -j -G1 -XMP:all -Warning '") + path + "' 2>&1");
        unlink(path);

        const std::string expected[] = {
            "\"XMP-dc:Title\": \"Hello \xC3\xA9 & <world>\"",
            "\"XMP-dc:Title-de\": \"Hallo\"",
            "\"XMP-dc:Creator\": [\"Ann Author\",\"Bob Builder\"]",
            std::string("\"XMP-xmp:CreateDate\": \"2021:06:15 01:30:45") + z.suffix + "\"",
            std::string("\"XMP-xmp:ModifyDate\": \"2022:12:31 23:59:58") + z.suffix + "\"",
            std::string("\"XMP-xmp:MetadataDate\": \"2000:02:29 00:00:00") + z.suffix + "\"",
        };
        for (const auto& e : expected) EXPECT_NE(out.find(e), std::string::npos) << e << "\n" << out;
        EXPECT_EQ(out.find("Warning"), std::string::npos) << out;
    }
}

}  // namespace
