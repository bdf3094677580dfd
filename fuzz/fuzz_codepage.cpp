// Code-page conversions on arbitrary bytes: no crash, the size query agrees
// with the conversion, and text decoded from UTF-8 comes back unchanged.
// File names round-trip byte for byte.
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/Uuid.h"

namespace {

constexpr UINT kCodePages[] = {CP_UTF8, 1252, CP_UTF16LE, CP_UTF16BE, CP_UTF7, 932, 936, 1251, 54936, 50220};

void Check(bool condition) {
    if (!condition) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1 || size > 1 << 16) return 0;
    const UINT codePage = kCodePages[data[0] % (sizeof kCodePages / sizeof kCodePages[0])];
    const DWORD flags = (data[0] & 0x80) ? MB_ERR_INVALID_CHARS : 0;
    const char* bytes = reinterpret_cast<const char*>(data + 1);
    const int length = int(size - 1);
    if (length == 0) return 0;

    int needed = MultiByteToWideChar(codePage, flags, bytes, length, nullptr, 0);
    if (needed > 0) {
        std::wstring wide(std::size_t(needed), L'\0');
        Check(MultiByteToWideChar(codePage, flags, bytes, length, wide.data(), needed) == needed);
        if (needed > 1) Check(MultiByteToWideChar(codePage, flags, bytes, length, wide.data(), needed - 1) == 0);

        int back = WideCharToMultiByte(codePage, 0, wide.data(), needed, nullptr, 0, nullptr, nullptr);
        std::string narrow(std::size_t(back > 0 ? back : 0), '\0');
        if (back > 0) {
            Check(WideCharToMultiByte(codePage, 0, wide.data(), needed, narrow.data(), back, nullptr, nullptr) == back);
        }
        if (codePage == CP_UTF8) {
            // Decoded UTF-8 holds only scalar values, which survive a round trip.
            int again = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, narrow.data(), back, nullptr, 0);
            Check(again == needed);
        }
        GUID g;
        wide.push_back(L'\0');
        UuidFromStringW(wide.c_str(), &g);
    }

    std::string name(bytes, std::size_t(length));
    if (name.find('\0') == std::string::npos) {
        std::wstring wide = PathFromNative(name.c_str());
        Check(PathToNative(wide.c_str()) == name);
    }
    return 0;
}
