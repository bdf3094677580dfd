// The default-follows-language rule and the lookups with fallback.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "metadata/MultiLanguageString.h"

namespace {

using Metadata::MultiLanguageString;
using Entries = std::vector<std::pair<std::wstring, std::wstring>>;

Entries Dump(const MultiLanguageString& m) {
    Entries out;
    for (const auto& [k, v] : m.Entries()) out.emplace_back(k.StdString(), v.StdString());
    return out;
}

struct SetCase {
    const char* what;
    std::vector<std::pair<const wchar_t*, const wchar_t*>> sets;  // language, text, in order
    Entries expected;
};

TEST(MultiLanguageString, SetKeepsTheDefaultInStep) {
    const SetCase cases[] = {
        {"first language becomes the default", {{L"de", L"Haus"}}, {{L"", L"Haus"}, {L"de", L"Haus"}}},
        {"second language leaves the default", {{L"de", L"Haus"}, {L"en", L"house"}},
         {{L"", L"Haus"}, {L"de", L"Haus"}, {L"en", L"house"}}},
        {"default follows the language it equals", {{L"de", L"Haus"}, {L"de", L"Heim"}},
         {{L"", L"Heim"}, {L"de", L"Heim"}}},
        {"default set apart stays", {{L"de", L"Haus"}, {L"", L"x"}, {L"de", L"Heim"}},
         {{L"", L"x"}, {L"de", L"Heim"}}},
        {"erasing the language the default equals erases both", {{L"de", L"Haus"}, {L"de", L""}}, {}},
        {"keys are lowered", {{L"DE-at", L"a"}}, {{L"", L"a"}, {L"de-at", L"a"}}},
        {"empty text on a new language stores nothing", {{L"fr", L""}}, {}},
        {"default alone", {{L"", L"d"}}, {{L"", L"d"}}},
        {"erasing an absent language leaves the default", {{L"", L"same"}, {L"en", L""}, {L"fr", L"x"}},
         {{L"", L"same"}, {L"fr", L"x"}}},
    };
    for (const auto& c : cases) {
        MultiLanguageString m;
        for (const auto& [language, text] : c.sets) m.Set(language, text);
        EXPECT_EQ(Dump(m), c.expected) << c.what;
    }
}

struct GetCase {
    Entries entries;  // set in this order
    const wchar_t* language;
    const wchar_t* exact;
    const wchar_t* best;
};

TEST(MultiLanguageString, GetAndGetBest) {
    const GetCase cases[] = {
        {{}, L"en", L"", L""},
        {{{L"", L"d"}, {L"en", L"e"}}, L"EN", L"e", L"e"},
        {{{L"", L"d"}, {L"en", L"e"}}, L"de", L"", L"d"},
        {{{L"", L"d"}, {L"en", L"e"}}, L"", L"d", L"d"},
    };
    for (const auto& c : cases) {
        MultiLanguageString m;
        for (const auto& [k, v] : c.entries) m.Set(k.c_str(), v.c_str());
        EXPECT_EQ(m.Get(c.language).StdString(), c.exact) << c.language;
        EXPECT_EQ(m.GetBest(c.language).StdString(), c.best) << c.language;
    }
    // No default: the first entry by code unit order answers.
    MultiLanguageString noDefault;
    noDefault.Set(L"fr", L"b");
    noDefault.Set(L"en", L"a");
    noDefault.Set(L"", L"");  // erases the default the first language made
    EXPECT_EQ(Dump(noDefault), (Entries{{L"en", L"a"}, {L"fr", L"b"}}));
    EXPECT_EQ(noDefault.GetBest(L"de").StdString(), L"a");
    EXPECT_EQ(noDefault.GetBest(L"").StdString(), L"a");
}

}  // namespace
