// Random identifiers and their text form "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx"
// (lower case, no braces; parsing takes either case but nothing else).
#include "platform/Uuid.h"

#include <sys/random.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

bool FillRandom(uint8_t* bytes, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        ssize_t n = getrandom(bytes + done, count - done, 0);
        if (n < 0) {
            if (errno == EINTR) continue;
            break;
        }
        done += std::size_t(n);
    }
    if (done == count) return true;
    // Kernels without getrandom: the device gives the same bytes.
    FILE* device = std::fopen("/dev/urandom", "rb");
    if (!device) return false;
    bool ok = std::fread(bytes, 1, count, device) == count;
    std::fclose(device);
    return ok;
}

int HexValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// Reads `digits` hex digits; false on anything else.
bool ReadHex(const wchar_t*& p, int digits, uint64_t& value) {
    value = 0;
    for (int i = 0; i < digits; ++i) {
        int v = HexValue(*p);
        if (v < 0) return false;
        value = (value << 4) | uint64_t(v);
        ++p;
    }
    return true;
}

}  // namespace

RPC_STATUS UuidCreate(GUID* uuid) {
    if (!uuid) return RPC_S_INVALID_STRING_UUID;
    uint8_t bytes[16];
    if (!FillRandom(bytes, sizeof bytes)) return RPC_S_OUT_OF_MEMORY;
    std::memcpy(uuid, bytes, sizeof bytes);
    uuid->Data3 = uint16_t((uuid->Data3 & 0x0FFF) | 0x4000);  // version 4
    uuid->Data4[0] = uint8_t((uuid->Data4[0] & 0x3F) | 0x80);  // RFC 4122 variant
    return RPC_S_OK;
}

RPC_STATUS UuidToStringW(const GUID* uuid, wchar_t** text) {
    if (!uuid || !text) return RPC_S_INVALID_STRING_UUID;
    char narrow[37];
    std::snprintf(narrow, sizeof narrow, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", uuid->Data1,
                  uuid->Data2, uuid->Data3, uuid->Data4[0], uuid->Data4[1], uuid->Data4[2], uuid->Data4[3],
                  uuid->Data4[4], uuid->Data4[5], uuid->Data4[6], uuid->Data4[7]);
    auto* out = static_cast<wchar_t*>(std::malloc(sizeof(wchar_t) * 37));
    if (!out) return RPC_S_OUT_OF_MEMORY;
    for (int i = 0; i < 37; ++i) out[i] = wchar_t(narrow[i]);
    *text = out;
    return RPC_S_OK;
}

RPC_STATUS UuidFromStringW(const wchar_t* text, GUID* uuid) {
    if (!uuid) return RPC_S_INVALID_STRING_UUID;
    if (!text) {  // as on Windows: no text is the nil identifier
        *uuid = GUID_NULL;
        return RPC_S_OK;
    }
    const wchar_t* p = text;
    uint64_t a, b, c, d, e;
    if (!ReadHex(p, 8, a) || *p++ != L'-' || !ReadHex(p, 4, b) || *p++ != L'-' || !ReadHex(p, 4, c) ||
        *p++ != L'-' || !ReadHex(p, 4, d) || *p++ != L'-' || !ReadHex(p, 12, e) || *p != L'\0') {
        return RPC_S_INVALID_STRING_UUID;
    }
    uuid->Data1 = uint32_t(a);
    uuid->Data2 = uint16_t(b);
    uuid->Data3 = uint16_t(c);
    uuid->Data4[0] = uint8_t(d >> 8);
    uuid->Data4[1] = uint8_t(d);
    for (int i = 0; i < 6; ++i) uuid->Data4[2 + i] = uint8_t(e >> (40 - 8 * i));
    return RPC_S_OK;
}

RPC_STATUS RpcStringFreeW(wchar_t** text) {
    if (text) {
        std::free(*text);
        *text = nullptr;
    }
    return RPC_S_OK;
}
