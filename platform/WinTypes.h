// Basic types and result codes of the Windows interfaces this library keeps
// as its vocabulary (HRESULT, GUID, FILETIME, ...), defined for Linux with the
// same sizes and values so that the readers read the same as they would there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

using BYTE = uint8_t;
using UCHAR = uint8_t;
using CHAR = char;
using WORD = uint16_t;
using USHORT = uint16_t;
using SHORT = int16_t;
using DWORD = uint32_t;
using UINT = uint32_t;
using ULONG = uint32_t;
using LONG = int32_t;
using INT = int32_t;
using BOOL = int32_t;
using LONGLONG = int64_t;
using ULONGLONG = uint64_t;
using FLOAT = float;
using DOUBLE = double;
using HRESULT = int32_t;
using SCODE = int32_t;
using VARTYPE = uint16_t;
using VARIANT_BOOL = int16_t;
using LCID = uint32_t;
using LANGID = uint16_t;
using PROPID = uint32_t;
using WCHAR = wchar_t;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using LPSTR = char*;
using LPCSTR = const char*;
using DATE = double;

constexpr BOOL TRUE = 1;
constexpr BOOL FALSE = 0;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

union LARGE_INTEGER {
    struct { DWORD LowPart; LONG HighPart; } u;
    LONGLONG QuadPart;
};
union ULARGE_INTEGER {
    struct { DWORD LowPart; DWORD HighPart; } u;
    ULONGLONG QuadPart;
};

inline LARGE_INTEGER MakeLargeInteger(int64_t v) { LARGE_INTEGER li; li.QuadPart = v; return li; }
inline ULARGE_INTEGER MakeULargeInteger(uint64_t v) { ULARGE_INTEGER li; li.QuadPart = v; return li; }

// 16 bytes in the layout of the Windows GUID structure: Data1..3 are stored
// in the machine's (little-endian) order, Data4 as bytes.
struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);
using IID = GUID;
using CLSID = GUID;
using FMTID = GUID;
using REFIID = const IID&;
using REFGUID = const GUID&;
using REFCLSID = const CLSID&;
using REFFMTID = const FMTID&;

inline bool operator==(const GUID& a, const GUID& b) { return std::memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool operator!=(const GUID& a, const GUID& b) { return !(a == b); }
inline bool IsEqualGUID(const GUID& a, const GUID& b) { return a == b; }
inline bool IsEqualIID(const IID& a, const IID& b) { return a == b; }
constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

// 100-nanosecond intervals since 1601-01-01 UTC.
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
inline uint64_t FileTimeToUInt64(const FILETIME& ft) {
    return (uint64_t(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
}
inline FILETIME UInt64ToFileTime(uint64_t v) {
    return FILETIME{DWORD(v & 0xFFFFFFFFu), DWORD(v >> 32)};
}

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};
using _SYSTEMTIME = SYSTEMTIME;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using tagRECT = RECT;

struct SIZE {
    LONG cx;
    LONG cy;
};

// Result codes, as numbers.
constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = HRESULT(0x80004001);
constexpr HRESULT E_NOINTERFACE = HRESULT(0x80004002);
constexpr HRESULT E_POINTER = HRESULT(0x80004003);
constexpr HRESULT E_ABORT = HRESULT(0x80004004);
constexpr HRESULT E_FAIL = HRESULT(0x80004005);
constexpr HRESULT E_UNEXPECTED = HRESULT(0x8000FFFF);
constexpr HRESULT E_ACCESSDENIED = HRESULT(0x80070005);
constexpr HRESULT E_HANDLE = HRESULT(0x80070006);
constexpr HRESULT E_OUTOFMEMORY = HRESULT(0x8007000E);
constexpr HRESULT E_INVALIDARG = HRESULT(0x80070057);
constexpr HRESULT STG_E_INVALIDFUNCTION = HRESULT(0x80030001);
constexpr HRESULT STG_E_FILENOTFOUND = HRESULT(0x80030002);
constexpr HRESULT STG_E_ACCESSDENIED = HRESULT(0x80030005);
constexpr HRESULT STG_E_INSUFFICIENTMEMORY = HRESULT(0x80030008);
constexpr HRESULT STG_E_INVALIDPOINTER = HRESULT(0x80030009);
constexpr HRESULT STG_E_WRITEFAULT = HRESULT(0x8003001D);
constexpr HRESULT STG_E_READFAULT = HRESULT(0x8003001E);
constexpr HRESULT STG_E_INVALIDPARAMETER = HRESULT(0x80030057);
constexpr HRESULT STG_E_MEDIUMFULL = HRESULT(0x80030070);
constexpr HRESULT STG_E_INVALIDHEADER = HRESULT(0x800300FB);
constexpr HRESULT TYPE_E_TYPEMISMATCH = HRESULT(0x80028CA0);
constexpr HRESULT DISP_E_TYPEMISMATCH = HRESULT(0x80020005);
constexpr HRESULT DISP_E_OVERFLOW = HRESULT(0x8002000A);
constexpr HRESULT DISP_E_BADVARTYPE = HRESULT(0x80020008);

constexpr bool SUCCEEDED(HRESULT hr) { return hr >= 0; }
constexpr bool FAILED(HRESULT hr) { return hr < 0; }

// Win32 error numbers used by the code (GetLastError values).
constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_HANDLE_EOF = 38;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_DISK_FULL = 112;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
constexpr DWORD ERROR_WRITE_FAULT = 29;
constexpr DWORD ERROR_READ_FAULT = 30;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_LOCK_VIOLATION = 33;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
constexpr DWORD ERROR_BUSY = 170;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
constexpr DWORD ERROR_DIRECTORY = 267;
constexpr DWORD ERROR_OPERATION_ABORTED = 995;
constexpr DWORD ERROR_INVALID_FLAGS = 1004;
constexpr DWORD ERROR_IO_DEVICE = 1117;
constexpr DWORD ERROR_UNABLE_TO_REMOVE_REPLACED = 1175;
constexpr DWORD ERROR_UNABLE_TO_MOVE_REPLACEMENT = 1176;
constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

constexpr HRESULT HRESULT_FROM_WIN32(DWORD err) {
    return err == 0 ? S_OK : HRESULT((err & 0x0000FFFFu) | (7u << 16) | 0x80000000u);
}
