// Temporary names: prefix, process id and a random identifier.
#include "utils/TempFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "platform/LastError.h"
#include "platform/Uuid.h"

namespace BrmUtils {

using BrmPlatform::BrmStringW;

namespace {

const wchar_t kDefaultPrefix[] = L"brm";
const wchar_t kDefaultExtension[] = L"tmp";
// Collisions of random identifiers do not happen; the bound only keeps a
// broken identifier source from looping for ever.
constexpr int kMaxAttempts = 100;

std::wstring ToStd(const BrmStringW& s) { return std::wstring(s.GetString(), std::size_t(s.GetLength())); }

// The directory with a trailing separator.
std::wstring DirectoryOf(const BrmStringW& directory) {
    std::wstring dir = directory.IsEmpty() ? GetTempPathString() : ToStd(directory);
    if (!dir.empty() && dir.back() != L'/') dir += L'/';
    return dir;
}

// One candidate name; empty if no identifier could be made.
std::wstring Candidate(const std::wstring& dir, const BrmStringW& prefix, const BrmStringW& extension) {
    GUID id;
    wchar_t* idText = nullptr;
    if (UuidCreate(&id) != RPC_S_OK || UuidToStringW(&id, &idText) != RPC_S_OK || !idText) return {};
    wchar_t pid[16];
    std::swprintf(pid, 16, L"%04u", unsigned(getpid()));
    std::wstring name = dir;
    name += prefix.IsEmpty() ? std::wstring(kDefaultPrefix) : ToStd(prefix);
    name += L'-';
    name += pid;
    name += L'-';
    name += idText;
    name += L'.';
    name += extension.IsEmpty() ? std::wstring(kDefaultExtension) : ToStd(extension);
    RpcStringFreeW(&idText);
    return name;
}

}  // namespace

BrmStringW GetTempFolder() {
    std::wstring dir = GetTempPathString();
    return BrmStringW(dir.c_str(), int(dir.size()));
}

BrmStringW MakeTempFileName(const BrmStringW& directory, const BrmStringW& prefix, const BrmStringW& extension) {
    std::wstring dir = DirectoryOf(directory);
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        std::wstring name = Candidate(dir, prefix, extension);
        if (name.empty()) return BrmStringW();
        if (GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES)
            return BrmStringW(name.c_str(), int(name.size()));
    }
    return BrmStringW();
}

HANDLE CreateTempFile(const BrmStringW& directory, const BrmStringW& prefix, const BrmStringW& extension,
                      bool unlinkNow, BrmStringW* path) {
    std::wstring dir = DirectoryOf(directory);
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        std::wstring name = Candidate(dir, prefix, extension);
        if (name.empty()) break;
        std::string native = PathToNative(name.c_str());
        int fd = ::open(native.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST) continue;
            SetLastErrorFromErrno(errno);
            return INVALID_HANDLE_VALUE;
        }
        if (unlinkNow) ::unlink(native.c_str());
        if (path) *path = BrmStringW(name.c_str(), int(name.size()));
        return HANDLE(fd);
    }
    SetLastError(ERROR_FILE_EXISTS);
    return INVALID_HANDLE_VALUE;
}

}  // namespace BrmUtils
