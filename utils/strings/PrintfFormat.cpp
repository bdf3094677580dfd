// Conversion letters from the system's printf rules to the C library's, and
// the print itself. The C library's wide printf has no counting mode, so the
// wide print retries with a growing buffer.
#include "utils/strings/PrintfFormat.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <type_traits>

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

template <>
int PrintV<wchar_t>(PrintBuffer<wchar_t>& buffer, const wchar_t* format, va_list args)
{
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
