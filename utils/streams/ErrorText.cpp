// Message texts of error numbers, through FormatMessageW.
#include "utils/streams/ErrorText.h"

namespace BrmUtils {

namespace {

constexpr DWORD kFlags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
constexpr DWORD kUserLanguage = 1024;
constexpr DWORD kNeutralLanguage = 0;

bool TryFormat(DWORD error, DWORD language, BrmPlatform::BrmStringW& text) {
    wchar_t* block = nullptr;
    const DWORD length = FormatMessageW(kFlags, nullptr, error, language, reinterpret_cast<wchar_t*>(&block), 0,
                                        nullptr);
    if (length == 0 || !block) {
        if (block)
            LocalFree(block);
        return false;
    }
    text = BrmPlatform::BrmStringW(block, int(length));
    LocalFree(block);
    return true;
}

}  // namespace

BrmPlatform::BrmStringW FormatLastError(DWORD error) {
    BrmPlatform::BrmStringW text;
    // The user's language first; a system without that translation may
    // still have the neutral text.
    if (!TryFormat(error, kUserLanguage, text))
        TryFormat(error, kNeutralLanguage, text);
    return text;
}

}  // namespace BrmUtils
