// Archives made by an independent tool read correctly here, and archives
// made here satisfy the independent checkers. The tools run in a temporary
// folder; a test is skipped when its tool isn't installed.
#include <gtest/gtest.h>

#include <map>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;
using BrmPlatform::BrmStringW;

namespace {

using Members = std::map<std::wstring, std::vector<uint8_t>>;

BrmStringW Wide(const std::string& s) { return BrmStringW(std::wstring(s.begin(), s.end())); }

// Every member of the archive at `path`, read here, in order.
Members ReadHere(const std::string& path, std::vector<std::wstring>* order = nullptr) {
    Members out;
    ZipFileSetRef set = ZipFileSet::OpenFromPath(Wide(path));
    for (const ZipMember* m : set ? set->ListMembers() : std::vector<const ZipMember*>{}) {
        Ref<IStream> s(set->OpenMember(m, false, true));
        int32_t hr = 0;
        out[m->name.StdString()] = s ? ReadAll(s.get(), 65536, &hr) : Bytes("<can't open>");
        if (hr != 0) out[m->name.StdString()] = Bytes("<read failed>");
        if (order) order->push_back(m->name.StdString());
    }
    return out;
}

#define REQUIRE_TOOL(name) \
    if (!HaveTool(name)) GTEST_SKIP() << name << " is not installed; interop check skipped"

TEST(ZipInterop, ArchivesOfInfoZip) {
    REQUIRE_TOOL("zip");
    TempDir dir;
    WriteFile(dir / "a.txt", Text(20000, 1));
    WriteFile(dir / "b.bin", Noise(150000, 2));
    WriteFile(dir / "empty.txt", {});
    const Members files = {{L"a.txt", Text(20000, 1)}, {L"b.bin", Noise(150000, 2)}, {L"empty.txt", {}}};
    const Members streamed = {{L"-", Noise(150000, 2)}};
    const struct {
        const char* command;
        const Members& expected;
    } cases[] = {
        {"zip -q out.zip a.txt b.bin empty.txt", files},
        {"zip -q -0 out.zip a.txt b.bin empty.txt", files},
        {"zip -q -fz out.zip a.txt b.bin empty.txt", files},   // zip64 records on small members
        {"zip -q - a.txt b.bin empty.txt | cat > out.zip", files},  // data descriptors
        {"cat b.bin | zip -q - - | cat > out.zip", streamed},   // zip64 and a data descriptor
    };
    for (const auto& c : cases) {
        std::string output;
        ASSERT_EQ(RunCommand("cd " + Quote(dir.Path()) + " && rm -f out.zip && " + c.command, &output), 0) << output;
        EXPECT_EQ(ReadHere(dir / "out.zip"), c.expected) << c.command;
    }
}

bool WriteMimeType(void*, ZipFileSet& set) {
    Ref<IStream> s(set.CreateMember(L"mimetype", 0));
    ULONG n = 0;
    return s && s->Write("application/x-test+zip", 22, &n) == S_OK;
}

// Members of every level, one written backwards, empty ones and a folder;
// a member created and removed on the way. unzip and python's zipfile test
// every CRC; the comment's length counts more bytes than stand behind it,
// which unzip reports and nothing else.
TEST(ZipInterop, ArchivesWrittenHerePassTheTools) {
    REQUIRE_TOOL("unzip");
    REQUIRE_TOOL("python3");
    TempDir dir;
    const std::string path = dir / "written.zip";
    const struct {
        const wchar_t* name;
        std::vector<uint8_t> content;
        int level;
    } members[] = {
        {L"content/text.xml", Text(300000, 4), 3}, {L"content/fast.xml", Text(50000, 5), 1},
        {L"content/level2.xml", Text(50000, 6), 2}, {L"content/best.xml", Text(50000, 7), 4},
        {L"content/noise.bin", Noise(1 << 20, 8), 0}, {L"content/backwards.bin", Noise(100000, 9), 0},
        {L"content/empty", {}, 3}, {L"folder/", {}, 0},
    };
    {
        ZipFileSetRef set = ZipFileSet::CreateOnPath(Wide(path));
        ASSERT_TRUE(set);
        set->SetNewTargetCallback(WriteMimeType, nullptr);
        set->SetComment(L"a comment longer than eight bytes");
        ASSERT_TRUE(WriteMimeType(nullptr, *set));
        for (const auto& m : members) {
            const bool backwards = std::wstring(m.name).find(L"backwards") != std::wstring::npos;
            Ref<IStream> s(set->CreateMember(m.name, m.level, backwards));
            ASSERT_TRUE(s);
            for (size_t end = m.content.size(), step = backwards ? 4096 : end; end > 0;) {
                const size_t at = end > step ? end - step : 0;
                ULARGE_INTEGER pos{};
                ULONG n = 0;
                ASSERT_EQ(s->Seek(MakeLargeInteger(int64_t(at)), STREAM_SEEK_SET, &pos), S_OK);
                ASSERT_EQ(s->Write(m.content.data() + at, ULONG(end - at), &n), S_OK);
                end = at;
            }
        }
        Ref<IStream>(set->CreateMember(L"content/removed", 3)).reset();
        ASSERT_TRUE(set->RemoveMembers(L"content/removed"));
        ASSERT_TRUE(set->CommitSet());
    }
    std::string output;
    EXPECT_EQ(RunCommand("unzip -t " + Quote(path), &output), 1) << output;
    EXPECT_NE(output.find("No errors detected"), std::string::npos) << output;
    EXPECT_NE(output.find("comment truncated"), std::string::npos) << output;
    EXPECT_EQ(RunCommand("python3 -c 'import sys, zipfile; sys.exit(zipfile.ZipFile(sys.argv[1]).testzip() is not None)' " +
                             Quote(path), &output), 0) << output;
    std::vector<std::wstring> order;
    Members back = ReadHere(path, &order);
    ASSERT_FALSE(order.empty());
    EXPECT_EQ(order.front(), L"mimetype");
    for (const auto& m : members) EXPECT_EQ(back[m.name], m.content) << back.size();
}

}  // namespace
