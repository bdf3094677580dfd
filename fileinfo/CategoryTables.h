// The fixed translation tables of categories. Older templates carry their
// category only as a type word in some language; to show it in the
// language of the system, the word is looked up here. Three tables share
// one shape: fills and patterns, symbols and images, templates.
#pragma once

#include <string>
#include <vector>

#include "utils/strings/BrmString.h"

namespace CategoryTables {

// One language of a table: a two-letter lower-case code and the names in
// that language. The position of a name is its meaning: every row runs in
// the order of the English one (a row may be shorter).
struct LanguageRow {
    std::wstring language;
    std::vector<std::wstring> names;
};
using Table = std::vector<LanguageRow>;

struct Tables {
    Table fills;      // clip-art style fills and patterns
    Table symbols;    // symbols and images
    Table templates;  // templates; kTemplateTypes points into it
};

// The three tables, built once.
const Tables& Get();

// The English type word of a template and the index of its name in the
// template table.
struct TemplateType {
    const wchar_t* word;
    int index;
};
inline constexpr TemplateType kTemplateTypes[] = {
    {L"advertisement", 1}, {L"brochure", 1},    {L"business card", 2},      {L"business stationery", 10},
    {L"catalog", 5},       {L"certificate", 6}, {L"datasheet", 5},          {L"flyer", 8},
    {L"greeting card", 4}, {L"letterhead", 10}, {L"menu", 12},              {L"newsletter", 5},
    {L"other promotional", 13}, {L"postcard", 4}, {L"poster", 14},
};

// `text` when it is not empty; otherwise the template table's name for the
// type word in `language` (two letters, lower case), or the type word itself
// when the word is unknown (compared exactly) or the language has no name
// for it.
BrmPlatform::BrmStringW TranslateCategory(const BrmPlatform::BrmStringW& text, const BrmPlatform::BrmStringW& typeWord,
                                          const BrmPlatform::BrmStringW& language);

}  // namespace CategoryTables
