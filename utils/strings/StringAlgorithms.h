// Searching, comparing and cutting on a range of characters (pointer and
// length). BrmStringT and BrmStringViewT both answer through these, so the
// string and the view operations of one name agree by construction.
#pragma once

#include "utils/strings/StringTraits.h"

namespace BrmPlatform {
namespace details {

template <typename T>
struct StringAlgorithms {
    using Traits = StringTraits<T>;

    // The characters that Trim() removes without an argument: exactly these four.
    static constexpr T kWhiteSpace[4] = {T(' '), T('\r'), T('\n'), T('\t')};

    // Over the shorter length; on a tie the difference of the lengths decides.
    static int Compare(const T* a, int aLength, const T* b, int bLength, CompareCase cc) noexcept
    {
        const int shorter = aLength < bLength ? aLength : bLength;
        if (shorter > 0) {
            const int r = cc == CompareCase::IgnoreCase ? Traits::CompareNNoCase(a, b, shorter)
                                                        : Traits::CompareN(a, b, shorter);
            if (r != 0)
                return r;
        }
        return aLength - bLength;
    }

    static int Find(const T* text, int length, const T* needle, int needleLength, int start, CompareCase cc) noexcept
    {
        if (needleLength <= 0)
            return 0;
        if (needleLength > length || start < 0 || start > length - needleLength)
            return -1;
        const T first = cc == CompareCase::IgnoreCase ? Traits::Lower(needle[0]) : needle[0];
        for (int i = start; i <= length - needleLength; ++i) {
            const T c = cc == CompareCase::IgnoreCase ? Traits::Lower(text[i]) : text[i];
            if (c != first)
                continue;
            if (needleLength == 1)
                return i;
            const int r = cc == CompareCase::IgnoreCase
                              ? Traits::CompareNNoCase(text + i + 1, needle + 1, needleLength - 1)
                              : Traits::CompareN(text + i + 1, needle + 1, needleLength - 1);
            if (r == 0)
                return i;
        }
        return -1;
    }

    static int Find(const T* text, int length, T ch, int start, CompareCase cc) noexcept
    {
        if (start < 0 || start >= length)
            return -1;
        for (int i = start; i < length; ++i)
            if (SameChar(text[i], ch, cc))
                return i;
        return -1;
    }

    static bool InSet(T c, const T* set, int setLength, CompareCase cc) noexcept
    {
        for (int i = 0; i < setLength; ++i)
            if (SameChar(c, set[i], cc))
                return true;
        return false;
    }

    static int FindOneOf(const T* text, int length, const T* set, int setLength, int start, CompareCase cc) noexcept
    {
        if (start < 0)
            start = 0;
        if (start >= length || setLength <= 0)
            return -1;
        for (int i = start; i < length; ++i)
            if (InSet(text[i], set, setLength, cc))
                return i;
        return -1;
    }

    // A start below zero or beyond the text means the last index.
    static int ReverseFind(const T* text, int length, T ch, int start, CompareCase cc) noexcept
    {
        if (length <= 0)
            return -1;
        if (start < 0 || start >= length)
            start = length - 1;
        for (int i = start; i >= 0; --i)
            if (SameChar(text[i], ch, cc))
                return i;
        return -1;
    }

    // Length of the longest prefix whose characters are (or are not) in set.
    static int Span(const T* text, int length, const T* set, int setLength, bool including, CompareCase cc) noexcept
    {
        int i = 0;
        while (i < length && InSet(text[i], set, setLength, cc) == including)
            ++i;
        return i;
    }

    static int TrimLeftCount(const T* text, int length, const T* set, int setLength, CompareCase cc) noexcept
    {
        return Span(text, length, set, setLength, true, cc);
    }

    static int TrimRightCount(const T* text, int length, const T* set, int setLength, CompareCase cc) noexcept
    {
        int n = 0;
        while (n < length && InSet(text[length - 1 - n], set, setLength, cc))
            ++n;
        return n;
    }

    // One token. found false means the empty result (null pointer, nil block).
    struct Token {
        bool found;
        int start;
        int length;
    };

    static Token Tokenize(const T* text, int length, const T* delims, int delimLength, int& pos, CompareCase cc) noexcept
    {
        if (pos < 0) {
            pos = -1;
            return {false, 0, 0};
        }
        if (delimLength <= 0) {
            // No delimiters: the rest of the text, pos left alone.
            if (pos >= length)
                return {false, 0, 0};
            return {true, pos, length - pos};
        }
        if (pos >= length) {
            pos = -1;
            return {false, 0, 0};
        }
        int i = pos;
        while (i < length && InSet(text[i], delims, delimLength, cc))
            ++i;
        if (i >= length) {
            pos = -1;
            return {false, 0, 0};
        }
        int e = i;
        while (e < length && !InSet(text[e], delims, delimLength, cc))
            ++e;
        pos = e + 1;
        return {true, i, e - i};
    }
};

}  // namespace details
}  // namespace BrmPlatform
