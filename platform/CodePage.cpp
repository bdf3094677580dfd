// MultiByteToWideChar and WideCharToMultiByte. UTF-8 and UTF-16 are coded by
// hand (platform/Unicode.h); every other code page goes through an ICU
// converter, kept open per thread so that the many small conversions of the
// string class do not pay for opening one each time.
#include "platform/CodePage.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>
#include <vector>

#include "platform/LastError.h"
#include "platform/Unicode.h"

namespace {

constexpr UINT kOemCodePage = 437;
constexpr UINT kMacCodePage = 10000;

// ICU names for the code pages whose "windows-N" alias ICU does not have.
struct NamedCodePage {
    UINT codePage;
    const char* name;
};
constexpr NamedCodePage kNamedCodePages[] = {
    {20127, "US-ASCII"},    {28591, "ISO-8859-1"},  {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},  {28595, "ISO-8859-5"},  {28596, "ISO-8859-6"},  {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},  {28599, "ISO-8859-9"},  {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"},
    {20866, "KOI8-R"},      {21866, "KOI8-U"},      {20932, "EUC-JP"},      {51932, "EUC-JP"},
    {51936, "GB2312"},      {51949, "EUC-KR"},      {50220, "ISO-2022-JP"}, {50221, "ISO-2022-JP"},
    {50222, "ISO-2022-JP"}, {50225, "ISO-2022-KR"}, {52936, "HZ-GB-2312"},  {54936, "GB18030"},
    {12000, "UTF-32LE"},    {12001, "UTF-32BE"},    {CP_UTF7, "UTF-7"},
};

UConverter* OpenConverter(UINT codePage) {
    for (const auto& named : kNamedCodePages) {
        if (named.codePage == codePage) {
            UErrorCode err = U_ZERO_ERROR;
            UConverter* conv = ucnv_open(named.name, &err);
            return U_SUCCESS(err) ? conv : nullptr;
        }
    }
    for (const char* pattern : {"windows-%u", "ibm-%u", "cp%u"}) {
        char name[32];
        std::snprintf(name, sizeof name, pattern, codePage);
        UErrorCode err = U_ZERO_ERROR;
        UConverter* conv = ucnv_open(name, &err);
        if (U_SUCCESS(err) && conv) return conv;
        if (conv) ucnv_close(conv);
    }
    return nullptr;
}

// A few converters per thread, closed when the thread ends.
class ConverterCache {
public:
    ~ConverterCache() {
        for (auto& entry : entries_) ucnv_close(entry.conv);
    }
    UConverter* Get(UINT codePage) {
        for (auto& entry : entries_) {
            if (entry.codePage == codePage) return entry.conv;
        }
        UConverter* conv = OpenConverter(codePage);
        if (!conv) return nullptr;
        if (entries_.size() >= kMaxEntries) {
            ucnv_close(entries_.front().conv);
            entries_.erase(entries_.begin());
        }
        entries_.push_back({codePage, conv});
        return conv;
    }

private:
    static constexpr std::size_t kMaxEntries = 8;
    struct Entry {
        UINT codePage;
        UConverter* conv;
    };
    std::vector<Entry> entries_;
};

UConverter* ConverterFor(UINT codePage) {
    thread_local ConverterCache cache;
    return cache.Get(codePage);
}

UINT InitialAnsiCodePage() {
    if (const char* env = std::getenv("FILEINFO_ACP")) {
        char* end = nullptr;
        unsigned long value = std::strtoul(env, &end, 10);
        if (end != env && *end == '\0' && value > CP_THREAD_ACP && value <= 65535) {
            UINT cp = UINT(value);
            if (cp == CP_UTF8 || cp == CP_UTF16LE || cp == CP_UTF16BE || ConverterFor(cp)) return cp;
        }
    }
    return CP_WINDOWS_1252;
}

std::atomic<UINT>& AnsiCodePage() {
    static std::atomic<UINT> codePage{InitialAnsiCodePage()};
    return codePage;
}

UINT ResolveCodePage(UINT codePage) {
    switch (codePage) {
    case CP_ACP:
    case CP_THREAD_ACP: return GetACP();
    case CP_OEMCP: return kOemCodePage;
    case CP_MACCP: return kMacCodePage;
    default: return codePage;
    }
}

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

// Common tail of both calls: the size query, the too-small buffer, the copy.
template <typename T>
int Deliver(const T* produced, std::size_t count, T* dst, int dstLength) {
    if (count > std::size_t(INT_MAX)) return Fail(ERROR_INVALID_PARAMETER);
    if (dstLength == 0) return int(count);
    if (count > std::size_t(dstLength)) return Fail(ERROR_INSUFFICIENT_BUFFER);
    if (count) std::memcpy(dst, produced, count * sizeof(T));
    return int(count);
}

std::size_t Utf16UnitsToWide(const UChar* units, std::size_t count, wchar_t* out) {
    static_assert(sizeof(UChar) == 2);
    std::size_t n = 0;
    for (std::size_t i = 0; i < count; ++i) {
        char32_t c = units[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < count && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (units[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = Unicode::kReplacement;
        }
        out[n++] = wchar_t(c);
    }
    return n;
}

std::u16string WideToUtf16Units(const wchar_t* text, std::size_t count) {
    std::u16string units;
    units.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        auto c = char32_t(text[i]);
        if (!Unicode::IsScalar(c)) c = Unicode::kReplacement;
        if (c >= 0x10000) {
            c -= 0x10000;
            units.push_back(char16_t(0xD800 + (c >> 10)));
            units.push_back(char16_t(0xDC00 + (c & 0x3FF)));
        } else {
            units.push_back(char16_t(c));
        }
    }
    return units;
}

// Bytes to UTF-16 through ICU; false when strict and the input is ill-formed.
bool IcuToUnicode(UConverter* conv, const char* src, std::size_t length, bool strict, std::u16string& out) {
    UErrorCode err = U_ZERO_ERROR;
    if (strict) {
        ucnv_setToUCallBack(conv, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &err);
    } else {
        ucnv_setToUCallBack(conv, UCNV_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &err);
    }
    out.resize(length + 16);
    err = U_ZERO_ERROR;
    int32_t n = ucnv_toUChars(conv, out.data(), int32_t(out.size()), src, int32_t(length), &err);
    if (err == U_BUFFER_OVERFLOW_ERROR) {
        out.resize(std::size_t(n) + 1);
        err = U_ZERO_ERROR;
        n = ucnv_toUChars(conv, out.data(), int32_t(out.size()), src, int32_t(length), &err);
    }
    if (U_FAILURE(err)) return false;
    out.resize(std::size_t(n));
    return true;
}

// Records that an unmappable character was replaced by the default one.
struct SubstituteContext {
    bool used = false;
};

void SubstituteAndRecord(const void* context, UConverterFromUnicodeArgs* args, const UChar* units, int32_t length,
                         UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* err) {
    if (reason == UCNV_UNASSIGNED || reason == UCNV_ILLEGAL || reason == UCNV_IRREGULAR) {
        static_cast<SubstituteContext*>(const_cast<void*>(context))->used = true;
        UCNV_FROM_U_CALLBACK_SUBSTITUTE(nullptr, args, units, length, codePoint, reason, err);
    }
}

bool IcuFromUnicode(UConverter* conv, const std::u16string& units, const char* defaultChar, bool& usedDefault,
                    std::string& out) {
    UErrorCode err = U_ZERO_ERROR;
    const char* substitute = defaultChar && *defaultChar ? defaultChar : "?";
    if (ucnv_getType(conv) != UCNV_UTF7 && ucnv_getType(conv) != UCNV_UTF32_LittleEndian &&
        ucnv_getType(conv) != UCNV_UTF32_BigEndian) {
        ucnv_setSubstChars(conv, substitute, 1, &err);
        err = U_ZERO_ERROR;  // a converter that refuses keeps its own
    }
    SubstituteContext context;
    ucnv_setFromUCallBack(conv, SubstituteAndRecord, &context, nullptr, nullptr, &err);
    if (U_FAILURE(err)) return false;
    out.resize(units.size() * 4 + 16);
    int32_t n = ucnv_fromUChars(conv, out.data(), int32_t(out.size()), units.data(), int32_t(units.size()), &err);
    if (err == U_BUFFER_OVERFLOW_ERROR) {
        out.resize(std::size_t(n) + 1);
        err = U_ZERO_ERROR;
        n = ucnv_fromUChars(conv, out.data(), int32_t(out.size()), units.data(), int32_t(units.size()), &err);
    }
    ucnv_setFromUCallBack(conv, UCNV_FROM_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &err);
    if (U_FAILURE(err)) return false;
    out.resize(std::size_t(n));
    usedDefault = context.used;
    return true;
}

std::size_t ByteLengthWithTerminator(UINT codePage, const char* src) {
    if (codePage == CP_UTF16LE || codePage == CP_UTF16BE) {
        std::size_t i = 0;
        while (src[i] != 0 || src[i + 1] != 0) i += 2;
        return i + 2;
    }
    return std::strlen(src) + 1;
}

}  // namespace

UINT GetACP() { return AnsiCodePage().load(std::memory_order_relaxed); }

void SetAnsiCodePage(UINT codePage) {
    if (codePage > CP_THREAD_ACP) AnsiCodePage().store(codePage, std::memory_order_relaxed);
}

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* src, int srcLength, wchar_t* dst, int dstLength) {
    if (!src || srcLength == 0 || srcLength < -1 || dstLength < 0 || (dstLength > 0 && !dst)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    codePage = ResolveCodePage(codePage);
    const std::size_t length = srcLength == -1 ? ByteLengthWithTerminator(codePage, src) : std::size_t(srcLength);
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;

    if (codePage == CP_UTF8 || codePage == CP_UTF16LE || codePage == CP_UTF16BE) {
        bool bad = false;
        std::size_t count;
        auto decode = [&](wchar_t* out) {
            if (codePage == CP_UTF8) return Unicode::DecodeUtf8(src, length, out, Unicode::Invalid::Replace, &bad);
            return Unicode::DecodeUtf16(reinterpret_cast<const uint8_t*>(src), length, codePage == CP_UTF16BE, out,
                                        &bad);
        };
        // Never more characters than bytes: a buffer that large is written
        // in one pass, without counting first.
        const bool fits = dstLength > 0 && std::size_t(dstLength) >= length && !strict;
        count = decode(fits ? dst : nullptr);
        if (fits) return int(count);
        if (codePage != CP_UTF8 && length % 2) bad = true;
        if (strict && bad) return Fail(ERROR_NO_UNICODE_TRANSLATION);
        if (count > std::size_t(INT_MAX)) return Fail(ERROR_INVALID_PARAMETER);
        if (dstLength == 0) return int(count);
        if (count > std::size_t(dstLength)) return Fail(ERROR_INSUFFICIENT_BUFFER);
        decode(dst);
        return int(count);
    }

    UConverter* conv = ConverterFor(codePage);
    if (!conv) return Fail(ERROR_INVALID_PARAMETER);
    if (length > std::size_t(INT32_MAX) - 16) return Fail(ERROR_INVALID_PARAMETER);
    std::u16string units;
    if (!IcuToUnicode(conv, src, length, strict, units)) return Fail(ERROR_NO_UNICODE_TRANSLATION);
    std::vector<wchar_t> wide(units.size());
    std::size_t count = Utf16UnitsToWide(units.data(), units.size(), wide.data());
    return Deliver(wide.data(), count, dst, dstLength);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* src, int srcLength, char* dst, int dstLength,
                        const char* defaultChar, BOOL* usedDefaultChar) {
    if (!src || srcLength == 0 || srcLength < -1 || dstLength < 0 || (dstLength > 0 && !dst)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    codePage = ResolveCodePage(codePage);
    const std::size_t length = srcLength == -1 ? std::wcslen(src) + 1 : std::size_t(srcLength);
    if (usedDefaultChar) *usedDefaultChar = FALSE;

    if (codePage == CP_UTF8 || codePage == CP_UTF16LE || codePage == CP_UTF16BE) {
        bool bad = false;
        auto encode = [&](char* out) {
            if (codePage == CP_UTF8) return Unicode::EncodeUtf8(src, length, out, false, &bad);
            return Unicode::EncodeUtf16(src, length, codePage == CP_UTF16BE, reinterpret_cast<uint8_t*>(out), &bad);
        };
        // At most four bytes per character: such a buffer takes one pass.
        const bool strict = codePage == CP_UTF8 && (flags & WC_ERR_INVALID_CHARS);
        const bool fits = dstLength > 0 && length <= std::size_t(INT_MAX) / 4 &&
                          std::size_t(dstLength) >= length * 4 && !strict;
        std::size_t count = encode(fits ? dst : nullptr);
        if (fits) return int(count);
        if (strict && bad) return Fail(ERROR_NO_UNICODE_TRANSLATION);
        if (count > std::size_t(INT_MAX)) return Fail(ERROR_INVALID_PARAMETER);
        if (dstLength == 0) return int(count);
        if (count > std::size_t(dstLength)) return Fail(ERROR_INSUFFICIENT_BUFFER);
        encode(dst);
        return int(count);
    }

    UConverter* conv = ConverterFor(codePage);
    if (!conv) return Fail(ERROR_INVALID_PARAMETER);
    if (length > std::size_t(INT32_MAX) / 8) return Fail(ERROR_INVALID_PARAMETER);
    std::u16string units = WideToUtf16Units(src, length);
    std::string bytes;
    bool usedDefault = false;
    if (!IcuFromUnicode(conv, units, defaultChar, usedDefault, bytes)) return Fail(ERROR_NO_UNICODE_TRANSLATION);
    int result = Deliver(bytes.data(), bytes.size(), dst, dstLength);
    if (result && usedDefaultChar) *usedDefaultChar = usedDefault ? TRUE : FALSE;
    return result;
}

std::size_t Utf16LeToWide(const uint8_t* bytes, std::size_t byteCount, wchar_t* out, std::size_t outCount) {
    if (!bytes) return 0;
    std::size_t count = Unicode::DecodeUtf16(bytes, byteCount, false, nullptr);
    if (!out || outCount == 0) return count;
    if (outCount >= count) {
        Unicode::DecodeUtf16(bytes, byteCount, false, out);
    } else {
        std::vector<wchar_t> all(count);
        Unicode::DecodeUtf16(bytes, byteCount, false, all.data());
        std::memcpy(out, all.data(), outCount * sizeof(wchar_t));
    }
    return count;
}

std::size_t WideToUtf16Le(const wchar_t* text, std::size_t count, uint8_t* out, std::size_t outBytes) {
    if (!text) return 0;
    std::size_t bytes = Unicode::EncodeUtf16(text, count, false, nullptr);
    if (!out || outBytes == 0) return bytes;
    if (outBytes >= bytes) {
        Unicode::EncodeUtf16(text, count, false, out);
    } else {
        std::vector<uint8_t> all(bytes);
        Unicode::EncodeUtf16(text, count, false, all.data());
        std::memcpy(out, all.data(), outBytes);
    }
    return bytes;
}

std::wstring Utf16LeToWideString(const uint8_t* bytes, std::size_t byteCount) {
    std::wstring text(Utf16LeToWide(bytes, byteCount, nullptr, 0), L'\0');
    if (!text.empty()) Utf16LeToWide(bytes, byteCount, text.data(), text.size());
    return text;
}

std::string WideToUtf16LeString(const wchar_t* text, std::size_t count) {
    std::string bytes(WideToUtf16Le(text, count, nullptr, 0), '\0');
    if (!bytes.empty()) WideToUtf16Le(text, count, reinterpret_cast<uint8_t*>(bytes.data()), bytes.size());
    return bytes;
}
