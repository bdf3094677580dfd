// BrmStringT: blocks, copy on write, construction, buffer access and editing.
// Editing in place is in BrmStringEdit.cpp, printing in BrmStringFormat.cpp.
#include "utils/strings/BrmString.h"

#include "platform/CodePage.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <new>

namespace BrmPlatform {

using details::CheckedSum;
using details::CopyChars;
using details::MoveChars;
using details::NewStringData;
using details::StringDataHeader;
using details::StringManager;

namespace {

// Converts the other width into this one with CP_ACP; answers the length written.
int ConvertLength(const char* src, int length)
{
    return MultiByteToWideChar(CP_ACP, 0, src, length, nullptr, 0);
}
int ConvertLength(const wchar_t* src, int length)
{
    return WideCharToMultiByte(CP_ACP, 0, src, length, nullptr, 0, nullptr, nullptr);
}
int Convert(const char* src, int length, wchar_t* dst, int dstLength)
{
    return MultiByteToWideChar(CP_ACP, 0, src, length, dst, dstLength);
}
int Convert(const wchar_t* src, int length, char* dst, int dstLength)
{
    return WideCharToMultiByte(CP_ACP, 0, src, length, dst, dstLength, nullptr, nullptr);
}

// Frees the text a VARIANT change produced, however the assignment ends.
struct VariantGuard {
    VARIANT value;
    VariantGuard() { VariantInit(&value); }
    ~VariantGuard() { VariantClear(&value); }
    VariantGuard(const VariantGuard&) = delete;
    VariantGuard& operator=(const VariantGuard&) = delete;
};

}  // namespace

// ---- blocks ---------------------------------------------------------------

template <typename T>
T* BrmStringT<T>::NilData() noexcept
{
    return StringManager::Instance().GetNilString()->template Data<T>();
}

template <typename T>
void BrmStringT<T>::Attach(StringDataHeader* header) noexcept
{
    StringDataHeader* old = Header();
    m_data = header->Data<T>();
    old->Release();
}

template <typename T>
T* BrmStringT<T>::PrepareForWrite(int newLength)
{
    if (newLength < 0)
        newLength = 0;
    StringDataHeader* header = Header();
    const bool shared = header->IsShared();
    if (!shared && newLength <= header->allocLength)
        return m_data;
    int allocLength;
    if (shared) {
        allocLength = std::max(newLength, header->length);
    } else {
        const long long old = header->allocLength;
        const long long grow = old < 0x40000001 ? old + old / 2 : std::min<long long>(old + 0x100000, INT_MAX);
        allocLength = std::max<long long>(newLength, grow);
    }
    Attach(NewStringData<T>(allocLength, std::min(header->length, allocLength), m_data));
    return m_data;
}

template <typename T>
void BrmStringT<T>::SetLength(int length) noexcept
{
    Header()->length = length;
    m_data[length] = 0;
}

template <typename T>
bool BrmStringT<T>::Overlaps(const T* text) const noexcept
{
    std::less_equal<const T*> le;
    return le(m_data, text) && le(text, m_data + GetAllocLength());
}

// ---- construction and assignment --------------------------------------------

template <typename T>
BrmStringT<T>::BrmStringT() noexcept : m_data(NilData())
{
}

template <typename T>
BrmStringT<T>::BrmStringT(const BrmStringT& other) noexcept
{
    StringDataHeader* header = other.Header();
    if (header->manager == &StringManager::Instance()) {
        header->AddRef();
        m_data = other.m_data;
    } else {
        m_data = NewStringData<T>(header->length, header->length, other.m_data)->template Data<T>();
    }
}

template <typename T>
BrmStringT<T>::BrmStringT(BrmStringT&& other) noexcept : m_data(other.m_data)
{
    other.m_data = NilData();
}

template <typename T>
BrmStringT<T>::BrmStringT(const T* text) : BrmStringT(text, details::StringTraits<T>::Length(text))
{
}

template <typename T>
BrmStringT<T>::BrmStringT(const T* text, int length)
    : m_data(text && length > 0 ? NewStringData<T>(length, length, text)->template Data<T>() : NilData())
{
}

template <typename T>
BrmStringT<T>::BrmStringT(T ch, int count) : m_data(NilData())
{
    if (count < 1)
        return;
    T* buffer = PrepareForWrite(count);
    std::fill(buffer, buffer + count, ch);
    SetLength(count);
}

template <typename T>
BrmStringT<T>::BrmStringT(ViewT view) : BrmStringT(view.GetString(), view.GetLength())
{
}

template <typename T>
BrmStringT<T>::BrmStringT(const std::basic_string<T>& text) : BrmStringT(text.data(), int(text.size()))
{
}

template <typename T>
BrmStringT<T>::BrmStringT(std::basic_string_view<T> text) : BrmStringT(text.data(), int(text.size()))
{
}

template <typename T>
BrmStringT<T>::BrmStringT(const BrmStringT<YCHAR>& other) : m_data(NilData())
{
    *this = other;
}

template <typename T>
BrmStringT<T>::BrmStringT(const VARIANT& value) : m_data(NilData())
{
    AssignVariant(value, false);
}

template <typename T>
BrmStringT<T>::~BrmStringT()
{
    Header()->Release();
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(const BrmStringT& other) noexcept
{
    if (m_data != other.m_data) {
        BrmStringT copy(other);
        std::swap(m_data, copy.m_data);
    }
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(BrmStringT&& other) noexcept
{
    if (this != &other) {
        Header()->Release();
        m_data = other.m_data;
        other.m_data = NilData();
    }
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(const T* text)
{
    SetString(text);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(ViewT view)
{
    SetString(view.GetString(), view.GetLength());
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(T ch)
{
    SetString(&ch, 1);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(const std::basic_string<T>& text)
{
    SetString(text.data(), int(text.size()));
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(const BrmStringT<YCHAR>& other)
{
    const int length = other.GetLength();
    const int needed = length > 0 ? ConvertLength(other.GetString(), length) : 0;
    if (needed <= 0) {
        Empty();
        return *this;
    }
    BrmStringT converted;
    T* buffer = converted.PrepareForWrite(needed);
    const int written = Convert(other.GetString(), length, buffer, needed);
    converted.SetLength(written > 0 ? written : 0);
    *this = std::move(converted);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator=(const VARIANT& value)
{
    AssignVariant(value, false);
    return *this;
}

template <typename T>
void BrmStringT<T>::AssignWide(const wchar_t* text, int length)
{
    if constexpr (std::is_same_v<T, wchar_t>)
        SetString(text, length);
    else
        *this = BrmStringT<wchar_t>(text, length);
}

template <typename T>
bool BrmStringT<T>::AssignVariant(const VARIANT& value, bool append)
{
    VariantGuard text;
    if (FAILED(VariantChangeType(&text.value, &value, 0, VT_BSTR)) || text.value.vt != VT_BSTR)
        return false;
    const BSTR bstr = text.value.bstrVal;
    const int length = bstr ? int(SysStringLen(bstr)) : 0;
    if (append) {
        if constexpr (std::is_same_v<T, wchar_t>)
            Append(bstr, length);
        else
            *this += BrmStringT(BrmStringT<wchar_t>(bstr, length));
    } else {
        AssignWide(bstr, length);
    }
    return true;
}

// ---- access and buffer --------------------------------------------------------

template <typename T>
void BrmStringT<T>::SetAt(int index, T ch)
{
    PrepareForWrite(GetLength())[index] = ch;
}

template <typename T>
T* BrmStringT<T>::GetBuffer()
{
    return PrepareForWrite(GetLength());
}

template <typename T>
T* BrmStringT<T>::GetBuffer(int minLength)
{
    return PrepareForWrite(minLength);
}

template <typename T>
T* BrmStringT<T>::GetBufferSetLength(int length)
{
    if (length < 0)
        length = 0;
    T* buffer = PrepareForWrite(length);
    SetLength(length);
    return buffer;
}

template <typename T>
void BrmStringT<T>::ReleaseBuffer(int newLength)
{
    if (newLength < 0) {
        const int alloc = GetAllocLength();
        newLength = 0;
        while (newLength < alloc && m_data[newLength] != 0)
            ++newLength;
    }
    ReleaseBufferSetLength(newLength);
}

template <typename T>
void BrmStringT<T>::ReleaseBufferSetLength(int newLength)
{
    if (newLength < 0)
        newLength = 0;
    PrepareForWrite(newLength);
    SetLength(newLength);
}

template <typename T>
void BrmStringT<T>::Preallocate(int length)
{
    PrepareForWrite(length);
}

template <typename T>
void BrmStringT<T>::FreeExtra()
{
    const int length = GetLength();
    if (GetAllocLength() != length)
        Attach(NewStringData<T>(length, length, m_data));
}

template <typename T>
void BrmStringT<T>::Truncate(int newLength)
{
    ReleaseBufferSetLength(newLength);
}

template <typename T>
void BrmStringT<T>::Empty() noexcept
{
    Header()->Release();
    m_data = NilData();
}

// ---- comparison and cutting -----------------------------------------------------

template <typename T>
int BrmStringT<T>::Compare(ViewT other, CompareCase cc) const noexcept
{
    return details::StringAlgorithms<T>::Compare(m_data, GetLength(), other.GetString(), other.GetLength(), cc);
}

template <typename T>
int BrmStringT<T>::Collate(const T* other) const noexcept
{
    using Traits = details::StringTraits<T>;
    static constexpr T empty[1] = {0};
    const T* a = m_data;
    const T* b = other ? other : empty;
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    const int ca = Traits::Code(*a), cb = Traits::Code(*b);
    return (ca > cb) - (ca < cb);
}

template <typename T>
int BrmStringT<T>::CollateNoCase(const T* other) const noexcept
{
    static constexpr T empty[1] = {0};
    return details::StringTraits<T>::CollateNoCase(m_data, other ? other : empty);
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Left(int count) const
{
    return Mid(0, count);
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Right(int count) const
{
    const int length = GetLength();
    if (count < 0)
        count = 0;
    return count >= length ? *this : Mid(length - count, count);
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Mid(int first) const
{
    return Mid(first, GetLength());
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Mid(int first, int count) const
{
    const int length = GetLength();
    if (first < 0)
        first = 0;
    if (count < 0)
        count = 0;
    if (first >= length || count == 0)
        return BrmStringT();
    if (count > length - first)
        count = length - first;
    if (first == 0 && count == length)
        return *this;
    return BrmStringT(m_data + first, count);
}

template <typename T>
BrmStringT<T> BrmStringT<T>::SpanIncluding(ViewT set, CompareCase cc) const
{
    const ViewT span = View().SpanIncluding(set, cc);
    return span.GetString() ? Left(span.GetLength()) : BrmStringT();
}

template <typename T>
BrmStringT<T> BrmStringT<T>::SpanExcluding(ViewT set, CompareCase cc) const
{
    const ViewT span = View().SpanExcluding(set, cc);
    return span.GetString() ? Left(span.GetLength()) : BrmStringT();
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Tokenize(ViewT delimiters, int& pos, CompareCase cc) const
{
    const auto token = details::StringAlgorithms<T>::Tokenize(m_data, GetLength(), delimiters.GetString(),
                                                              delimiters.GetLength(), pos, cc);
    return token.found ? Mid(token.start, token.length) : BrmStringT();
}

template <typename T>
BrmStringT<T> BrmStringT<T>::Concat(ViewT a, ViewT b)
{
    const int length = CheckedSum(a.GetLength(), b.GetLength());
    if (length == 0)
        return BrmStringT();
    BrmStringT result(NewStringData<T>(length, a.GetLength(), a.GetString()), AttachTag{});
    CopyChars(result.m_data + a.GetLength(), b.GetString(), b.GetLength());
    result.SetLength(length);
    return result;
}

// ---- editing ----------------------------------------------------------------------

template <typename T>
void BrmStringT<T>::Append(ViewT text)
{
    Append(text.GetString(), text.GetLength());
}

template <typename T>
void BrmStringT<T>::Append(const T* text, int length)
{
    if (!text || length <= 0)
        return;
    // Text from this very block stays alive in the kept copy while the
    // block is replaced.
    const BrmStringT keep = Overlaps(text) ? *this : BrmStringT();
    const int old = GetLength();
    T* buffer = PrepareForWrite(CheckedSum(old, length));
    CopyChars(buffer + old, text, length);
    SetLength(old + length);
}

template <typename T>
void BrmStringT<T>::AppendChar(T ch)
{
    const int old = GetLength();
    T* buffer = PrepareForWrite(CheckedSum(old, 1));
    buffer[old] = ch;
    SetLength(old + 1);
}

template <typename T>
void BrmStringT<T>::SetString(const T* text)
{
    SetString(text, details::StringTraits<T>::Length(text));
}

template <typename T>
void BrmStringT<T>::SetString(const T* text, int length)
{
    if (!text || length <= 0) {
        Empty();
        return;
    }
    if (Header()->IsShared() || length > GetAllocLength()) {
        Attach(NewStringData<T>(length, length, text));
        return;
    }
    MoveChars(m_data, text, length);
    SetLength(length);
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator+=(const BrmStringT& text)
{
    if (IsEmpty() && text.Header()->manager == &StringManager::Instance())
        return *this = text;
    Append(text.m_data, text.GetLength());
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator+=(const T* text)
{
    Append(ViewT(text));
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator+=(ViewT text)
{
    Append(text);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator+=(T ch)
{
    AppendChar(ch);
    return *this;
}

template <typename T>
BrmStringT<T>& BrmStringT<T>::operator+=(const VARIANT& value)
{
    AssignVariant(value, true);
    return *this;
}

template <typename T>
int BrmStringT<T>::Insert(int index, ViewT text)
{
    const int old = GetLength();
    const int count = text.GetLength();
    if (count == 0)
        return old;
    index = std::clamp(index, 0, old);
    const BrmStringT keep = Overlaps(text.GetString()) ? *this : BrmStringT();
    T* buffer = PrepareForWrite(CheckedSum(old, count));
    MoveChars(buffer + index + count, buffer + index, old - index);
    CopyChars(buffer + index, text.GetString(), count);
    SetLength(old + count);
    return old + count;
}

template <typename T>
int BrmStringT<T>::Insert(int index, T ch)
{
    return Insert(index, ViewT(&ch, 1));
}

template <typename T>
int BrmStringT<T>::Delete(int index, int count)
{
    const int length = GetLength();
    if (index < 0)
        index = 0;
    if (index >= length || count < 1)
        return length;
    if (count > length - index)
        count = length - index;
    T* buffer = PrepareForWrite(length);
    MoveChars(buffer + index, buffer + index + count, length - index - count);
    SetLength(length - count);
    return length - count;
}

template <typename T>
int BrmStringT<T>::DeleteLeft(int count)
{
    count = std::clamp(count, 0, GetLength());
    Delete(0, count);
    return count;
}

template <typename T>
int BrmStringT<T>::DeleteRight(int count)
{
    count = std::clamp(count, 0, GetLength());
    Delete(GetLength() - count, count);
    return count;
}

template <typename T>
bool BrmStringT<T>::RemoveLeft(ViewT prefix, CompareCase cc)
{
    if (!StartsWith(prefix, cc))
        return false;
    Delete(0, prefix.GetLength());
    return true;
}

template <typename T>
bool BrmStringT<T>::RemoveRight(ViewT suffix, CompareCase cc)
{
    if (!EndsWith(suffix, cc))
        return false;
    DeleteRight(suffix.GetLength());
    return true;
}


// ---- BSTR -------------------------------------------------------------------------------

template <typename T>
BSTR BrmStringT<T>::AllocSysString() const
{
    if constexpr (std::is_same_v<T, wchar_t>) {
        return SysAllocStringLen(m_data, UINT(GetLength()));
    } else {
        const BrmStringT<wchar_t> wide(*this);
        return SysAllocStringLen(wide.GetString(), UINT(wide.GetLength()));
    }
}

template <typename T>
BSTR BrmStringT<T>::SetSysString(BSTR* bstr) const
{
    if constexpr (std::is_same_v<T, wchar_t>) {
        SysReAllocStringLen(bstr, m_data, UINT(GetLength()));
    } else {
        const BrmStringT<wchar_t> wide(*this);
        SysReAllocStringLen(bstr, wide.GetString(), UINT(wide.GetLength()));
    }
    return *bstr;
}

template class BrmStringT<char>;
template class BrmStringT<wchar_t>;

}  // namespace BrmPlatform
