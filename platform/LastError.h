// Thread-local last error, as GetLastError/SetLastError keep it, and the
// message text of an error number.
#pragma once

#include "platform/WinTypes.h"

DWORD GetLastError();
void SetLastError(DWORD error);
// Maps an errno value to the nearest Win32 error number and stores it.
DWORD SetLastErrorFromErrno(int err);

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
// Only FROM_SYSTEM texts are known; with ALLOCATE_BUFFER, *(wchar_t**)buffer
// receives a block to free with LocalFree. Answers the characters written.
DWORD FormatMessageW(DWORD flags, const void* source, DWORD messageId, DWORD languageId, wchar_t* buffer, DWORD size,
                     void* arguments);
void* LocalFree(void* mem);
