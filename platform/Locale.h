// The user's language as a Windows language id, and locale texts through ICU.
#pragma once

#include "platform/WinTypes.h"

constexpr LANGID LANG_NEUTRAL_DEFAULT = 0x0400;
constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr LCID LOCALE_INVARIANT = 0x007F;
constexpr DWORD LOCALE_NOUSEROVERRIDE = 0x80000000u;
constexpr DWORD LOCALE_SLANGUAGE = 0x00000002;       // localized language name
constexpr DWORD LOCALE_SENGLANGUAGE = 0x00001001;    // English language name
constexpr DWORD LOCALE_SISO639LANGNAME = 0x00000059; // "en"
constexpr DWORD LOCALE_SISO3166CTRYNAME = 0x0000005A; // "US"

constexpr LANGID MAKELANGID(WORD primary, WORD sub) { return LANGID((sub << 10) | primary); }
constexpr WORD PRIMARYLANGID(LANGID id) { return WORD(id & 0x3FF); }
constexpr WORD SUBLANGID(LANGID id) { return WORD(id >> 10); }

// From LC_ALL, then LC_MESSAGES, then LANG ("de_DE.UTF-8" -> 0x0407);
// "C", "POSIX", unset or unknown give English (0x0409). A language without
// country takes its most likely one ("fr" -> 0x040C). Read anew each call.
// The UI and system languages are the same here: Linux has no other.
LANGID GetUserDefaultLangID();
LANGID GetUserDefaultUILanguage();
LANGID GetSystemDefaultUILanguage();

// Windows language id <-> BCP 47 / POSIX names ("de-DE", "de_DE",
// "de_DE.UTF-8"); 0 for an unknown name. A bare language gives its most
// likely country, as Windows does without LOCALE_ALLOW_NEUTRAL_NAMES.
LANGID LangIdFromLocaleName(const char* name);
// Writes e.g. "de-DE"; answers false for an unknown id.
bool LocaleNameFromLangId(LANGID id, char* out, size_t outSize);

// Answers the characters written including the terminator, 0 on failure;
// a size of 0 asks for the needed length. LOCALE_SLANGUAGE is the locale's
// full name in the user's language ("German (Germany)" for an English
// user); LOCALE_SENGLANGUAGE the English language name ("German"). An
// unknown locale fails with ERROR_INVALID_PARAMETER, another type with
// ERROR_INVALID_FLAGS, a short buffer with ERROR_INSUFFICIENT_BUFFER.
int GetLocaleInfoW(LCID locale, DWORD type, wchar_t* data, int size);
