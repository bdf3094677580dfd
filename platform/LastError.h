// Thread-local last error, as GetLastError/SetLastError keep it, and the
// message text of an error number.
#pragma once

#include "platform/WinTypes.h"

DWORD GetLastError();
void SetLastError(DWORD error);
// Maps an errno value to the nearest Win32 error number and stores it. An
// errno with no Win32 counterpart is kept as ERROR_FROM_ERRNO_BASE | errno
// (an application-defined code), so that its message text is not lost.
DWORD SetLastErrorFromErrno(int err);
DWORD Win32ErrorFromErrno(int err);
constexpr DWORD ERROR_FROM_ERRNO_BASE = 0x20000000u;

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
// Only FROM_SYSTEM texts are known: the C library's English text of the
// errno behind the number, without a line end; an HRESULT of facility
// Win32 is taken as its error number. Unknown numbers fail with
// ERROR_MR_MID_NOT_FOUND. with ALLOCATE_BUFFER, *(wchar_t**)buffer
// receives a block to free with LocalFree. Answers the characters written.
DWORD FormatMessageW(DWORD flags, const void* source, DWORD messageId, DWORD languageId, wchar_t* buffer, DWORD size,
                     void* arguments);
void* LocalFree(void* mem);
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
