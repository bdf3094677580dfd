// BrmStringViewT<T>: a pointer to characters it does not own (not necessarily
// zero-terminated) and a length. Its reading operations answer exactly as the
// BrmStringT operations of the same name, but cut sub-views instead of copies.
#pragma once

#include "utils/strings/StringAlgorithms.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace BrmPlatform {

template <typename T>
class BrmStringT;

template <typename T>
class BrmStringViewT {
    using Algo = details::StringAlgorithms<T>;
    using Traits = details::StringTraits<T>;

public:
    using XCHAR = T;

    constexpr BrmStringViewT() noexcept = default;
    BrmStringViewT(const T* text) noexcept : m_text(text), m_length(Traits::Length(text)) {}
    // A null pointer makes an empty view whatever the length says.
    constexpr BrmStringViewT(const T* text, int length) noexcept
        : m_text(text), m_length(text && length > 0 ? length : 0)
    {
    }
    constexpr BrmStringViewT(std::basic_string_view<T> text) noexcept
        : m_text(text.data()), m_length(int(text.size()))
    {
    }
    BrmStringViewT(const std::basic_string<T>& text) noexcept : m_text(text.data()), m_length(int(text.size())) {}

    // Access. The pointer of an empty view may be null.
    int GetLength() const noexcept { return m_length; }
    bool IsEmpty() const noexcept { return m_length == 0; }
    const T* GetString() const noexcept { return m_text; }
    T GetAt(int index) const noexcept { return m_text[index]; }
    T operator[](int index) const noexcept { return m_text[index]; }
    std::basic_string_view<T> StdView() const noexcept
    {
        return m_length ? std::basic_string_view<T>(m_text, std::size_t(m_length)) : std::basic_string_view<T>();
    }
    std::basic_string<T> StdString() const { return std::basic_string<T>(StdView()); }

    // View only.
    void SetString(const T* text, int length) noexcept { *this = BrmStringViewT(text, length); }
    void SetString(BrmStringViewT text) noexcept { *this = text; }
    void Empty() noexcept { *this = BrmStringViewT(); }
    // Shortens; never lengthens.
    void Truncate(int length) noexcept
    {
        if (length < 0)
            length = 0;
        if (length < m_length)
            m_length = length;
    }
    BrmStringT<T> ToString() const;

    // Comparison.
    int Compare(BrmStringViewT other, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Algo::Compare(Chars(), m_length, other.Chars(), other.m_length, cc);
    }
    int CompareNoCase(BrmStringViewT other) const noexcept { return Compare(other, CompareCase::IgnoreCase); }

    // Search: the index of the first match, or -1.
    int Find(BrmStringViewT needle, CompareCase cc = CompareCase::Exact) const noexcept { return Find(needle, 0, cc); }
    int Find(BrmStringViewT needle, int start, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Algo::Find(Chars(), m_length, needle.Chars(), needle.m_length, start, cc);
    }
    int Find(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return Find(ch, 0, cc); }
    int Find(T ch, int start, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Algo::Find(Chars(), m_length, ch, start, cc);
    }
    int FindOneOf(BrmStringViewT set, CompareCase cc = CompareCase::Exact) const noexcept { return FindOneOf(set, 0, cc); }
    int FindOneOf(BrmStringViewT set, int start, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Algo::FindOneOf(Chars(), m_length, set.Chars(), set.m_length, start, cc);
    }
    int ReverseFind(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return ReverseFind(ch, -1, cc); }
    int ReverseFind(T ch, int start, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Algo::ReverseFind(Chars(), m_length, ch, start, cc);
    }
    bool Contains(BrmStringViewT needle, CompareCase cc = CompareCase::Exact) const noexcept { return Find(needle, cc) >= 0; }
    bool Contains(T ch, CompareCase cc = CompareCase::Exact) const noexcept { return Find(ch, cc) >= 0; }

    // Prefix and suffix.
    bool StartsWith(BrmStringViewT prefix, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Left(prefix.m_length).Compare(prefix, cc) == 0;
    }
    bool EndsWith(BrmStringViewT suffix, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return Right(suffix.m_length).Compare(suffix, cc) == 0;
    }
    bool RemoveLeft(BrmStringViewT prefix, CompareCase cc = CompareCase::Exact) noexcept
    {
        if (!StartsWith(prefix, cc))
            return false;
        *this = Mid(prefix.m_length);
        return true;
    }
    bool RemoveRight(BrmStringViewT suffix, CompareCase cc = CompareCase::Exact) noexcept
    {
        if (!EndsWith(suffix, cc))
            return false;
        m_length -= suffix.m_length;
        return true;
    }

    // Cutting; the results point into this view's characters.
    BrmStringViewT Left(int count) const noexcept
    {
        if (count < 0)
            count = 0;
        return count >= m_length ? *this : BrmStringViewT(m_text, count);
    }
    BrmStringViewT Right(int count) const noexcept
    {
        if (count < 0)
            count = 0;
        return count >= m_length ? *this : BrmStringViewT(m_text + (m_length - count), count);
    }
    BrmStringViewT Mid(int first) const noexcept { return Mid(first, m_length); }
    BrmStringViewT Mid(int first, int count) const noexcept
    {
        if (first < 0)
            first = 0;
        if (count < 0)
            count = 0;
        if (first >= m_length)
            return BrmStringViewT(m_text ? m_text + m_length : nullptr, 0);
        if (count > m_length - first)
            count = m_length - first;
        return BrmStringViewT(m_text + first, count);
    }
    BrmStringViewT SpanIncluding(BrmStringViewT set, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return SpanOf(set, true, cc);
    }
    BrmStringViewT SpanExcluding(BrmStringViewT set, CompareCase cc = CompareCase::Exact) const noexcept
    {
        return SpanOf(set, false, cc);
    }
    // The next token at or behind pos; pos becomes -1 when there is none.
    BrmStringViewT Tokenize(BrmStringViewT delimiters, int& pos, CompareCase cc = CompareCase::Exact) const noexcept
    {
        const auto token = Algo::Tokenize(m_text, m_length, delimiters.m_text, delimiters.m_length, pos, cc);
        return token.found ? BrmStringViewT(m_text + token.start, token.length) : BrmStringViewT();
    }

    // Trimming narrows the view in place.
    BrmStringViewT& Trim() noexcept { return TrimRight().TrimLeft(); }
    BrmStringViewT& Trim(T ch, CompareCase cc = CompareCase::Exact) noexcept { return TrimRight(ch, cc).TrimLeft(ch, cc); }
    BrmStringViewT& Trim(BrmStringViewT set, CompareCase cc = CompareCase::Exact) noexcept
    {
        return TrimRight(set, cc).TrimLeft(set, cc);
    }
    BrmStringViewT& TrimLeft() noexcept { return TrimLeftBy(Algo::kWhiteSpace, 4, CompareCase::Exact); }
    BrmStringViewT& TrimLeft(T ch, CompareCase cc = CompareCase::Exact) noexcept { return TrimLeftBy(&ch, 1, cc); }
    BrmStringViewT& TrimLeft(BrmStringViewT set, CompareCase cc = CompareCase::Exact) noexcept
    {
        return TrimLeftBy(set.m_text, set.m_length, cc);
    }
    BrmStringViewT& TrimRight() noexcept { return TrimRightBy(Algo::kWhiteSpace, 4, CompareCase::Exact); }
    BrmStringViewT& TrimRight(T ch, CompareCase cc = CompareCase::Exact) noexcept { return TrimRightBy(&ch, 1, cc); }
    BrmStringViewT& TrimRight(BrmStringViewT set, CompareCase cc = CompareCase::Exact) noexcept
    {
        return TrimRightBy(set.m_text, set.m_length, cc);
    }

private:
    // An empty view's null pointer reads as a static empty text.
    const T* Chars() const noexcept
    {
        static constexpr T empty[1] = {0};
        return m_text ? m_text : empty;
    }
    BrmStringViewT SpanOf(BrmStringViewT set, bool including, CompareCase cc) const noexcept
    {
        if (set.m_length == 0)
            return BrmStringViewT();
        if (m_length == 0)
            return *this;
        return BrmStringViewT(m_text, Algo::Span(m_text, m_length, set.m_text, set.m_length, including, cc));
    }
    BrmStringViewT& TrimLeftBy(const T* set, int setLength, CompareCase cc) noexcept
    {
        const int n = Algo::TrimLeftCount(m_text, m_length, set, setLength, cc);
        if (n > 0) {
            m_text += n;
            m_length -= n;
        }
        return *this;
    }
    BrmStringViewT& TrimRightBy(const T* set, int setLength, CompareCase cc) noexcept
    {
        m_length -= Algo::TrimRightCount(m_text, m_length, set, setLength, cc);
        return *this;
    }

    const T* m_text = nullptr;
    int m_length = 0;
};

template <typename T>
inline bool operator==(BrmStringViewT<T> a, BrmStringViewT<T> b) noexcept
{
    return a.StdView() == b.StdView();
}
template <typename T>
inline bool operator<(BrmStringViewT<T> a, BrmStringViewT<T> b) noexcept
{
    return a.Compare(b) < 0;
}

using BrmStringViewW = BrmStringViewT<wchar_t>;
using BrmStringViewA = BrmStringViewT<char>;

extern template class BrmStringViewT<char>;
extern template class BrmStringViewT<wchar_t>;

}  // namespace BrmPlatform

template <typename T>
struct std::hash<BrmPlatform::BrmStringViewT<T>> {
    std::size_t operator()(BrmPlatform::BrmStringViewT<T> v) const noexcept
    {
        return std::hash<std::basic_string_view<T>>()(v.StdView());
    }
};
