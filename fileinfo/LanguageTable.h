// The languages a document's multilingual texts are looked for in, by
// primary language id and the two-letter code the documents use. The order
// is the order in which texts of several languages are joined.
#pragma once

#include <cstdint>

namespace ShellExt {

struct LanguageRow {
    uint16_t id;
    const wchar_t* code;
};

inline constexpr LanguageRow kLanguageTable[] = {
    {0x16, L"br"}, {0x04, L"cs"}, {0x7C04, L"ct"}, {0x05, L"cz"}, {0x07, L"de"}, {0x0B, L"su"},
    {0x09, L"en"}, {0x0A, L"es"}, {0x0C, L"fr"},   {0x10, L"it"}, {0x11, L"jp"}, {0x1D, L"sv"},
    {0x12, L"kr"}, {0x0E, L"ma"}, {0x13, L"nl"},   {0x15, L"pl"}, {0x19, L"ru"}, {0x1F, L"tr"},
};

}  // namespace ShellExt
