// The user's language from the POSIX locale variables, Windows language ids
// through ICU's LCID tables, and locale names through ICU's display names.
#include "platform/Locale.h"

#include <unicode/uloc.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/LastError.h"

namespace {

constexpr LANGID kEnglishUs = 0x0409;

// "de_DE.UTF-8@euro" -> "de_DE"; the C and POSIX locales name no language.
std::string PosixLanguagePart(const char* name) {
    if (!name) return {};
    const std::size_t length = std::strcspn(name, ".@");
    const bool noLanguage = (length == 1 && name[0] == 'C') || (length == 5 && std::strncmp(name, "POSIX", 5) == 0);
    return noLanguage ? std::string() : std::string(name, length);
}

std::string IcuName(const std::string& name) {
    char out[ULOC_FULLNAME_CAPACITY];
    UErrorCode err = U_ZERO_ERROR;
    if (name.find('-') != std::string::npos) {
        uloc_forLanguageTag(name.c_str(), out, sizeof out, nullptr, &err);
    } else {
        uloc_canonicalize(name.c_str(), out, sizeof out, &err);
    }
    if (U_FAILURE(err) || err == U_STRING_NOT_TERMINATED_WARNING) return {};
    return out;
}

bool HasCountry(const char* icuName) {
    char country[ULOC_COUNTRY_CAPACITY];
    UErrorCode err = U_ZERO_ERROR;
    return uloc_getCountry(icuName, country, sizeof country, &err) > 0 && U_SUCCESS(err);
}

bool IcuNameForId(LCID id, std::string& name) {
    char out[ULOC_FULLNAME_CAPACITY];
    UErrorCode err = U_ZERO_ERROR;
    int32_t n = uloc_getLocaleForLCID(id, out, sizeof out, &err);
    if (U_FAILURE(err) || n <= 0 || n >= int32_t(sizeof out)) return false;
    name.assign(out, std::size_t(n));
    return true;
}

// An id for a specific locale: a bare language is completed with its most
// likely script and country first.
LANGID SpecificId(const std::string& icuName) {
    if (icuName.empty()) return 0;
    LCID id = uloc_getLCID(icuName.c_str());
    std::string resolved;
    if (id != 0 && IcuNameForId(id, resolved) && HasCountry(resolved.c_str())) return LANGID(id & 0xFFFF);

    char full[ULOC_FULLNAME_CAPACITY];
    UErrorCode err = U_ZERO_ERROR;
    uloc_addLikelySubtags(icuName.c_str(), full, sizeof full, &err);
    if (U_SUCCESS(err)) {
        char language[ULOC_LANG_CAPACITY] = "";
        char country[ULOC_COUNTRY_CAPACITY] = "";
        uloc_getLanguage(full, language, sizeof language, &err);
        uloc_getCountry(full, country, sizeof country, &err);
        if (U_SUCCESS(err) && *country) {
            for (const std::string& candidate : {std::string(full), std::string(language) + "_" + country}) {
                LCID specific = uloc_getLCID(candidate.c_str());
                if (specific != 0 && IcuNameForId(specific, resolved) && HasCountry(resolved.c_str())) {
                    return LANGID(specific & 0xFFFF);
                }
            }
        }
    }
    return LANGID(id & 0xFFFF);
}

LANGID LanguageFromEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value) {
            LANGID id = LangIdFromLocaleName(value);
            return id ? id : kEnglishUs;
        }
    }
    return kEnglishUs;
}

LANGID ResolveLocale(LCID locale) {
    switch (locale) {
    case 0:
    case LOCALE_USER_DEFAULT: return GetUserDefaultLangID();
    case LOCALE_SYSTEM_DEFAULT: return GetSystemDefaultUILanguage();
    default: return LANGID(locale & 0xFFFF);
    }
}

int Deliver(const std::u16string& units, wchar_t* data, int size) {
    // Display names are UTF-16; joined pairs make one wide character.
    std::wstring text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t c = units[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < units.size()) {
            c = 0x10000 + ((c - 0xD800) << 10) + (units[i + 1] - 0xDC00);
            ++i;
        }
        text.push_back(wchar_t(c));
    }
    const int needed = int(text.size()) + 1;
    if (size == 0) return needed;
    if (size < needed) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::memcpy(data, text.c_str(), std::size_t(needed) * sizeof(wchar_t));
    return needed;
}

using DisplayFunction = int32_t (*)(const char*, const char*, UChar*, int32_t, UErrorCode*);

// A display name in `displayLocale`, or in English when ICU has no names in
// that language.
bool DisplayText(DisplayFunction function, const std::string& locale, const std::string& displayLocale,
                 std::u16string& out) {
    for (const std::string& display : {displayLocale, std::string("en")}) {
        UChar buffer[256];
        UErrorCode err = U_ZERO_ERROR;
        int32_t n = function(locale.c_str(), display.c_str(), buffer, 256, &err);
        if (U_FAILURE(err) || n <= 0 || n > 256) continue;
        if (err == U_USING_DEFAULT_WARNING && display != "en") continue;
        out.assign(reinterpret_cast<const char16_t*>(buffer), std::size_t(n));
        return true;
    }
    return false;
}

}  // namespace

LANGID GetUserDefaultLangID() { return LanguageFromEnvironment(); }

LANGID GetUserDefaultUILanguage() { return LanguageFromEnvironment(); }

LANGID GetSystemDefaultUILanguage() { return LanguageFromEnvironment(); }

LANGID LangIdFromLocaleName(const char* name) { return SpecificId(IcuName(PosixLanguagePart(name))); }

bool LocaleNameFromLangId(LANGID id, char* out, size_t outSize) {
    if (!out || outSize == 0) return false;
    if (id == 0 || id == LANG_NEUTRAL_DEFAULT) id = GetUserDefaultLangID();
    std::string name;
    if (!IcuNameForId(id, name)) return false;
    char tag[ULOC_FULLNAME_CAPACITY];
    UErrorCode err = U_ZERO_ERROR;
    int32_t n = uloc_toLanguageTag(name.c_str(), tag, sizeof tag, true, &err);
    if (U_FAILURE(err) || n <= 0 || std::size_t(n) >= outSize || n >= int32_t(sizeof tag)) return false;
    std::memcpy(out, tag, std::size_t(n));
    out[n] = '\0';
    return true;
}

int GetLocaleInfoW(LCID locale, DWORD type, wchar_t* data, int size) {
    if (size < 0 || (size > 0 && !data)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    type &= ~LOCALE_NOUSEROVERRIDE;
    const LANGID id = ResolveLocale(locale);
    std::string name;
    if (id == LOCALE_INVARIANT) {
        name = "en_US_POSIX";
    } else if (!IcuNameForId(id, name) || name.empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::u16string text;
    bool ok = false;
    switch (type) {
    case LOCALE_SLANGUAGE: {
        if (id == LOCALE_INVARIANT) {
            text = u"Invariant Language (Invariant Country)";
            ok = true;
            break;
        }
        std::string display;
        IcuNameForId(GetUserDefaultUILanguage(), display);
        ok = DisplayText(uloc_getDisplayName, name, display.empty() ? "en" : display, text);
        break;
    }
    case LOCALE_SENGLANGUAGE:
        if (id == LOCALE_INVARIANT) {
            text = u"Invariant Language";
            ok = true;
            break;
        }
        ok = DisplayText(uloc_getDisplayLanguage, name, "en", text);
        break;
    case LOCALE_SISO639LANGNAME:
    case LOCALE_SISO3166CTRYNAME: {
        char part[ULOC_FULLNAME_CAPACITY] = "";
        UErrorCode err = U_ZERO_ERROR;
        if (type == LOCALE_SISO639LANGNAME) {
            uloc_getLanguage(name.c_str(), part, sizeof part, &err);
        } else {
            uloc_getCountry(name.c_str(), part, sizeof part, &err);
        }
        ok = U_SUCCESS(err);
        for (const char* p = part; *p; ++p) text.push_back(char16_t(*p));
        break;
    }
    default: SetLastError(ERROR_INVALID_FLAGS); return 0;
    }
    if (!ok) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    return Deliver(text, data, size);
}
