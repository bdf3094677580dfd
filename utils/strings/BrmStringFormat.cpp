// BrmStringT printing: Format, AppendFormat and FormatMessage with their
// va_list forms. The text is printed into a scratch buffer first, so an
// argument may be the string itself.
#include "utils/MessageFormat.h"
#include "utils/strings/BrmString.h"
#include "utils/strings/PrintfFormat.h"

namespace BrmPlatform {

template <typename T>
void BrmStringT<T>::FormatV(const T* format, va_list args)
{
    details::PrintBuffer<T> buffer;
    const int count = details::PrintV(buffer, format, args);
    if (count < 1)
        Empty();
    else
        SetString(buffer.Data(), count);
}

template <typename T>
void BrmStringT<T>::AppendFormatV(const T* format, va_list args)
{
    details::PrintBuffer<T> buffer;
    const int count = details::PrintV(buffer, format, args);
    if (count >= 1)
        Append(buffer.Data(), count);
}

template <typename T>
void BrmStringT<T>::FormatMessageV(const T* format, va_list args)
{
    const std::basic_string<T> converted = BrmUtils::ConvertMessageFormat(format);
    FormatV(converted.c_str(), args);
}

// va_end must run in the function that ran va_start, also when the heap fails.
#define BRM_FORWARD_VARIADIC(Name, Target)                   \
    template <typename T>                                    \
    void BrmStringT<T>::Name(const T* format, ...)           \
    {                                                        \
        va_list args;                                        \
        va_start(args, format);                              \
        try {                                                \
            Target(format, args);                            \
        } catch (...) {                                      \
            va_end(args);                                    \
            throw;                                           \
        }                                                    \
        va_end(args);                                        \
    }

BRM_FORWARD_VARIADIC(FormatInternal, FormatV)
BRM_FORWARD_VARIADIC(AppendFormatInternal, AppendFormatV)
BRM_FORWARD_VARIADIC(FormatMessageInternal, FormatMessageV)
#undef BRM_FORWARD_VARIADIC

#define BRM_INSTANTIATE_FORMAT(T)                                       \
    template void BrmStringT<T>::FormatV(const T*, va_list);            \
    template void BrmStringT<T>::AppendFormatV(const T*, va_list);      \
    template void BrmStringT<T>::FormatMessageV(const T*, va_list);     \
    template void BrmStringT<T>::FormatInternal(const T*, ...);         \
    template void BrmStringT<T>::AppendFormatInternal(const T*, ...);   \
    template void BrmStringT<T>::FormatMessageInternal(const T*, ...);

BRM_INSTANTIATE_FORMAT(char)
BRM_INSTANTIATE_FORMAT(wchar_t)
#undef BRM_INSTANTIATE_FORMAT

}  // namespace BrmPlatform
