// The URL helpers on the forms the container's link references take.
#include <gtest/gtest.h>

#include "platform/Url.h"

namespace {

struct PartCase {
    const wchar_t* url;
    DWORD part;
    const wchar_t* expected;
};

TEST(UrlTest, GetPartOnReferenceForms) {
    const PartCase cases[] = {
        {L"self:///content/a.xml", URL_PART_SCHEME, L"self"},
        {L"self:///content/a.xml", URL_PART_HOSTNAME, L""},
        {L"self:///content/a.xml", URL_PART_PATH, L"/content/a.xml"},
        {L"self://content/a.xml", URL_PART_HOSTNAME, L"content"},
        {L"self://content/a.xml", URL_PART_PATH, L"/a.xml"},
        {L"FILE:///x/lib.zip#content/b.xml", URL_PART_SCHEME, L"FILE"},
        {L"file:///x/lib.zip#content/b.xml", URL_PART_EXTRA, L"#content/b.xml"},
        {L"file:///x/lib.zip?/content/b.xml", URL_PART_EXTRA, L"?/content/b.xml"},
        {L"file:///x/lib.zip?q=1#f", URL_PART_QUERY, L"q=1"},
        {L"file:///x/lib.zip", URL_PART_EXTRA, L""},
        {L"pictures/c.png", URL_PART_SCHEME, L""},
        {L"C:\\pictures\\c.png", URL_PART_SCHEME, L""},
        {L"http://user:pw@host:8080/p", URL_PART_HOSTNAME, L"host"},
    };
    for (const auto& c : cases) EXPECT_EQ(UrlGetPartW(c.url, c.part), c.expected) << c.url << " part " << c.part;
}

TEST(UrlTest, Combine) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"pictures/c.png", L"file:///docs/pictures/c.png"},
        {L"../lib.zip#x/y.xml", L"file:///lib.zip#x/y.xml"},
        {L"sub\\d.png", L"file:///docs/sub/d.png"},
        {L"/abs/e.png", L"file:///abs/e.png"},
        {L"self:///keep", L"self:///keep"},
        {L"./f.png", L"file:///docs/f.png"},
    };
    for (const auto& c : cases) EXPECT_EQ(UrlCombineW(L"file:///docs/a.kvd", c.first), c.second) << c.first;
    EXPECT_EQ(UrlCombineW(L"no scheme", L"a"), L"");
    EXPECT_EQ(UrlCombineW(L"file:///a", std::wstring(3000, L'x')), L"");
}

TEST(UrlTest, PathFromFileUrl) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"file:///tmp/a%20b.zip", L"/tmp/a b.zip"},
        {L"file://localhost/tmp/x", L"/tmp/x"},
        {L"file:/tmp/x", L"/tmp/x"},
        {L"file:///tmp/caf%C3%A9#part", L"/tmp/caf\u00e9"},
        {L"file://otherhost/tmp/x", L""},
        {L"http:///tmp/x", L""},
        {L"file:///tmp/%FF", L""},
        {L"file:///tmp/%00x", L""},
        {L"file:///tmp/100%", L"/tmp/100%"},
    };
    for (const auto& c : cases) EXPECT_EQ(PathCreateFromUrlW(c.first), c.second) << c.first;
}

}  // namespace
