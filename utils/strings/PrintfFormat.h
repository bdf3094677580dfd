// Printing for BrmStringT::Format: the format's conversion letters follow the
// system's rules (in either width %s and %c are that width's text and
// character, %S and %C the other width's), which are rewritten into the C
// library's rules before the C library prints.
#pragma once

#include <cstdarg>
#include <memory>
#include <string>

namespace BrmPlatform {
namespace details {

// The same format with every conversion spelled for the C library's printf of
// width T: %s -> %ls in a wide format, %S -> %s, %S -> %ls in a narrow one,
// I64 -> ll. Flags, widths, precisions and n$ positions are kept.
template <typename T>
std::basic_string<T> ToCLibraryFormat(const T* format);

// Room for one print: a small array inside, the heap when that is too short.
template <typename T>
class PrintBuffer {
public:
    T* Data() noexcept { return m_heap ? m_heap.get() : m_local; }
    int Size() const noexcept { return m_size; }
    void Reserve(int size)
    {
        if (size > m_size) {
            m_heap = std::make_unique<T[]>(std::size_t(size));
            m_size = size;
        }
    }

private:
    static constexpr int kLocal = 256;
    T m_local[kLocal];
    std::unique_ptr<T[]> m_heap;
    int m_size = kLocal;
};

// Prints a format in the C library's rules (positional arguments allowed)
// into buffer; answers the count of characters, or -1 when the C library
// refuses (bad format, text it cannot convert, or more than kMaxPrintLength).
template <typename T>
int PrintV(PrintBuffer<T>& buffer, const T* format, va_list args);

// The longest text one print may make, in characters.
constexpr int kMaxPrintLength = 16 * 1024 * 1024;

}  // namespace details
}  // namespace BrmPlatform
