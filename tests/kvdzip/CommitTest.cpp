// Writing back: every writable row round-trips through Commit on a path and
// on a host stream, the other parts are copied unchanged, the metadata date
// moves, the result passes independent zip checkers and ExifTool, and a
// failing commit leaves the original alone with no temporary behind.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "fileinfo/PropertyKeys.h"
#include "tests/kvdzip/KvdZipTestSupport.h"
#include "tests/platform/EnvGuard.h"

namespace {

using KvdTest::Get;
using KvdTest::SetText;
using namespace kvdziptest;
namespace Keys = PropertyKeys;

// Name, CRC and size of every member but the container's own tables
// (metadata, links, part table), sorted by name.
std::string Members(const std::string& path, std::string* testResult = nullptr) {
    std::string out;
    ziptest::RunCommand("python3 -c \"import zipfile,sys\nz=zipfile.ZipFile(sys.argv[1])\nprint('test', z.testzip())\n"
                        "own=('metadata.xml','links.xml','container.xml')\n"
                        "[print(i.filename, i.CRC, i.file_size) for i in sorted(z.infolist(), key=lambda i: i.filename) "
                        "if not i.filename.endswith(own)]\" " +
                            ziptest::Quote(path) + " 2>&1",
                        &out);
    const size_t line = out.find('\n');
    if (testResult) *testResult = out.substr(0, line);
    return line == std::string::npos ? out : out.substr(line + 1);
}

std::string MetadataText(const std::string& path, bool legacy) {
    std::string out;
    ziptest::RunCommand("unzip -p " + ziptest::Quote(path) + (legacy ? " metadata/metadata.xml" : " META-INF/metadata.xml"), &out);
    return out;
}

const PROPERTYKEY kOpenKey = {BrmUtils::Guid(kvdzip::kOpenFmtid).Get(), 7};

class Commit : public ::testing::Test {
protected:
    // English, in a locale every system has.
    void SetUp() override { env.Set("LC_ALL", "C"); }
    EnvGuard env;
    ziptest::TempDir dir;
};

TEST_F(Commit, EveryWritableRowRoundTripsOnAPath) {
    kvdzip::Facts facts;
    facts.keywordsGerman.clear();  // keywords read back over all languages
    for (bool legacy : {false, true}) {
        const std::string path = dir / (legacy ? "legacy.kvt" : "current.kvd");
        ziptest::WriteFile(path, kvdzip::Build(kvdzip::FullDocument(legacy, facts)));
        const std::string before = Members(path);
        {
            InfoPtr info = OpenPath(path);
            ASSERT_TRUE(info && IsContainerReader(info.get()));
            EXPECT_EQ(SetText(info.get(), Keys::kTitle, L"New title"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kSubject, L"New subject"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kKeywords, L"alpha; beta"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kComments, L"New notes"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kCategory, L"Maps"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kAuthor, L"Cleo; Dan"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kRevision, L"abc"), S_OK);
            EXPECT_EQ(Get(info.get(), Keys::kRevision), L"text:0");  // what is no number stores 0
            EXPECT_EQ(SetText(info.get(), Keys::kRevision, L"7"), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kCopyright, L"(c) Cleo"), S_OK);
            PROPVARIANT open;
            open.vt = VT_UI2;
            open.uiVal = 99;
            EXPECT_EQ(info->SetValue(&kOpenKey, &open), S_OK);
            EXPECT_EQ(SetText(info.get(), Keys::kPageCount, L"9"), STG_E_ACCESSDENIED);  // read-only
            ASSERT_EQ(info->Commit(), S_OK) << legacy;
            // The reader stays usable after the replace.
            EXPECT_EQ(Get(info.get(), Keys::kTitle), L"text:New title");
        }
        InfoPtr info = OpenPath(path);
        ASSERT_TRUE(info);
        EXPECT_EQ(Get(info.get(), Keys::kTitle), L"text:New title");
        EXPECT_EQ(Get(info.get(), Keys::kSubject), L"text:New subject");
        EXPECT_EQ(Get(info.get(), Keys::kKeywords), L"list:alpha|beta");
        EXPECT_EQ(Get(info.get(), Keys::kComments), L"text:New notes");
        EXPECT_EQ(Get(info.get(), Keys::kCategory), L"text:Maps");
        EXPECT_EQ(Get(info.get(), Keys::kAuthor), L"list:Cleo|Dan");
        EXPECT_EQ(Get(info.get(), Keys::kRevision), L"text:7");
        EXPECT_EQ(Get(info.get(), Keys::kCopyright), L"text:(c) Cleo");
        EXPECT_EQ(Get(info.get(), kOpenKey), L"vt:18");
        EXPECT_EQ(Get(info.get(), Keys::kPageCount), L"i4:2");  // untouched rows survive
        EXPECT_EQ(Get(info.get(), Keys::kPageNames), L"list:Front|Back");

        std::string testResult;
        EXPECT_EQ(Members(path, &testResult), before) << "parts other than the metadata are copied unchanged";
        EXPECT_EQ(testResult, "test None");
        EXPECT_EQ(ziptest::RunCommand("unzip -tq " + ziptest::Quote(path) + " >/dev/null"), 0);
        const std::string xml = MetadataText(path, legacy);
        EXPECT_NE(xml.find("MetadataDate"), std::string::npos);
        EXPECT_EQ(xml.find("2000-01-01"), std::string::npos) << "the metadata date moves";
        EXPECT_EQ(dir.List().size(), legacy ? 2u : 1u) << "no temporary file is left";
        if (!legacy && ziptest::RunCommand("command -v exiftool >/dev/null") == 0) {
            // An independent XMP reader finds what was written.
            ziptest::WriteFile(dir / "m.xmp", ziptest::Bytes(xml));
            std::string out;
            ziptest::RunCommand("exiftool -s -XMP-dc:Title -XMP-dc:Creator -XMP-xmp:MetadataDate " + ziptest::Quote(dir / "m.xmp"), &out);
            std::filesystem::remove(dir / "m.xmp");
            EXPECT_NE(out.find("New title"), std::string::npos) << out;
            EXPECT_NE(out.find("Cleo, Dan"), std::string::npos) << out;
            EXPECT_NE(out.find("MetadataDate"), std::string::npos) << out;
        }
    }
}

TEST_F(Commit, ReplaceFailureLeavesNoTemporary) {
    const std::string path = dir / "gone.kvd";
    ziptest::WriteFile(path, kvdzip::Build(kvdzip::FullDocument(false)));
    InfoPtr info = OpenPath(path);
    ASSERT_TRUE(info);
    SetText(info.get(), Keys::kTitle, L"lost");
    std::filesystem::remove(path);  // nothing left to replace
    EXPECT_TRUE(FAILED(info->Commit()));
    EXPECT_TRUE(dir.List().empty());
    EXPECT_EQ(Get(info.get(), Keys::kTitle), L"text:lost");
}

TEST_F(Commit, OnAHostStream) {
    const std::vector<uint8_t> original = kvdzip::Build(kvdzip::FullDocument(false));
    for (bool fail : {false, true}) {
        std::vector<uint8_t> sourceBytes = original, targetBytes;
        ziptest::Ref<ziptest::HostStream> target(new ziptest::HostStream(targetBytes, nullptr));
        ziptest::Ref<ziptest::HostStream> source(new ziptest::HostStream(sourceBytes, target.get()));
        target->failWrites = fail;
        InfoPtr info(IFileInfo::GetInst(source.get(), FileFormatDrawing));
        ASSERT_TRUE(info && IsContainerReader(info.get()));
        SetText(info.get(), Keys::kTitle, L"Streamed");
        const HRESULT hr = info->Commit();
        EXPECT_EQ(sourceBytes, original) << "the source is never written";
        EXPECT_EQ(target->reverts, fail ? 1 : 0);
        EXPECT_EQ(target->commits, fail ? 0 : 1);
        EXPECT_EQ(source->commits, fail ? 0 : 1);
        if (fail) {
            EXPECT_EQ(hr, E_FAIL);
            continue;
        }
        ASSERT_EQ(hr, S_OK);
        InfoPtr written = OpenBytes(targetBytes);
        ASSERT_TRUE(written);
        EXPECT_EQ(Get(written.get(), Keys::kTitle), L"text:Streamed");
        EXPECT_EQ(Get(written.get(), Keys::kPageNames), L"list:Front|Back");
    }
    // Without a way to a destination the commit fails.
    InfoPtr info = OpenBytes(original);
    ASSERT_TRUE(info);
    EXPECT_TRUE(FAILED(info->Commit()));
}

}  // namespace
