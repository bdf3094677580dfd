// BrmStringT editing in place: replacing, removing, case, reversal and
// trimming. Kept apart from BrmString.cpp, which has the blocks and the rest.
#include "utils/strings/BrmString.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

namespace BrmPlatform {

using details::CheckedSum;
using details::CopyChars;
using details::MoveChars;

template <typename T>
int BrmStringT<T>::Replace(ViewT oldText, ViewT newText, CompareCase cc)
{
    using Algo = details::StringAlgorithms<T>;
    const int length = GetLength();
    const int oldLength = oldText.GetLength();
    const int newLength = newText.GetLength();
    if (length == 0 || oldLength == 0)
        return 0;
    int count = 0;
    for (int pos = Find(oldText, 0, cc); pos >= 0; pos = Find(oldText, pos + oldLength, cc))
        ++count;
    if (count == 0)
        return 0;
    const BrmStringT keep = Overlaps(oldText.GetString()) || Overlaps(newText.GetString()) ? *this : BrmStringT();
    const int finalLength = CheckedSum(length, (long long)count * (newLength - oldLength));
    T* buffer = PrepareForWrite(std::max(finalLength, length));
    int current = length;
    int pos = 0;
    for (int done = 0; done < count; ++done) {
        pos = Algo::Find(buffer, current, oldText.GetString(), oldLength, pos, cc);
        if (pos < 0)
            break;
        MoveChars(buffer + pos + newLength, buffer + pos + oldLength, current - pos - oldLength);
        CopyChars(buffer + pos, newText.GetString(), newLength);
        current += newLength - oldLength;
        pos += newLength;
    }
    SetLength(current);
    return count;
}

template <typename T>
int BrmStringT<T>::Replace(T oldCh, T newCh, CompareCase cc)
{
    const int length = GetLength();
    int pos = Find(oldCh, 0, cc);
    if (pos < 0)
        return 0;
    T* buffer = PrepareForWrite(length);
    int count = 0;
    for (; pos < length; ++pos) {
        if (details::SameChar(buffer[pos], oldCh, cc)) {
            buffer[pos] = newCh;
            ++count;
        }
    }
    return count;
}

template <typename T>
int BrmStringT<T>::Remove(T ch, CompareCase cc)
{
    const int length = GetLength();
    int pos = Find(ch, 0, cc);
    if (pos < 0)
        return 0;
    T* buffer = PrepareForWrite(length);
    int out = pos;
    for (int in = pos; in < length; ++in)
        if (!details::SameChar(buffer[in], ch, cc))
            buffer[out++] = buffer[in];
    SetLength(out);
    return length - out;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::MakeLower()
{
    const int length = GetLength();
    if (length > 0) {
        T* buffer = PrepareForWrite(length);
        std::transform(buffer, buffer + length, buffer, details::StringTraits<T>::Lower);
    }
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::MakeUpper()
{
    const int length = GetLength();
    if (length > 0) {
        T* buffer = PrepareForWrite(length);
        std::transform(buffer, buffer + length, buffer, details::StringTraits<T>::Upper);
    }
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::MakeReverse()
{
    const int length = GetLength();
    if (length > 1) {
        T* buffer = PrepareForWrite(length);
        std::reverse(buffer, buffer + length);
    }
    return *this;
}

// ---- trimming -----------------------------------------------------------------------

template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimBy(const T* set, int setLength, CompareCase cc, bool left, bool right)
{
    using Algo = details::StringAlgorithms<T>;
    const int length = GetLength();
    T* buffer = PrepareForWrite(length);
    const int tail = right ? Algo::TrimRightCount(buffer, length, set, setLength, cc) : 0;
    const int head = left ? Algo::TrimLeftCount(buffer, length - tail, set, setLength, cc) : 0;
    MoveChars(buffer, buffer + head, length - tail - head);
    SetLength(length - tail - head);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::Trim()
{
    return TrimBy(details::StringAlgorithms<T>::kWhiteSpace, 4, CompareCase::Exact, true, true);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::Trim(T ch, CompareCase cc)
{
    return TrimBy(&ch, 1, cc, true, true);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::Trim(ViewT set, CompareCase cc)
{
    const BrmStringT keep = Overlaps(set.GetString()) ? *this : BrmStringT();
    return TrimBy(set.GetString(), set.GetLength(), cc, true, true);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimLeft()
{
    return TrimBy(details::StringAlgorithms<T>::kWhiteSpace, 4, CompareCase::Exact, true, false);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimLeft(T ch, CompareCase cc)
{
    return TrimBy(&ch, 1, cc, true, false);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimLeft(ViewT set, CompareCase cc)
{
    const BrmStringT keep = Overlaps(set.GetString()) ? *this : BrmStringT();
    return TrimBy(set.GetString(), set.GetLength(), cc, true, false);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimRight()
{
    return TrimBy(details::StringAlgorithms<T>::kWhiteSpace, 4, CompareCase::Exact, false, true);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimRight(T ch, CompareCase cc)
{
    return TrimBy(&ch, 1, cc, false, true);
}
template <typename T>
BrmStringT<T>& BrmStringT<T>::TrimRight(ViewT set, CompareCase cc)
{
    const BrmStringT keep = Overlaps(set.GetString()) ? *this : BrmStringT();
    return TrimBy(set.GetString(), set.GetLength(), cc, false, true);
}
#define BRM_INSTANTIATE_EDIT(T)                                                                        \
    template int BrmStringT<T>::Replace(ViewT, ViewT, CompareCase);                                    \
    template int BrmStringT<T>::Replace(T, T, CompareCase);                                            \
    template int BrmStringT<T>::Remove(T, CompareCase);                                                \
    template BrmStringT<T>& BrmStringT<T>::MakeLower();                                                \
    template BrmStringT<T>& BrmStringT<T>::MakeUpper();                                                \
    template BrmStringT<T>& BrmStringT<T>::MakeReverse();                                              \
    template BrmStringT<T>& BrmStringT<T>::TrimBy(const T*, int, CompareCase, bool, bool);             \
    template BrmStringT<T>& BrmStringT<T>::Trim();                                                     \
    template BrmStringT<T>& BrmStringT<T>::Trim(T, CompareCase);                                       \
    template BrmStringT<T>& BrmStringT<T>::Trim(ViewT, CompareCase);                                   \
    template BrmStringT<T>& BrmStringT<T>::TrimLeft();                                                 \
    template BrmStringT<T>& BrmStringT<T>::TrimLeft(T, CompareCase);                                   \
    template BrmStringT<T>& BrmStringT<T>::TrimLeft(ViewT, CompareCase);                               \
    template BrmStringT<T>& BrmStringT<T>::TrimRight();                                                \
    template BrmStringT<T>& BrmStringT<T>::TrimRight(T, CompareCase);                                  \
    template BrmStringT<T>& BrmStringT<T>::TrimRight(ViewT, CompareCase);

BRM_INSTANTIATE_EDIT(char)
BRM_INSTANTIATE_EDIT(wchar_t)
#undef BRM_INSTANTIATE_EDIT

}  // namespace BrmPlatform
