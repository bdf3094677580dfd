// Writing back: every writable row round-trips through Commit on a path and
// on a host stream, the other parts are copied unchanged, the metadata date
// moves, the result passes independent zip checkers and ExifTool, and a
// failing commit leaves the original alone with no temporary behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "fileinfo/PropertyKeys.h"
#include "tests/kvdzip/KvdZipTestSupport.h"
#include "tests/platform/EnvGuard.h"

namespace {

using KvdTest::Get;
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

HRESULT SetText(IFileInfo* info, const PROPERTYKEY& key, const wchar_t* text) {
    PROPVARIANT value;
    value.vt = VT_LPWSTR;
    value.pwszVal = const_cast<wchar_t*>(text);
    return info->SetValue(&key, &value);
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
    }
}

TEST_F(Commit, RevisionTextToNumber) {
    const std::string path = dir / "r.kvd";
    ziptest::WriteFile(path, kvdzip::Build(kvdzip::FullDocument(false)));
    InfoPtr info = OpenPath(path);
    ASSERT_TRUE(info);
    EXPECT_EQ(SetText(info.get(), Keys::kRevision, L"abc"), S_OK);
    EXPECT_EQ(Get(info.get(), Keys::kRevision), L"text:0");
    EXPECT_EQ(SetText(info.get(), Keys::kRevision, L"12"), S_OK);
    EXPECT_EQ(Get(info.get(), Keys::kRevision), L"text:12");
}

TEST_F(Commit, ExifToolReadsTheWrittenMetadata) {
    if (ziptest::RunCommand("command -v exiftool >/dev/null 2>&1") != 0) GTEST_SKIP() << "exiftool is not installed";
    const std::string path = dir / "e.kvd";
    ziptest::WriteFile(path, kvdzip::Build(kvdzip::FullDocument(false)));
    {
        InfoPtr info = OpenPath(path);
        ASSERT_TRUE(info);
        SetText(info.get(), Keys::kTitle, L"Exif title");
        SetText(info.get(), Keys::kAuthor, L"Eve");
        ASSERT_EQ(info->Commit(), S_OK);
    }
    ziptest::WriteFile(dir / "m.xmp", ziptest::Bytes(MetadataText(path, false)));
    std::string out;
    ziptest::RunCommand("exiftool -s -XMP-dc:Title -XMP-dc:Creator -XMP-xmp:MetadataDate " + ziptest::Quote(dir / "m.xmp"), &out);
    EXPECT_NE(out.find("Exif title"), std::string::npos) << out;
    EXPECT_NE(out.find("Eve"), std::string::npos) << out;
    EXPECT_NE(out.find("MetadataDate"), std::string::npos) << out;
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

// A host stream that hands out a destination stream for the commit.
class ByteStream final : public IStream, public IDestinationStreamFactory {
public:
    explicit ByteStream(std::vector<uint8_t> data = {}) : bytes(std::move(data)) {}
    std::vector<uint8_t> bytes;
    ByteStream* destination = nullptr;  // given out by GetDestinationStream
    bool failWrites = false;
    int commits = 0, reverts = 0;

    HRESULT QueryInterface(REFIID riid, void** out) override {
        *out = nullptr;
        if (destination && std::memcmp(&riid, &IID_IDestinationStreamFactory, sizeof(IID)) == 0) {
            *out = static_cast<IDestinationStreamFactory*>(this);
            return S_OK;
        }
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return 2; }   // owned by the test
    ULONG Release() override { return 1; }
    HRESULT GetDestinationStream(IStream** out) override {
        *out = destination;
        return S_OK;
    }
    HRESULT Read(void* pv, ULONG cb, ULONG* read) override {
        const uint64_t n = pos >= bytes.size() ? 0 : std::min<uint64_t>(cb, bytes.size() - pos);
        if (n) std::memcpy(pv, bytes.data() + pos, size_t(n));
        pos += n;
        if (read) *read = ULONG(n);
        return S_OK;
    }
    HRESULT Write(const void* pv, ULONG cb, ULONG* written) override {
        if (failWrites) return STG_E_WRITEFAULT;
        if (pos + cb > bytes.size()) bytes.resize(size_t(pos + cb));
        std::memcpy(bytes.data() + pos, pv, cb);
        pos += cb;
        if (written) *written = cb;
        return S_OK;
    }
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPos) override {
        const int64_t base = origin == STREAM_SEEK_CUR ? int64_t(pos) : origin == STREAM_SEEK_END ? int64_t(bytes.size()) : 0;
        if (base + move.QuadPart < 0) return STG_E_INVALIDFUNCTION;
        pos = uint64_t(base + move.QuadPart);
        if (newPos) newPos->QuadPart = pos;
        return S_OK;
    }
    HRESULT SetSize(ULARGE_INTEGER size) override {
        bytes.resize(size_t(size.QuadPart));
        return S_OK;
    }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    HRESULT Commit(DWORD) override {
        ++commits;
        return S_OK;
    }
    HRESULT Revert() override {
        ++reverts;
        return S_OK;
    }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    HRESULT Stat(STATSTG* stat, DWORD) override {
        *stat = STATSTG{};
        stat->type = STGTY_STREAM;
        stat->cbSize.QuadPart = bytes.size();
        return S_OK;
    }
    HRESULT Clone(IStream**) override { return E_NOTIMPL; }

private:
    uint64_t pos = 0;
};

TEST_F(Commit, OnAHostStream) {
    const std::vector<uint8_t> original = kvdzip::Build(kvdzip::FullDocument(false));
    for (bool fail : {false, true}) {
        ByteStream target;
        target.failWrites = fail;
        ByteStream source(original);
        source.destination = &target;
        InfoPtr info(IFileInfo::GetInst(&source, FileFormatDrawing));
        ASSERT_TRUE(info && IsContainerReader(info.get()));
        SetText(info.get(), Keys::kTitle, L"Streamed");
        const HRESULT hr = info->Commit();
        EXPECT_EQ(source.bytes, original) << "the source is never written";
        if (fail) {
            EXPECT_EQ(hr, E_FAIL);
            EXPECT_EQ(target.reverts, 1);
            EXPECT_EQ(target.commits, 0);
            continue;
        }
        ASSERT_EQ(hr, S_OK);
        EXPECT_EQ(target.commits, 1);
        EXPECT_EQ(source.commits, 1);
        InfoPtr written = OpenBytes(target.bytes);
        ASSERT_TRUE(written);
        EXPECT_EQ(Get(written.get(), Keys::kTitle), L"text:Streamed");
        EXPECT_EQ(Get(written.get(), Keys::kPageNames), L"list:Front|Back");
    }
    // Without a way to a destination the commit fails.
    ByteStream plain(original);
    InfoPtr info(IFileInfo::GetInst(&plain, FileFormatDrawing));
    ASSERT_TRUE(info);
    EXPECT_TRUE(FAILED(info->Commit()));
}

}  // namespace
