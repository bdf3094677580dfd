// Category translation: the template type words and the fallbacks.
#include <gtest/gtest.h>

#include "fileinfo/CategoryTables.h"

namespace {

using BrmPlatform::BrmStringW;
using CategoryTables::TranslateCategory;

struct Case {
    const wchar_t* text;
    const wchar_t* word;
    const wchar_t* language;
    std::wstring expected;
};

TEST(CategoryTables, Translate) {
    const Case cases[] = {
        {L"", L"flyer", L"en", L"Flyers"},
        {L"", L"business stationery", L"en", L"Letterheads & Letters"},
        {L"", L"poster", L"en", L"Resumes"},  // index 14, as the tables pair them
        {L"My own", L"flyer", L"en", L"My own"},    // a category the document names wins
        {L"", L"", L"en", L""},
        {L"", L"unknown word", L"en", L"unknown word"},
        {L"", L"Flyer", L"en", L"Flyer"},          // the comparison is exact
        {L"", L"flyer", L"fr", L"flyer"},          // a language without a row
        {L"", L"flyer", L"EN", L"flyer"},          // codes are lower case
        // German keeps the tables' byte-widened form of non-ASCII letters.
        {L"", L"brochure", L"de", L"Brosch\u00C3\u00BCren"},
        {L"", L"flyer", L"de", L"Flyer"},
    };
    for (int round = 0; round < 2; ++round) {  // the second round goes through the cache
        for (const Case& c : cases) {
            EXPECT_EQ(TranslateCategory(c.text, c.word, c.language).StdString(), c.expected)
                << c.word << " / " << c.language;
        }
    }
}

}  // namespace
