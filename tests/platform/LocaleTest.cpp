// The user's language from the locale variables, ids and names, and the
// locale texts.
#include <gtest/gtest.h>

#include <string>

#include "EnvGuard.h"
#include "platform/LastError.h"
#include "platform/Locale.h"

namespace {

struct LocaleEnv : EnvGuard {
    LocaleEnv(const char* all, const char* messages, const char* lang) {
        Set("LC_ALL", all);
        Set("LC_MESSAGES", messages);
        Set("LANG", lang);
    }
};

TEST(Locale, NamesAndIds) {
    const std::pair<const char*, LANGID> names[] = {
        {"de-DE", 0x0407}, {"de_DE", 0x0407}, {"en-US", 0x0409}, {"es", 0x0C0A}, {"ru", 0x0419},
        {"sv-SE", 0x041D}, {"", 0},           {"qq-ZZ", 0},
    };
    for (const auto& [name, id] : names) EXPECT_EQ(LangIdFromLocaleName(name), id) << name;
    EXPECT_EQ(LangIdFromLocaleName(nullptr), 0);

    char out[32];
    ASSERT_TRUE(LocaleNameFromLangId(0x0407, out, sizeof out));
    EXPECT_STREQ(out, "de-DE");
    ASSERT_TRUE(LocaleNameFromLangId(0x0C0C, out, sizeof out));
    EXPECT_STREQ(out, "fr-CA");
    EXPECT_FALSE(LocaleNameFromLangId(0x0407, out, 3));  // too small
}

std::wstring Info(LCID locale, DWORD type) {
    int n = GetLocaleInfoW(locale, type, nullptr, 0);
    if (n <= 0) return L"<failed>";
    std::wstring text(std::size_t(n), L'\0');
    EXPECT_EQ(GetLocaleInfoW(locale, type, text.data(), n), n);
    EXPECT_EQ(text.back(), L'\0');
    text.pop_back();
    return text;
}

struct InfoCase {
    const char* userLang;
    LCID locale;
    DWORD type;
    const wchar_t* text;
};

TEST(Locale, InfoTexts) {
    const InfoCase cases[] = {
        {"en_US.UTF-8", 0x0407, LOCALE_SLANGUAGE, L"German (Germany)"},
        {"de_DE.UTF-8", 0x0407, LOCALE_SLANGUAGE, L"Deutsch (Deutschland)"},
        {"fr_FR.UTF-8", 0x0409, LOCALE_SLANGUAGE, L"anglais (\u00C9tats-Unis)"},
        {"C", 0x040C, LOCALE_SLANGUAGE, L"French (France)"}, {"de_DE.UTF-8", 0x040C, LOCALE_SENGLANGUAGE, L"French"},
        {"C", 0x0411, LOCALE_SISO639LANGNAME, L"ja"}, {"C", 0x0411, LOCALE_SISO3166CTRYNAME, L"JP"},
        {"de_DE.UTF-8", LOCALE_USER_DEFAULT, LOCALE_SISO639LANGNAME, L"de"},
        {"C", 0x0407, LOCALE_SENGLANGUAGE | LOCALE_NOUSEROVERRIDE, L"German"},
        {"C", 0x1234, LOCALE_SLANGUAGE, L"<failed>"}, {"C", 0x0407, 0x4711, L"<failed>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.userLang) + " " + std::to_string(c.locale));
        LocaleEnv env(nullptr, nullptr, c.userLang);
        EXPECT_EQ(Info(c.locale, c.type), c.text);
    }
}

}  // namespace
