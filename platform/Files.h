// File handles over POSIX descriptors, with the Windows calls the readers and
// writers use. ReplaceFileW is atomic: the replaced file is either the old
// one or the whole new one (fsync, then rename in the same directory).
#pragma once

#include <string>

#include "platform/WinTypes.h"

using HANDLE = intptr_t;  // a file descriptor; -1 is invalid
constexpr HANDLE INVALID_HANDLE_VALUE = -1;

constexpr DWORD GENERIC_READ = 0x80000000u;
constexpr DWORD GENERIC_WRITE = 0x40000000u;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD FILE_SHARE_DELETE = 4;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_ATTRIBUTE_TEMPORARY = 0x100;
constexpr DWORD FILE_FLAG_DELETE_ON_CLOSE = 0x04000000;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;

// Paths are wide; they are turned into the file system's bytes as UTF-8.
// A name byte that is no UTF-8 comes back as the lone surrogate U+DC00 + byte
// and goes out as that byte again, so every existing name round-trips.
std::string PathToNative(const wchar_t* path);
std::wstring PathFromNative(const char* path);

// Answers INVALID_HANDLE_VALUE on failure, with the last error set. Only
// regular files open (a directory, a pipe or a device answers
// ERROR_ACCESS_DENIED), so that no open can block. Share modes are ignored.
// CREATE_ALWAYS and OPEN_ALWAYS on an existing file succeed with
// ERROR_ALREADY_EXISTS as last error. FILE_FLAG_DELETE_ON_CLOSE removes the
// file when this handle is closed with CloseHandle.
HANDLE CreateFileW(const wchar_t* path, DWORD access, DWORD share, void* security, DWORD disposition, DWORD flags,
                   HANDLE templateFile);
BOOL CloseHandle(HANDLE h);
BOOL ReadFile(HANDLE h, void* buffer, DWORD toRead, DWORD* read, void* overlapped);
BOOL WriteFile(HANDLE h, const void* buffer, DWORD toWrite, DWORD* written, void* overlapped);
// Read and write at an offset, leaving the handle's own offset alone: a
// stream that keeps its position itself needs no seek before each call.
// ReadFileAt stops at the first short read, the end of a regular file.
BOOL ReadFileAt(HANDLE h, void* buffer, DWORD toRead, uint64_t offset, DWORD* read);
BOOL WriteFileAt(HANDLE h, const void* buffer, DWORD toWrite, uint64_t offset, DWORD* written);
BOOL SetFilePointerEx(HANDLE h, LARGE_INTEGER distance, LARGE_INTEGER* newPosition, DWORD method);
BOOL SetEndOfFile(HANDLE h);
BOOL FlushFileBuffers(HANDLE h);
BOOL GetFileSizeEx(HANDLE h, LARGE_INTEGER* size);
BOOL GetFileTime(HANDLE h, FILETIME* creation, FILETIME* access, FILETIME* write);
BOOL DuplicateHandle(HANDLE source, HANDLE* target);
BOOL DeleteFileW(const wchar_t* path);
DWORD GetFileAttributesW(const wchar_t* path);  // INVALID_FILE_ATTRIBUTES if absent
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFFu;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;

// Replaces `replaced` by `replacement` atomically; `backup` is ignored. Both
// must exist. The replacement is flushed, takes the replaced file's
// permissions and is renamed over it (over the target of a symbolic link);
// on another file system it is first copied beside the replaced file. At
// every moment the replaced path holds the old or the whole new content.
BOOL ReplaceFileW(const wchar_t* replaced, const wchar_t* replacement, const wchar_t* backup, DWORD flags,
                  void* exclude, void* reserved);
// Fails with ERROR_ALREADY_EXISTS when `to` exists; copies across file systems.
BOOL MoveFileW(const wchar_t* from, const wchar_t* to);

// The temporary folder ($TMPDIR or /tmp), with a trailing slash.
std::wstring GetTempPathString();

// The path of the shared object (or program) that holds `address`.
std::wstring GetModulePathOf(const void* address);
