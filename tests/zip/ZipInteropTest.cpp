// Archives made by independent tools read correctly here, and archives made
// here satisfy those tools. The tools run in a temporary folder; a test is
// skipped when its tool isn't installed.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipFileSet.h"

using namespace ziptest;
using BrmPlatform::BrmStringW;

namespace {

using Members = std::map<std::wstring, std::vector<uint8_t>>;

BrmStringW Wide(const std::string& s) { return BrmStringW(std::wstring(s.begin(), s.end())); }

// Every member of the archive at `path`, read here.
Members ReadHere(const std::string& path, std::vector<std::wstring>* order = nullptr) {
    Members out;
    ZipFileSetRef set = ZipFileSet::OpenFromPath(Wide(path));
    if (!set)
        return out;
    for (const ZipMember* m : set->ListMembers()) {
        Ref<IStream> s(set->OpenMember(m, false, true));
        int32_t hr = 0;
        out[m->name.StdString()] = s ? ReadAll(s.get(), 65536, &hr) : Bytes("<can't open>");
        if (hr != 0)
            out[m->name.StdString()] = Bytes("<read failed>");
        if (order)
            order->push_back(m->name.StdString());
    }
    return out;
}

class ZipInterop : public ::testing::Test {
public:
    void SetUp() override {
        WriteFile(dir / "a.txt", Text(20000, 1));
        WriteFile(dir / "b.bin", Noise(150000, 2));
        WriteFile(dir / "empty.txt", {});
        RunCommand("mkdir " + Quote(dir / "sub"));
        WriteFile(dir / "sub/c.txt", Text(70000, 3));
    }
    // Runs a command in the folder; fails the test if it fails.
    void Shell(const std::string& command) {
        std::string output;
        int status = RunCommand("cd " + Quote(dir.Path()) + " && " + command, &output);
        ASSERT_EQ(status, 0) << command << "\n" << output;
    }
    Members Files(std::initializer_list<const char*> names) {
        Members m;
        for (const char* n : names)
            m[std::wstring(n, n + strlen(n))] = ReadFile(dir / n);
        return m;
    }
    TempDir dir;
};

#define REQUIRE_TOOL(name)                                        \
    if (!HaveTool(name))                                          \
    GTEST_SKIP() << name << " is not installed; interop check skipped"

TEST_F(ZipInterop, ArchivesOfInfoZip) {
    REQUIRE_TOOL("zip");
    struct Case {
        const char* what;
        const char* command;
        Members (*expected)(ZipInterop&);
    };
    auto plain = [](ZipInterop& t) { return t.Files({"a.txt", "b.bin", "empty.txt", "sub/c.txt"}); };
    auto noFolder = [](ZipInterop& t) { return t.Files({"a.txt", "b.bin"}); };
    Case cases[] = {
        {"deflated", "zip -q -r out.zip a.txt b.bin empty.txt sub -x sub/", plain},
        {"stored", "zip -q -0 -r out.zip a.txt b.bin empty.txt sub -x sub/", plain},
        {"zip64 forced on small members", "zip -q -fz -r out.zip a.txt b.bin empty.txt sub -x sub/", plain},
        {"data descriptors", "zip -q - a.txt b.bin | cat > out.zip", noFolder},
        {"best compression", "zip -q -9 out.zip a.txt b.bin", noFolder},
    };
    for (const Case& c : cases) {
        Shell(std::string("rm -f out.zip && ") + c.command);
        EXPECT_EQ(ReadHere(dir / "out.zip"), c.expected(*this)) << c.what;
    }
    // A member streamed from stdin: zip64 and a data descriptor, name "-".
    Shell("rm -f out.zip && cat b.bin | zip -q - - | cat > out.zip");
    EXPECT_EQ(ReadHere(dir / "out.zip"), (Members{{L"-", ReadFile(dir / "b.bin")}}));
    // A folder entry is a member of its own.
    Shell("rm -f out.zip && zip -q -r out.zip sub");
    EXPECT_EQ(ReadHere(dir / "out.zip"), (Members{{L"sub/", {}}, {L"sub/c.txt", ReadFile(dir / "sub/c.txt")}}));
}

// --- Archives written here -------------------------------------------------

bool WriteMimeType(void*, ZipFileSet& set) {
    Ref<IStream> s(set.CreateMember(L"mimetype", 0));
    ULONG n = 0;
    return s && s->Write("application/x-test+zip", 22, &n) == S_OK;
}

struct Written {
    std::wstring name;
    std::vector<uint8_t> content;
    int level;
    bool backwards;
};

std::vector<Written> SampleMembers() {
    return {
        {L"content/text.xml", Text(300000, 4), 3, false},
        {L"content/fast.xml", Text(50000, 5), 1, false},
        {L"content/level2.xml", Text(50000, 6), 2, false},
        {L"content/best.xml", Text(50000, 7), 4, false},
        {L"content/noise.bin", Noise(1 << 20, 8), 0, false},
        {L"content/backwards.bin", Noise(100000, 9), 0, true},
        {L"content/empty", {}, 3, false},
        {L"content/empty-stored", {}, 0, false},
        {L"folder/", {}, 0, false},
    };
}

void WriteMember(ZipFileSet& set, const Written& w) {
    Ref<IStream> s(set.CreateMember(w.name.c_str(), w.level, w.backwards));
    ASSERT_TRUE(s);
    const size_t step = 4096;
    if (w.backwards) {
        for (size_t end = w.content.size(); end > 0;) {
            size_t at = end > step ? end - step : 0;
            ULARGE_INTEGER pos{};
            ASSERT_EQ(s->Seek(MakeLargeInteger(int64_t(at)), STREAM_SEEK_SET, &pos), S_OK);
            ULONG n = 0;
            ASSERT_EQ(s->Write(w.content.data() + at, ULONG(end - at), &n), S_OK);
            end = at;
        }
    } else if (!w.content.empty()) {
        ULONG n = 0;
        ASSERT_EQ(s->Write(w.content.data(), ULONG(w.content.size()), &n), S_OK);
    }
}

// What python's zipfile sees: per member its name, method, size and CRC,
// one line each, in order; then the result of testzip().
std::string PythonView(const std::string& dirPath, const std::string& archive) {
    WriteFile(dirPath + "/view.py", Bytes(R"(
import sys, zipfile, zlib
z = zipfile.ZipFile(sys.argv[1])
for i in z.infolist():
    data = z.read(i)
    print('%s|%d|%d|%08x' % (i.filename, i.compress_type, len(data), zlib.crc32(data)))
print('testzip:%s' % z.testzip())
)"));
    std::string out;
    RunCommand("cd " + Quote(dirPath) + " && python3 view.py " + Quote(archive), &out);
    return out;
}

std::string ExpectedView(const std::vector<Written>& members) {
    std::ostringstream out;
    out << "mimetype|0|22|" << std::hex;
    out.width(8);
    out.fill('0');
    out << Crc32(std::string_view("application/x-test+zip")) << "\n";
    for (const Written& w : members) {
        out << std::string(w.name.begin(), w.name.end()) << "|" << std::dec << (w.level ? 8 : 0) << "|" << w.content.size() << "|" << std::hex;
        out.width(8);
        out << Crc32(w.content) << "\n";
    }
    out << "testzip:None\n";
    return out.str();
}

void WriteArchive(const std::string& path, const std::vector<Written>& members) {
    ZipFileSetRef set = ZipFileSet::CreateOnPath(Wide(path));
    ASSERT_TRUE(set);
    set->SetNewTargetCallback(WriteMimeType, nullptr);
    ASSERT_TRUE(WriteMimeType(nullptr, *set));
    for (const Written& w : members)
        WriteMember(*set, w);
    // A member replaced and one removed on the way.
    Ref<IStream> gone(set->CreateMember(L"content/removed", 3));
    gone.reset();
    ASSERT_TRUE(set->RemoveMembers(L"content/removed"));
    ASSERT_TRUE(set->CommitSet());
}

TEST_F(ZipInterop, ArchivesWrittenHerePassTheTools) {
    REQUIRE_TOOL("unzip");
    REQUIRE_TOOL("python3");
    std::string path = dir / "written.zip";
    std::vector<Written> members = SampleMembers();
    WriteArchive(path, members);
    std::string output;
    EXPECT_EQ(RunCommand("unzip -t -q " + Quote(path), &output), 0) << output;
    EXPECT_EQ(PythonView(dir.Path(), "written.zip"), ExpectedView(members));

    std::vector<std::wstring> order;
    Members back = ReadHere(path, &order);
    ASSERT_FALSE(order.empty());
    EXPECT_EQ(order.front(), L"mimetype");
    for (const Written& w : members)
        EXPECT_EQ(back[w.name], w.content) << std::string(w.name.begin(), w.name.end());
}

TEST_F(ZipInterop, CommentedArchiveHasOnlyACommentWarning) {
    REQUIRE_TOOL("unzip");
    std::string path = dir / "commented.zip";
    {
        ZipFileSetRef set = ZipFileSet::CreateOnPath(Wide(path));
        set->SetComment(L"a comment longer than eight bytes");
        Ref<IStream> s(set->CreateMember(L"a.txt", 3));
        ULONG n = 0;
        s->Write("text", 4, &n);
    }
    // The comment's length counts more bytes than stand behind it.
    std::string output;
    EXPECT_EQ(RunCommand("unzip -t " + Quote(path), &output), 1) << output;
    EXPECT_NE(output.find("No errors detected"), std::string::npos) << output;
    EXPECT_NE(output.find("comment truncated"), std::string::npos) << output;
}

}  // namespace
