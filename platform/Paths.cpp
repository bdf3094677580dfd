// Wide paths to file-system bytes and back, the temporary folder and the
// path of a loaded module.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cwchar>
#include <string>

#include "platform/Files.h"
#include "platform/Unicode.h"

std::string PathToNative(const wchar_t* path) {
    if (!path) return {};
    const std::size_t length = std::wcslen(path);
    std::string native(Unicode::EncodeUtf8(path, length, nullptr, true), '\0');
    Unicode::EncodeUtf8(path, length, native.data(), true);
    return native;
}

std::wstring PathFromNative(const char* path) {
    if (!path) return {};
    const std::size_t length = std::strlen(path);
    std::wstring wide(Unicode::DecodeUtf8(path, length, nullptr, Unicode::Invalid::Escape), L'\0');
    Unicode::DecodeUtf8(path, length, wide.data(), Unicode::Invalid::Escape);
    return wide;
}

std::wstring GetTempPathString() {
    std::string folder = "/tmp";
    if (const char* env = std::getenv("TMPDIR")) {
        struct stat st{};
        if (*env == '/' && ::stat(env, &st) == 0 && S_ISDIR(st.st_mode)) folder = env;
    }
    if (folder.back() != '/') folder.push_back('/');
    return PathFromNative(folder.c_str());
}

std::wstring GetModulePathOf(const void* address) {
    Dl_info info{};
    std::string path;
    if (address && ::dladdr(address, &info) && info.dli_fname && *info.dli_fname) path = info.dli_fname;
    // The main program is reported by the name it was started with, which
    // may be relative or bare; the kernel knows its real path.
    if (path.empty() || path.find('/') == std::string::npos) {
        char exe[PATH_MAX];
        ssize_t n = ::readlink("/proc/self/exe", exe, sizeof exe - 1);
        if (n <= 0) return {};
        path.assign(exe, std::size_t(n));
    }
    char resolved[PATH_MAX];
    if (::realpath(path.c_str(), resolved)) path = resolved;
    return PathFromNative(path.c_str());
}
