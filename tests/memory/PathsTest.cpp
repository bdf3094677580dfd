// Temporary names and files; file URLs, escaping, URL parts and environment
// expansion.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/Files.h"
#include "utils/FileUrl.h"
#include "utils/TempFiles.h"

using namespace BrmUtils;
using BrmPlatform::BrmStringW;

namespace {

std::wstring S(const BrmStringW& s) { return std::wstring(s.GetString(), std::size_t(s.GetLength())); }

}  // namespace

TEST(TempFiles, ManyThreadsGetDistinctFiles) {
    std::vector<std::vector<std::wstring>> names(4);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 25; ++i) {
                BrmStringW p;
                HANDLE h = CreateTempFile(BrmStringW(), BrmStringW(), BrmStringW(), false, &p);
                if (h == INVALID_HANDLE_VALUE) continue;
                CloseHandle(h);
                names[t].push_back(S(p));
            }
        });
    }
    for (auto& th : threads) th.join();
    std::set<std::wstring> all;
    for (auto& v : names)
        for (auto& n : v) {
            all.insert(n);
            DeleteFileW(n.c_str());
        }
    EXPECT_EQ(all.size(), 100u);
}

TEST(FileUrl, PathsToUrlsAndBack) {
    struct Case {
        const wchar_t* path;
        const wchar_t* url;
    };
    const Case cases[] = {
        {L"/tmp/a.txt", L"file:///tmp/a.txt"},
        {L"/tmp/a b.txt", L"file:///tmp/a%20b.txt"},
        {L"/tmp/caf\u00e9/\u65e5\u672c.kvd", L"file:///tmp/caf%C3%A9/%E6%97%A5%E6%9C%AC.kvd"},
        {L"/tmp/100%/#1?.x", L"file:///tmp/100%25/%231%3F.x"},
        {L"/tmp/back\\slash", L"file:///tmp/back%5Cslash"},
        {L"/a/./b/../c", L"file:///a/c"},
        {L"/tmp/dir/", L"file:///tmp/dir/"},
        {L"//x/../../y", L"file:///y"},
        {L"/tmp/\U0001F600", L"file:///tmp/%F0%9F%98%80"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.path)));
        BrmStringW url = UrlFromPath(BrmStringW(c.path));
        EXPECT_EQ(S(url), c.url);
        std::wstring back = S(PathFromUrl(url));
        if (std::wstring(c.path).find(L"..") == std::wstring::npos) {
            EXPECT_EQ(back, c.path);
        }
    }
    // Relative paths are taken against the current directory.
    char cwd[4096];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    std::wstring rel = S(PathFromUrl(UrlFromPath(BrmStringW(L"x.txt"))));
    EXPECT_EQ(rel, PathFromNative(cwd) + L"/x.txt");
}

TEST(FileUrl, UrlsToPaths) {
    struct Case {
        const wchar_t* url;
        const wchar_t* path;  // "" for failure
    };
    const Case cases[] = {
        {L"file:///x/y", L"/x/y"},
        {L"FILE:///x/y", L"/x/y"},
        {L"file://localhost/x/y", L"/x/y"},
        {L"file://LocalHost/x%20y", L"/x y"},
        {L"file:/x/y", L"/x/y"},
        {L"file:///x/y?query#frag", L"/x/y"},
        {L"file:///x/%zz", L"/x/%zz"},     // not an escape: kept
        {L"file:///x/%4", L"/x/%4"},
        {L"file://server/share/x", L""},   // another host
        {L"file://localhost", L""},
        {L"http://host/x", L""},
        {L"file:relative/x", L""},
        {L"file:///x/%FF", L""},           // not UTF-8
        {L"file:///x/%C3", L""},           // cut UTF-8
        {L"file:///x/%ED%A0%80", L""},     // surrogate
        {L"file:///x/%00y", L""},          // embedded zero
        {L"", L""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.url)));
        EXPECT_EQ(S(PathFromUrl(BrmStringW(c.url))), c.path);
    }
}

TEST(FileUrl, EscapeAndUnescape) {
    struct Case {
        const wchar_t* text;
        const wchar_t* escaped;
    };
    const Case cases[] = {
        {L"plain", L"plain"}, {L"a b", L"a%20b"}, {L"100%", L"100%25"},
        {L"http://h/p?q=1&r=2#f", L"http://h/p?q=1&r=2#f"},
        {L"<\"{}|\\^`>", L"%3C%22%7B%7D%7C%5C%5E%60%3E"},
        {L"\u00e9\t", L"%C3%A9%09"},
        {L"", L""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.text)));
        EXPECT_EQ(S(UrlEscape(BrmStringW(c.text))), c.escaped);
        EXPECT_EQ(S(UrlUnescape(BrmStringW(c.escaped))), c.text);
    }
    std::wstring big(kMaxUrlLength / 3 + 1, L' ');
    EXPECT_TRUE(UrlEscape(BrmStringW(big.c_str())).IsEmpty());
    // Lower-case escapes and non-ASCII text pass through unescaping.
    EXPECT_EQ(S(UrlUnescape(BrmStringW(L"%c3%a9-\u00e9"))), L"\u00e9-\u00e9");
}

TEST(FileUrl, CrackUrl) {
    const struct {
        const wchar_t* url;
        const wchar_t* parts;  // scheme|user|password|host|port|path|extra
    } cases[] = {
        {L"https://me:pw@example.org:8080/a/b.xml?x=1#top", L"https|me|pw|example.org|8080|/a/b.xml|?x=1#top"},
        {L"file:///tmp/x", L"file||||0|/tmp/x|"},
        {L"urn:brimo:x", L"urn||||0|brimo:x|"},
    };
    for (const auto& c : cases) {
        UrlParts p;
        ASSERT_TRUE(CrackUrl(BrmStringW(c.url), &p));
        EXPECT_EQ(S(p.scheme) + L"|" + S(p.user) + L"|" + S(p.password) + L"|" + S(p.host) + L"|" +
                      std::to_wstring(p.port) + L"|" + S(p.path) + L"|" + S(p.extra),
                  c.parts);
    }
    const wchar_t* bad[] = {L"", L"no scheme", L"://x", L"1http://x", L"http://h:99999/", L"http://h:8a/",
                            L"http://h:/"};
    for (const wchar_t* b : bad) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(b)));
        UrlParts untouched;
        untouched.port = 7;
        EXPECT_FALSE(CrackUrl(BrmStringW(b), &untouched));
        EXPECT_EQ(untouched.port, 7);
    }
}

