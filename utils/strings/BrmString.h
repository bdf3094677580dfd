// BrmStringT<T> (T char or wchar_t): the program's one string class. A string
// is a single pointer to the characters of a reference-counted block
// (details::StringDataHeader in front of them); copies share the block and a
// write unshares it first (copy on write). Positions and lengths are int,
// counted in characters of T; a negative index or count is taken as 0 unless
// an operation says otherwise.
#pragma once

#include "platform/OleAuto.h"
#include "utils/strings/BrmStringView.h"
#include "utils/strings/StringData.h"

#include <cstdarg>
#include <string>
#include <string_view>
#include <type_traits>

namespace BrmPlatform {

template <typename T>
class BrmStringT {
    static_assert(std::is_same_v<T, char> || std::is_same_v<T, wchar_t>, "BrmStringT is for char and wchar_t");

public:
    using XCHAR = T;
    using YCHAR = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    using ViewT = BrmStringViewT<T>;

    // Construction. A null pointer or an empty source gives the nil block.
    BrmStringT() noexcept;
    BrmStringT(const BrmStringT& other) noexcept;
    BrmStringT(BrmStringT&& other) noexcept;
    BrmStringT(const T* text);
    BrmStringT(const T* text, int length);
    BrmStringT(T ch, int count);
    explicit BrmStringT(ViewT view);
    // Other width: converted with code page CP_ACP.
    BrmStringT(const BrmStringT<YCHAR>& other);
    // Changed to text; a value that cannot be gives an empty string.
    explicit BrmStringT(const VARIANT& value);
    BrmStringT(const std::basic_string<T>& text);
    explicit BrmStringT(std::basic_string_view<T> text);
    ~BrmStringT();

    BrmStringT& operator=(const BrmStringT& other) noexcept;
    BrmStringT& operator=(BrmStringT&& other) noexcept;
    BrmStringT& operator=(const T* text);
    BrmStringT& operator=(ViewT view);
    BrmStringT& operator=(T ch);
    BrmStringT& operator=(const BrmStringT<YCHAR>& other);
    // A value that cannot be changed to text leaves the string as it was.
    BrmStringT& operator=(const VARIANT& value);
    BrmStringT& operator=(const std::basic_string<T>& text);

    // Access. GetAt and operator[] do not check the index.
    int GetLength() const noexcept { return Header()->length; }
    int GetAllocLength() const noexcept { return Header()->allocLength; }
    bool IsEmpty() const noexcept { return Header()->length == 0; }
    const T* GetString() const noexcept { return m_data; }
    operator const T*() const noexcept { return m_data; }
    operator ViewT() const noexcept { return ViewT(m_data, GetLength()); }
    T GetAt(int index) const noexcept { return m_data[index]; }
    T operator[](int index) const noexcept { return m_data[index]; }
    std::basic_string_view<T> StdView() const noexcept { return {m_data, std::size_t(GetLength())}; }
    std::basic_string<T> StdString() const { return std::basic_string<T>(StdView()); }
    // Unshares and writes; the index is not checked.
    void SetAt(int index, T ch);

    // Buffer.
    T* GetBuffer();
    T* GetBuffer(int minLength);
    T* GetBufferSetLength(int length);
    // A negative length is found by a scan for zero within the allocation.
    void ReleaseBuffer(int newLength = -1);
    void ReleaseBufferSetLength(int newLength);
    void Preallocate(int length);
    void FreeExtra();
    // Sets the length with no check against the old one: a longer length
    // takes over whatever the block holds behind the old end.
    void Truncate(int newLength);
    void Empty() noexcept;

    // Comparison: over the shorter length, then this length minus the other.
    int Compare(ViewT other, CompareCase cc = CompareCase::Exact) const noexcept;
    int CompareNoCase(ViewT other) const noexcept { return Compare(other, CompareCase::IgnoreCase); }
    // By character codes up to the zero: -1, 0 or 1. No locale is consulted.
    int Collate(const T* other) const noexcept;
    int CollateNoCase(const T* other) const noexcept;

    // Search: the index of the first match, or -1.
    int Find(ViewT needle, CompareCase cc = CompareCase::Exact) const noexcept { return View().Find(needle, cc); }
    int Find(ViewT needle, int start, CompareCase cc = CompareCase::Exact) const noexcept { return View().Find(needle, start, cc); }
    int Find(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return View().Find(ch, cc); }
    int Find(T ch, int start, CompareCase cc = CompareCase::Exact) const noexcept { return View().Find(ch, start, cc); }
    int FindOneOf(ViewT set, CompareCase cc = CompareCase::Exact) const noexcept { return View().FindOneOf(set, cc); }
    int FindOneOf(ViewT set, int start, CompareCase cc = CompareCase::Exact) const noexcept { return View().FindOneOf(set, start, cc); }
    int ReverseFind(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return View().ReverseFind(ch, cc); }
    int ReverseFind(T ch, int start, CompareCase cc = CompareCase::Exact) const noexcept { return View().ReverseFind(ch, start, cc); }
    bool Contains(ViewT needle, CompareCase cc = CompareCase::Exact) const noexcept { return View().Contains(needle, cc); }
    bool Contains(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return View().Contains(ch, cc); }

    // Prefix and suffix.
    bool StartsWith(ViewT prefix, CompareCase cc = CompareCase::Exact) const noexcept { return View().StartsWith(prefix, cc); }
    bool EndsWith(ViewT suffix, CompareCase cc = CompareCase::Exact) const noexcept { return View().EndsWith(suffix, cc); }
    bool RemoveLeft(ViewT prefix, CompareCase cc = CompareCase::Exact);
    bool RemoveRight(ViewT suffix, CompareCase cc = CompareCase::Exact);

    // Cutting. A result that is the whole string shares its block.
    BrmStringT Left(int count) const;
    BrmStringT Right(int count) const;
    BrmStringT Mid(int first) const;
    BrmStringT Mid(int first, int count) const;
    BrmStringT SpanIncluding(ViewT set, CompareCase cc = CompareCase::Exact) const;
    BrmStringT SpanExcluding(ViewT set, CompareCase cc = CompareCase::Exact) const;
    // The next token at or behind pos; pos becomes -1 when there is none.
    BrmStringT Tokenize(ViewT delimiters, int& pos, CompareCase cc = CompareCase::Exact) const;

    // Editing.
    void Append(ViewT text);
    void Append(const T* text, int length);
    void AppendChar(T ch);
    void SetString(const T* text);
    void SetString(const T* text, int length);
    BrmStringT& operator+=(const BrmStringT& text);
    BrmStringT& operator+=(const T* text);
    BrmStringT& operator+=(ViewT text);
    BrmStringT& operator+=(T ch);
    BrmStringT& operator+=(const VARIANT& value);
    // Answer the new length.
    int Insert(int index, ViewT text);
    int Insert(int index, T ch);
    int Delete(int index, int count = 1);
    // Answer the count removed.
    int DeleteLeft(int count);
    int DeleteRight(int count);
    // Answer the count of replacements or removals.
    int Replace(ViewT oldText, ViewT newText, CompareCase cc = CompareCase::Exact);
    int Replace(T oldCh, T newCh, CompareCase cc = CompareCase::Exact);
    int Remove(T ch, CompareCase cc = CompareCase::Exact);

    // Case and order, in place.
    BrmStringT& MakeLower();
    BrmStringT& MakeUpper();
    BrmStringT& MakeReverse();

    // Trimming; without argument the set is space, CR, LF and tab. A trim
    // unshares the string even when nothing is trimmed.
    BrmStringT& Trim();
    BrmStringT& Trim(T ch, CompareCase cc = CompareCase::Exact);
    BrmStringT& Trim(ViewT set, CompareCase cc = CompareCase::Exact);
    BrmStringT& TrimLeft();
    BrmStringT& TrimLeft(T ch, CompareCase cc = CompareCase::Exact);
    BrmStringT& TrimLeft(ViewT set, CompareCase cc = CompareCase::Exact);
    BrmStringT& TrimRight();
    BrmStringT& TrimRight(T ch, CompareCase cc = CompareCase::Exact);
    BrmStringT& TrimRight(ViewT set, CompareCase cc = CompareCase::Exact);

    // BSTR; the narrow class converts with CP_ACP first.
    BSTR AllocSysString() const;
    BSTR SetSysString(BSTR* bstr) const;

    // Positional printing (%1$s). In both widths %s and %c take this width's
    // text and character, %S and %C the other width's; %ls/%hs name the wide
    // and narrow forms explicitly. BrmStringT arguments are passed as their
    // text. A failed print leaves the string empty (Format) or as it was
    // (AppendFormat).
    template <typename... Args>
    void Format(const T* format, const Args&... args)
    {
        FormatInternal(format, FormatArg(args)...);
    }
    template <typename... Args>
    void AppendFormat(const T* format, const Args&... args)
    {
        AppendFormatInternal(format, FormatArg(args)...);
    }
    // The format in message notation (%1, %2!d!, %n, ...).
    template <typename... Args>
    void FormatMessage(const T* format, const Args&... args)
    {
        FormatMessageInternal(format, FormatArg(args)...);
    }
    void FormatV(const T* format, va_list args);
    void AppendFormatV(const T* format, va_list args);
    void FormatMessageV(const T* format, va_list args);

    friend BrmStringT operator+(const BrmStringT& a, const BrmStringT& b) { return Concat(a, b); }
    friend BrmStringT operator+(const BrmStringT& a, const T* b) { return Concat(a, ViewT(b)); }
    friend BrmStringT operator+(const T* a, const BrmStringT& b) { return Concat(ViewT(a), b); }
    friend BrmStringT operator+(const BrmStringT& a, ViewT b) { return Concat(a, b); }
    friend BrmStringT operator+(ViewT a, const BrmStringT& b) { return Concat(a, b); }
    friend BrmStringT operator+(const BrmStringT& a, T b) { return Concat(a, ViewT(&b, 1)); }
    friend BrmStringT operator+(T a, const BrmStringT& b) { return Concat(ViewT(&a, 1), b); }

    friend bool operator==(const BrmStringT& a, const BrmStringT& b) noexcept
    {
        return a.m_data == b.m_data || a.StdView() == b.StdView();
    }
    friend bool operator==(const BrmStringT& a, const T* b) noexcept { return a.StdView() == ViewT(b).StdView(); }
    friend bool operator==(const BrmStringT& a, ViewT b) noexcept { return a.StdView() == b.StdView(); }
    friend bool operator<(const BrmStringT& a, const BrmStringT& b) noexcept { return a.Compare(b) < 0; }

private:
    template <typename U>
    friend class BrmStringT;

    struct AttachTag {};
    BrmStringT(details::StringDataHeader* header, AttachTag) noexcept : m_data(header->Data<T>()) {}

    details::StringDataHeader* Header() const noexcept { return details::StringDataHeader::FromData(m_data); }
    ViewT View() const noexcept { return ViewT(m_data, GetLength()); }
    static T* NilData() noexcept;
    static BrmStringT Concat(ViewT a, ViewT b);
    // Makes the block this string's own with room for newLength characters
    // (growing by half when it was its own already) and answers the characters.
    T* PrepareForWrite(int newLength);
    void SetLength(int length) noexcept;
    void Attach(details::StringDataHeader* header) noexcept;
    void AssignWide(const wchar_t* text, int length);
    bool AssignVariant(const VARIANT& value, bool append);
    BrmStringT& TrimBy(const T* set, int setLength, CompareCase cc, bool left, bool right);
    bool Overlaps(const T* text) const noexcept;

    void FormatInternal(const T* format, ...);
    void AppendFormatInternal(const T* format, ...);
    void FormatMessageInternal(const T* format, ...);

    template <typename A>
    static auto FormatArg(const A& arg)
    {
        if constexpr (std::is_array_v<A>) {
            return static_cast<const std::remove_extent_t<A>*>(arg);
        } else if constexpr (std::is_same_v<A, BrmStringT<char>> || std::is_same_v<A, BrmStringT<wchar_t>>) {
            return arg.GetString();
        } else if constexpr (std::is_same_v<A, std::string> || std::is_same_v<A, std::wstring>) {
            return arg.c_str();
        } else {
            static_assert(!std::is_same_v<A, BrmStringViewT<char>> && !std::is_same_v<A, BrmStringViewT<wchar_t>>,
                          "a view is not zero-terminated; print it through ToString()");
            static_assert(std::is_trivially_copyable_v<A>, "only plain values can be printed");
            return arg;
        }
    }

    T* m_data;
};

using BrmStringW = BrmStringT<wchar_t>;
using BrmStringA = BrmStringT<char>;

extern template class BrmStringT<char>;
extern template class BrmStringT<wchar_t>;

template <typename T>
BrmStringT<T> BrmStringViewT<T>::ToString() const
{
    return BrmStringT<T>(*this);
}

}  // namespace BrmPlatform

template <typename T>
struct std::hash<BrmPlatform::BrmStringT<T>> {
    std::size_t operator()(const BrmPlatform::BrmStringT<T>& s) const noexcept
    {
        return std::hash<std::basic_string_view<T>>()(s.StdView());
    }
};
