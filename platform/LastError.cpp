// The thread's last error, the mapping from errno to Win32 error numbers,
// and FormatMessageW's system texts, which are the C library's English
// texts of the errno behind an error number.
#include "platform/LastError.h"

#include <locale.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "platform/Unicode.h"

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

// Pairs in both directions: the first row of an error number is the errno its
// text is taken from.
struct ErrnoMapping {
    int err;
    DWORD win32;
};
constexpr ErrnoMapping kErrnoMap[] = {
    {0, ERROR_SUCCESS},
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EEXIST, ERROR_FILE_EXISTS},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EAGAIN, ERROR_LOCK_VIOLATION},
    {ENOSYS, ERROR_NOT_SUPPORTED},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EIO, ERROR_IO_DEVICE},
    {ECANCELED, ERROR_OPERATION_ABORTED},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {ESPIPE, ERROR_NEGATIVE_SEEK},
};

// Error numbers the code sets itself that have no errno of their own.
struct OwnText {
    DWORD win32;
    const char* text;
};
constexpr OwnText kOwnTexts[] = {
    {ERROR_INSUFFICIENT_BUFFER, "The data area passed to a system call is too small"},
    {ERROR_NO_UNICODE_TRANSLATION, "No mapping for the Unicode character exists in the target code page"},
    {ERROR_HANDLE_EOF, "Reached the end of the file"},
    {ERROR_ALREADY_EXISTS, "Cannot create a file when that file already exists"},
    {ERROR_DIRECTORY, "The directory name is invalid"},
    {ERROR_UNABLE_TO_REMOVE_REPLACED, "Unable to remove the file to be replaced"},
    {ERROR_UNABLE_TO_MOVE_REPLACEMENT, "Unable to move the replacement file to the file to be replaced"},
    {ERROR_GEN_FAILURE, "A device attached to the system is not functioning"},
    {ERROR_BUSY, "The requested resource is in use"},
    {ERROR_READ_FAULT, "The system cannot read from the specified device"},
    {ERROR_WRITE_FAULT, "The system cannot write to the specified device"},
};

std::string EnglishErrnoText(int err) {
    static locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(0));
    const char* text = cLocale ? strerror_l(err, cLocale) : std::strerror(err);
    return text ? text : "";
}

bool MessageText(DWORD id, std::string& text) {
    if ((id & 0xFFFF0000u) == 0x80070000u) id &= 0xFFFFu;  // HRESULT of facility Win32
    if (id & ERROR_FROM_ERRNO_BASE) {
        text = EnglishErrnoText(int(id & ~ERROR_FROM_ERRNO_BASE));
        return true;
    }
    for (const auto& own : kOwnTexts) {
        if (own.win32 == id) {
            text = own.text;
            return true;
        }
    }
    for (const auto& mapping : kErrnoMap) {
        if (mapping.win32 == id) {
            text = EnglishErrnoText(mapping.err);
            return true;
        }
    }
    return false;
}

}  // namespace

DWORD GetLastError() { return t_lastError; }

void SetLastError(DWORD error) { t_lastError = error; }

DWORD Win32ErrorFromErrno(int err) {
    for (const auto& mapping : kErrnoMap) {
        if (mapping.err == err) return mapping.win32;
    }
    return ERROR_FROM_ERRNO_BASE | DWORD(err);
}

DWORD SetLastErrorFromErrno(int err) {
    DWORD error = Win32ErrorFromErrno(err);
    SetLastError(error);
    return error;
}

DWORD FormatMessageW(DWORD flags, const void* /*source*/, DWORD messageId, DWORD /*languageId*/, wchar_t* buffer,
                     DWORD size, void* /*arguments*/) {
    if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM) || !buffer) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::string text;
    if (!MessageText(messageId, text)) {
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    std::size_t count = Unicode::DecodeUtf8(text.data(), text.size(), nullptr);
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        std::size_t chars = count + 1 > size ? count + 1 : size;
        auto* block = static_cast<wchar_t*>(std::malloc(chars * sizeof(wchar_t)));
        if (!block) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return 0;
        }
        Unicode::DecodeUtf8(text.data(), text.size(), block);
        block[count] = L'\0';
        *static_cast<wchar_t**>(static_cast<void*>(buffer)) = block;
        return DWORD(count);
    }
    if (size < count + 1) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    Unicode::DecodeUtf8(text.data(), text.size(), buffer);
    buffer[count] = L'\0';
    return DWORD(count);
}

void* LocalFree(void* mem) {
    std::free(mem);
    return nullptr;
}
