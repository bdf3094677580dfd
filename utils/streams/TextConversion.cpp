// Code-page conversions over MultiByteToWideChar and WideCharToMultiByte.
// Each starts with a buffer as long as the input, which is enough for most
// text, and asks for the needed length only when that proves too small.
#include "utils/streams/TextConversion.h"

#include <climits>

#include "platform/LastError.h"

namespace BrmUtils {

BrmPlatform::BrmStringW ConvertToWide(const char* bytes, size_t length, UINT codePage) {
    BrmPlatform::BrmStringW result;
    if (!bytes || length == 0 || length > size_t(INT_MAX))
        return result;
    const int inLength = int(length);
    int outLength = inLength;
    int converted = MultiByteToWideChar(codePage, 0, bytes, inLength, result.GetBuffer(outLength), outLength);
    if (converted == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        outLength = MultiByteToWideChar(codePage, 0, bytes, inLength, nullptr, 0);
        if (outLength > 0)
            converted = MultiByteToWideChar(codePage, 0, bytes, inLength, result.GetBuffer(outLength), outLength);
    }
    result.ReleaseBuffer(converted > 0 ? converted : 0);
    return result;
}

BrmPlatform::BrmStringW ConvertToWide(const BrmPlatform::BrmStringA& bytes, UINT codePage) {
    return ConvertToWide(bytes.GetString(), size_t(bytes.GetLength()), codePage);
}

BrmPlatform::BrmStringA ConvertFromWide(const wchar_t* text, size_t length, UINT codePage) {
    BrmPlatform::BrmStringA result;
    if (!text || length == 0 || length > size_t(INT_MAX))
        return result;
    const int inLength = int(length);
    int outLength = inLength;
    int converted = WideCharToMultiByte(codePage, 0, text, inLength, result.GetBuffer(outLength), outLength, nullptr,
                                        nullptr);
    if (converted == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        outLength = WideCharToMultiByte(codePage, 0, text, inLength, nullptr, 0, nullptr, nullptr);
        if (outLength > 0)
            converted = WideCharToMultiByte(codePage, 0, text, inLength, result.GetBuffer(outLength), outLength,
                                            nullptr, nullptr);
    }
    result.ReleaseBuffer(converted > 0 ? converted : 0);
    return result;
}

BrmPlatform::BrmStringA ConvertFromWide(const BrmPlatform::BrmStringW& text, UINT codePage) {
    return ConvertFromWide(text.GetString(), size_t(text.GetLength()), codePage);
}

}  // namespace BrmUtils
