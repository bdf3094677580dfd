// Replacing, moving and deleting files. ReplaceFileW is how a changed
// document reaches the user's file: the new content is made durable first
// and then renamed over the old name in one step, so that a crash or a full
// disk leaves either the old file or the whole new one, never a mix.
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/LastError.h"

namespace {

BOOL FailWith(int err) {
    SetLastErrorFromErrno(err);
    return FALSE;
}

std::string DirectoryOf(const std::string& path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

// Makes a rename in `directory` durable. Some file systems cannot sync a
// directory; the rename itself has happened all the same.
void SyncDirectory(const std::string& directory) {
    int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

bool SyncFile(const std::string& path) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return false;
    bool ok = ::fsync(fd) == 0;
    int err = errno;
    ::close(fd);
    errno = err;
    return ok;
}

// Copies `from` into a new file `to` (which must not exist) and syncs it.
bool CopyFileData(const std::string& from, const std::string& to, mode_t mode) {
    int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) return false;
    int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (out < 0) {
        int err = errno;
        ::close(in);
        errno = err;
        return false;
    }
    std::vector<char> buffer(1 << 16);
    bool ok = true;
    for (;;) {
        ssize_t n = ::read(in, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ok = n == 0;
            break;
        }
        for (ssize_t done = 0; ok && done < n;) {
            ssize_t w = ::write(out, buffer.data() + done, std::size_t(n - done));
            if (w < 0 && errno == EINTR) continue;
            ok = w > 0;
            if (ok) done += w;
        }
        if (!ok) break;
    }
    if (ok) ok = ::fsync(out) == 0;
    int err = errno;
    ::close(in);
    if (::close(out) != 0 && ok) {
        ok = false;
        err = errno;
    }
    if (!ok) ::unlink(to.c_str());
    errno = err;
    return ok;
}

// A name beside `target` that no file has yet.
std::string SiblingName(const std::string& target) {
    static unsigned counter = 0;
    for (int attempt = 0; attempt < 1000; ++attempt) {
        std::string name = target + ".~" + std::to_string(::getpid()) + "-" + std::to_string(++counter);
        struct stat st{};
        if (::lstat(name.c_str(), &st) != 0 && errno == ENOENT) return name;
    }
    return {};
}

// Moves `from` over `to` in one step, by copying first when they lie on
// different file systems. `mode` is given to a copy.
bool RenameOver(const std::string& from, const std::string& to, mode_t mode) {
    if (::rename(from.c_str(), to.c_str()) == 0) return true;
    if (errno != EXDEV) return false;
    std::string staging = SiblingName(to);
    if (staging.empty()) {
        errno = EEXIST;
        return false;
    }
    if (!CopyFileData(from, staging, mode)) return false;
    if (::rename(staging.c_str(), to.c_str()) != 0) {
        int err = errno;
        ::unlink(staging.c_str());
        errno = err;
        return false;
    }
    ::unlink(from.c_str());
    return true;
}

}  // namespace

BOOL ReplaceFileW(const wchar_t* replaced, const wchar_t* replacement, const wchar_t* /*backup*/, DWORD /*flags*/,
                  void* /*exclude*/, void* /*reserved*/) {
    if (!replaced || !replacement) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    // A link keeps pointing where it did: the file behind it is replaced.
    std::string target = PathToNative(replaced);
    char resolved[PATH_MAX];
    if (::realpath(target.c_str(), resolved)) target = resolved;
    const std::string source = PathToNative(replacement);

    struct stat targetInfo{};
    if (::stat(target.c_str(), &targetInfo) != 0) return FailWith(errno);
    if (!S_ISREG(targetInfo.st_mode)) {
        SetLastError(ERROR_UNABLE_TO_REMOVE_REPLACED);
        return FALSE;
    }
    struct stat sourceInfo{};
    if (::lstat(source.c_str(), &sourceInfo) != 0) return FailWith(errno);
    if (!S_ISREG(sourceInfo.st_mode)) {
        SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT);
        return FALSE;
    }
    if (sourceInfo.st_dev == targetInfo.st_dev && sourceInfo.st_ino == targetInfo.st_ino) return TRUE;

    // The new content must be on disk before its name is, or a crash could
    // leave the name pointing at an empty file.
    if (!SyncFile(source)) return FailWith(errno);
    const mode_t mode = targetInfo.st_mode & 07777;
    ::chmod(source.c_str(), mode);  // best effort: the user's permissions stay
    if (::getuid() == 0) {
        if (::chown(source.c_str(), targetInfo.st_uid, targetInfo.st_gid) != 0) {
            // ownership is kept where the system allows it; nothing more to do
        }
    }
    if (!RenameOver(source, target, mode)) return FailWith(errno);
    SyncDirectory(DirectoryOf(target));
    if (DirectoryOf(target) != DirectoryOf(source)) SyncDirectory(DirectoryOf(source));
    SetLastError(ERROR_SUCCESS);
    return TRUE;
}

BOOL MoveFileW(const wchar_t* from, const wchar_t* to) {
    if (!from || !to) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::string source = PathToNative(from);
    const std::string target = PathToNative(to);
    struct stat st{};
    if (::lstat(source.c_str(), &st) != 0) return FailWith(errno);
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return TRUE;
    int err = errno;
    if (err == EEXIST) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return FALSE;
    }
    if (err == EINVAL || err == ENOSYS || err == EXDEV) {
        struct stat existing{};
        if (::lstat(target.c_str(), &existing) == 0) {
            SetLastError(ERROR_ALREADY_EXISTS);
            return FALSE;
        }
        if (err != EXDEV && ::rename(source.c_str(), target.c_str()) == 0) return TRUE;
        if (S_ISREG(st.st_mode) && RenameOver(source, target, st.st_mode & 07777)) return TRUE;
        err = errno;
    }
    return FailWith(err);
}

BOOL DeleteFileW(const wchar_t* path) {
    if (!path) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::string native = PathToNative(path);
    struct stat st{};
    if (::lstat(native.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    if (::unlink(native.c_str()) != 0) return FailWith(errno);
    return TRUE;
}
