// File handles over POSIX descriptors: opening with the Windows
// dispositions, reading, writing, seeking, sizes and times.
#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <map>
#include <mutex>
#include <string>

#include "platform/LastError.h"
#include "platform/Time.h"

namespace {

// Paths of handles opened with FILE_FLAG_DELETE_ON_CLOSE, by descriptor.
std::mutex g_deleteMutex;
std::map<int, std::string>& DeleteOnClose() {
    static std::map<int, std::string> paths;
    return paths;
}

BOOL Fail() {
    SetLastErrorFromErrno(errno);
    return FALSE;
}

bool ValidHandle(HANDLE h) {
    if (h < 0 || h > INT_MAX) {
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    return true;
}


}  // namespace

HANDLE CreateFileW(const wchar_t* path, DWORD access, DWORD /*share*/, void* /*security*/, DWORD disposition,
                   DWORD flags, HANDLE /*templateFile*/) {
    if (!path || !*path) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    const std::string native = PathToNative(path);
    int oflags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const bool read = (access & GENERIC_READ) != 0;
    const bool write = (access & GENERIC_WRITE) != 0;
    oflags |= read && write ? O_RDWR : write ? O_WRONLY : O_RDONLY;
    switch (disposition) {
    case CREATE_NEW: oflags |= O_CREAT | O_EXCL; break;
    case CREATE_ALWAYS: oflags |= O_CREAT; break;
    case OPEN_EXISTING: break;
    case OPEN_ALWAYS: oflags |= O_CREAT; break;
    case TRUNCATE_EXISTING:
        if (!write) {
            SetLastError(ERROR_INVALID_PARAMETER);
            return INVALID_HANDLE_VALUE;
        }
        break;
    default: SetLastError(ERROR_INVALID_PARAMETER); return INVALID_HANDLE_VALUE;
    }

    // Whether the file was there decides the last error of the *_ALWAYS forms.
    struct stat before{};
    const bool existed = ::stat(native.c_str(), &before) == 0;
    int fd = ::open(native.c_str(), oflags, 0666);
    if (fd < 0) {
        SetLastErrorFromErrno(errno);
        if (errno == EEXIST) SetLastError(ERROR_FILE_EXISTS);
        return INVALID_HANDLE_VALUE;
    }
    struct stat st{};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    // The descriptor was opened without blocking only to be safe against
    // pipes; regular files read and write the same either way.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if ((disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING) && ::ftruncate(fd, 0) != 0) {
        int err = errno;
        ::close(fd);
        SetLastErrorFromErrno(err);
        return INVALID_HANDLE_VALUE;
    }
    {
        std::lock_guard<std::mutex> lock(g_deleteMutex);
        if (flags & FILE_FLAG_DELETE_ON_CLOSE) {
            DeleteOnClose()[fd] = native;
        } else {
            DeleteOnClose().erase(fd);  // a stale entry of a descriptor closed elsewhere
        }
    }
    const bool reportExisting = existed && (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS);
    SetLastError(reportExisting ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return fd;
}

BOOL CloseHandle(HANDLE h) {
    if (!ValidHandle(h)) return FALSE;
    std::string doomed;
    {
        std::lock_guard<std::mutex> lock(g_deleteMutex);
        auto it = DeleteOnClose().find(int(h));
        if (it != DeleteOnClose().end()) {
            doomed = std::move(it->second);
            DeleteOnClose().erase(it);
        }
    }
    if (!doomed.empty()) ::unlink(doomed.c_str());
    if (::close(int(h)) != 0 && errno != EINTR) return Fail();
    return TRUE;
}

BOOL ReadFile(HANDLE h, void* buffer, DWORD toRead, DWORD* read, void* /*overlapped*/) {
    if (read) *read = 0;
    if (!ValidHandle(h)) return FALSE;
    if (!buffer && toRead) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    DWORD done = 0;
    while (done < toRead) {
        ssize_t n = ::read(int(h), static_cast<char*>(buffer) + done, toRead - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            if (read) *read = done;
            return Fail();
        }
        if (n == 0) break;  // end of file: success with fewer bytes
        done += DWORD(n);
    }
    if (read) *read = done;
    return TRUE;
}

namespace {

// Writes all of `toWrite` bytes through `put(bytes, count, done)`, one
// write(2) or pwrite(2) call, again after an interruption or a short write.
template <typename Put>
BOOL WriteAll(const void* buffer, DWORD toWrite, DWORD* written, Put put) {
    DWORD done = 0;
    while (done < toWrite) {
        ssize_t n = put(static_cast<const char*>(buffer) + done, toWrite - done, done);
        if (n < 0) {
            if (errno == EINTR) continue;
            if (written) *written = done;
            return Fail();
        }
        done += DWORD(n);
    }
    if (written) *written = done;
    return TRUE;
}

}  // namespace

BOOL WriteFile(HANDLE h, const void* buffer, DWORD toWrite, DWORD* written, void* /*overlapped*/) {
    if (written) *written = 0;
    if (!ValidHandle(h)) return FALSE;
    if (!buffer && toWrite) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return WriteAll(buffer, toWrite, written,
                    [h](const char* p, DWORD n, DWORD) { return ::write(int(h), p, n); });
}

BOOL ReadFileAt(HANDLE h, void* buffer, DWORD toRead, uint64_t offset, DWORD* read) {
    if (read) *read = 0;
    if (!ValidHandle(h)) return FALSE;
    if ((!buffer && toRead) || offset > uint64_t(INT64_MAX)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    // One call: a regular file reads short only at its end, and a second
    // call would only hear so.
    ssize_t n;
    do n = ::pread(int(h), buffer, toRead, off_t(offset));
    while (n < 0 && errno == EINTR);
    if (n < 0) return Fail();
    if (read) *read = DWORD(n);
    return TRUE;
}

BOOL WriteFileAt(HANDLE h, const void* buffer, DWORD toWrite, uint64_t offset, DWORD* written) {
    if (written) *written = 0;
    if (!ValidHandle(h)) return FALSE;
    if ((!buffer && toWrite) || offset > uint64_t(INT64_MAX)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return WriteAll(buffer, toWrite, written, [h, offset](const char* p, DWORD n, DWORD done) {
        return ::pwrite(int(h), p, n, off_t(offset + done));
    });
}

BOOL SetFilePointerEx(HANDLE h, LARGE_INTEGER distance, LARGE_INTEGER* newPosition, DWORD method) {
    if (!ValidHandle(h)) return FALSE;
    int whence;
    switch (method) {
    case FILE_BEGIN: whence = SEEK_SET; break;
    case FILE_CURRENT: whence = SEEK_CUR; break;
    case FILE_END: whence = SEEK_END; break;
    default: SetLastError(ERROR_INVALID_PARAMETER); return FALSE;
    }
    off_t result = ::lseek(int(h), off_t(distance.QuadPart), whence);
    if (result < 0) {
        if (errno == EINVAL) {
            SetLastError(ERROR_NEGATIVE_SEEK);
            return FALSE;
        }
        return Fail();
    }
    if (newPosition) newPosition->QuadPart = result;
    return TRUE;
}

BOOL SetEndOfFile(HANDLE h) {
    if (!ValidHandle(h)) return FALSE;
    off_t position = ::lseek(int(h), 0, SEEK_CUR);
    if (position < 0 || ::ftruncate(int(h), position) != 0) return Fail();
    return TRUE;
}

BOOL FlushFileBuffers(HANDLE h) {
    if (!ValidHandle(h)) return FALSE;
    if (::fsync(int(h)) != 0) return Fail();
    return TRUE;
}

BOOL GetFileSizeEx(HANDLE h, LARGE_INTEGER* size) {
    if (!ValidHandle(h)) return FALSE;
    if (!size) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    struct stat st{};
    if (::fstat(int(h), &st) != 0) return Fail();
    size->QuadPart = st.st_size;
    return TRUE;
}

BOOL GetFileTime(HANDLE h, FILETIME* creation, FILETIME* access, FILETIME* write) {
    if (!ValidHandle(h)) return FALSE;
    struct statx sx{};
    if (::statx(int(h), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &sx) != 0) {
        if (errno != ENOSYS) return Fail();
        // Kernels or sandboxes without statx: the plain times, no birth time.
        struct stat st{};
        if (::fstat(int(h), &st) != 0) return Fail();
        auto convert = [](const timespec& t) { return UnixTimeToFileTime(t.tv_sec, uint32_t(t.tv_nsec)); };
        if (creation) *creation = convert(st.st_ctim);
        if (access) *access = convert(st.st_atim);
        if (write) *write = convert(st.st_mtim);
        return TRUE;
    }
    auto convert = [](const statx_timestamp& t) { return UnixTimeToFileTime(t.tv_sec, t.tv_nsec); };
    // Without a birth time the change time stands in, as the nearest thing.
    if (creation) *creation = convert((sx.stx_mask & STATX_BTIME) ? sx.stx_btime : sx.stx_ctime);
    if (access) *access = convert(sx.stx_atime);
    if (write) *write = convert(sx.stx_mtime);
    return TRUE;
}

BOOL DuplicateHandle(HANDLE source, HANDLE* target) {
    if (!ValidHandle(source)) return FALSE;
    if (!target) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    int fd = ::fcntl(int(source), F_DUPFD_CLOEXEC, 0);
    if (fd < 0) return Fail();
    {
        std::lock_guard<std::mutex> lock(g_deleteMutex);
        DeleteOnClose().erase(fd);
    }
    *target = fd;
    return TRUE;
}

DWORD GetFileAttributesW(const wchar_t* path) {
    if (!path) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_FILE_ATTRIBUTES;
    }
    struct stat st{};
    if (::stat(PathToNative(path).c_str(), &st) != 0) {
        SetLastErrorFromErrno(errno);
        return INVALID_FILE_ATTRIBUTES;
    }
    if (S_ISDIR(st.st_mode)) return FILE_ATTRIBUTE_DIRECTORY;
    return ::access(PathToNative(path).c_str(), W_OK) == 0 ? FILE_ATTRIBUTE_NORMAL : FILE_ATTRIBUTE_READONLY;
}
