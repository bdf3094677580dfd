// Conversion letters from the system's printf rules to the C library's, and
// the print itself. The C library's wide printf has no counting mode, so the
// wide print retries with a growing buffer.
#include "utils/strings/PrintfFormat.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <type_traits>

#include <langinfo.h>

namespace BrmPlatform {
namespace details {

namespace {

template <typename T>
bool IsSpecChar(T c)
{
    // Positions (n$), flags, widths (digits or *), precisions.
    return (c >= T('0') && c <= T('9')) || c == T('$') || c == T('-') || c == T('+') || c == T(' ') ||
           c == T('#') || c == T('\'') || c == T('*') || c == T('.');
}

// True when ToCLibraryFormat would hand the format back unchanged: it
// rewrites only the text conversions (s, c, S, C) and the I64, I32 and w size
// prefixes, so a format without those letters goes to the C library as it
// is, without a copy (numbers are formatted for every property read).
template <typename T>
bool IsCLibraryFormat(const T* format)
{
    if (!format)
        return false;
    for (const T* p = format; *p; ++p) {
        const T c = *p;
        if (c == T('s') || c == T('c') || c == T('S') || c == T('C') || c == T('I') || c == T('w'))
            return false;
    }
    return true;
}

// The format as the C library reads it: `format` itself or, when it must be
// rewritten, the rewritten copy kept in `storage`.
template <typename T>
const T* CLibraryFormat(const T* format, std::basic_string<T>& storage)
{
    if (IsCLibraryFormat(format))
        return format;
    storage = ToCLibraryFormat(format);
    return storage.c_str();
}

}  // namespace

template <typename T>
std::basic_string<T> ToCLibraryFormat(const T* format)
{
    constexpr bool wide = std::is_same_v<T, wchar_t>;
    std::basic_string<T> out;
    if (!format)
        return out;
    const T* p = format;
    while (*p) {
        if (*p != T('%')) {
            out += *p++;
            continue;
        }
        out += *p++;
        if (*p == T('%')) {
            out += *p++;
            continue;
        }
        while (*p && IsSpecChar(*p))
            out += *p++;
        // Size prefix: 0 none, 'h' narrow, 'l' wide for the text conversions.
        T size = 0;
        std::basic_string<T> prefix;
        if (p[0] == T('I') && p[1] == T('6') && p[2] == T('4')) {
            prefix = {T('l'), T('l')};
            p += 3;
        } else if (p[0] == T('I') && p[1] == T('3') && p[2] == T('2')) {
            p += 3;
        } else if (p[0] == T('w')) {
            size = T('l');
            prefix = {T('l')};
            ++p;
        } else {
            while (*p == T('h') || *p == T('l') || *p == T('L') || *p == T('q') || *p == T('j') || *p == T('z') ||
                   *p == T('Z') || *p == T('t')) {
                prefix += *p++;
            }
            if (prefix.size() == 1 && (prefix[0] == T('h') || prefix[0] == T('l')))
                size = prefix[0];
        }
        const T conv = *p;
        if (conv == T('s') || conv == T('c') || conv == T('S') || conv == T('C')) {
            const bool upper = conv == T('S') || conv == T('C');
            // Which width the argument has: this format's own for s/c, the other for S/C.
            bool argWide = upper ? !wide : wide;
            if (size == T('h'))
                argWide = false;
            else if (size == T('l'))
                argWide = true;
            if (argWide)
                out += T('l');
            out += upper ? T(conv + ('a' - 'A')) : conv;
            ++p;
        } else {
            out += prefix;
            if (conv)
                out += *p++;
        }
    }
    return out;
}

template <>
int PrintV<char>(PrintBuffer<char>& buffer, const char* format, va_list args)
{
    std::string storage;
    const char* cformat = CLibraryFormat(format, storage);
    va_list copy;
    va_copy(copy, args);
    int count = std::vsnprintf(buffer.Data(), std::size_t(buffer.Size()), cformat, copy);
    va_end(copy);
    if (count < 0 || count > kMaxPrintLength)
        return -1;
    if (count >= buffer.Size()) {
        buffer.Reserve(count + 1);
        va_copy(copy, args);
        count = std::vsnprintf(buffer.Data(), std::size_t(buffer.Size()), cformat, copy);
        va_end(copy);
    }
    return count;
}

namespace {

// Prints the formats made only of text and plain numbers (%d, %i, %u with
// an optional 0 flag and width, %f with an optional precision, and %%)
// without the C library, whose wide printf costs a thousand times more than
// the digits: readers format version numbers and ratios for every document
// they read. The digits are std::to_chars', which prints as printf does in
// the C locale; any other format, a decimal point of another locale, a
// number that is not finite or a text longer than the buffer answer false,
// and the C library prints instead.
bool PrintNumbers(PrintBuffer<wchar_t>& buffer, const wchar_t* format, va_list args, int& count)
{
    if (!format)
        return false;
    wchar_t* out = buffer.Data();
    const int room = buffer.Size() - 1;
    int n = 0;
    auto put = [&](const char* text, int length, int width, bool zeros) {
        const int pad = width > length ? width - length : 0;
        if (n + pad + length > room)
            return false;
        int at = 0;
        if (zeros && pad && (text[0] == '-')) {
            out[n++] = L'-';
            at = 1;
        }
        for (int i = 0; i < pad; ++i)
            out[n++] = zeros ? L'0' : L' ';
        for (int i = at; i < length; ++i)
            out[n++] = wchar_t(text[i]);
        return true;
    };
    for (const wchar_t* p = format; *p;) {
        if (*p != L'%') {
            if (n >= room)
                return false;
            out[n++] = *p++;
            continue;
        }
        ++p;
        if (*p == L'%') {
            if (n >= room)
                return false;
            out[n++] = *p++;
            continue;
        }
        const bool zeros = *p == L'0';
        if (zeros)
            ++p;
        int width = 0, precision = -1;
        for (int digits = 0; *p >= L'0' && *p <= L'9'; ++p, ++digits) {
            if (digits == 2)
                return false;
            width = width * 10 + int(*p - L'0');
        }
        if (*p == L'.') {
            precision = 0;
            ++p;
            for (int digits = 0; *p >= L'0' && *p <= L'9'; ++p, ++digits) {
                if (digits == 2)
                    return false;
                precision = precision * 10 + int(*p - L'0');
            }
        }
        char digits[64];
        std::to_chars_result r{};
        switch (*p++) {
        case L'd':
        case L'i':
            if (precision >= 0)
                return false;
            r = std::to_chars(digits, digits + sizeof digits, va_arg(args, int));
            break;
        case L'u':
            if (precision >= 0)
                return false;
            r = std::to_chars(digits, digits + sizeof digits, va_arg(args, unsigned));
            break;
        case L'f': {
            // The decimal point of the thread's locale, as printf takes it.
            const char* point = nl_langinfo(RADIXCHAR);
            if (width || zeros || !point || std::strcmp(point, ".") != 0)
                return false;
            const double value = va_arg(args, double);
            if (!std::isfinite(value))
                return false;
            r = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed,
                              precision < 0 ? 6 : precision);
            break;
        }
        default:
            return false;
        }
        if (r.ec != std::errc() || !put(digits, int(r.ptr - digits), width, zeros))
            return false;
    }
    out[n] = 0;
    count = n;
    return true;
}

}  // namespace

template <>
int PrintV<wchar_t>(PrintBuffer<wchar_t>& buffer, const wchar_t* format, va_list args)
{
    {
        va_list copy;
        va_copy(copy, args);
        int count = 0;
        const bool printed = PrintNumbers(buffer, format, copy, count);
        va_end(copy);
        if (printed)
            return count;
    }
    std::wstring storage;
    const wchar_t* cformat = CLibraryFormat(format, storage);
    for (;;) {
        va_list copy;
        va_copy(copy, args);
        errno = 0;
        const int count = std::vswprintf(buffer.Data(), std::size_t(buffer.Size()), cformat, copy);
        const int error = errno;
        va_end(copy);
        if (count >= 0)
            return count;
        // Too small a buffer gives -1 as well as a real failure does; only
        // the buffer size tells them apart, so grow up to the limit.
        if (error == EILSEQ || error == EINVAL || buffer.Size() >= kMaxPrintLength)
            return -1;
        buffer.Reserve(buffer.Size() < kMaxPrintLength / 4 ? buffer.Size() * 4 : kMaxPrintLength);
    }
}

template std::string ToCLibraryFormat<char>(const char*);
template std::wstring ToCLibraryFormat<wchar_t>(const wchar_t*);

}  // namespace details
}  // namespace BrmPlatform
