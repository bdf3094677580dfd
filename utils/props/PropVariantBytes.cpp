// Reading and writing the typed property values of the property-set format.
//
// Layout of a value after its 4-byte header:
//   1-, 2-byte numbers (VT_I1, VT_UI1, VT_I2, VT_UI2, VT_BOOL): the number, padded to 4
//   4-byte numbers (VT_I4, VT_UI4, VT_INT, VT_UINT, VT_R4, VT_ERROR): the number
//   8-byte numbers (VT_I8, VT_UI8, VT_R8, VT_DATE, VT_FILETIME): the number
//   VT_CLSID: the 16 bytes of the GUID (Data1..3 little-endian)
//   VT_LPWSTR: u32 count of UTF-16 units including the zero, the units, padding
//   VT_BSTR, VT_LPSTR: u32 count of bytes including the zero, UTF-16 units, padding
//   VT_BLOB: u32 count of bytes, the bytes, padding
//   VT_VECTOR | X: u32 count, the elements one after the other (strings each
//   padded, small numbers packed and padded once at the end)
#include "utils/props/PropVariantBytes.h"

#include <cstring>
#include <string>
#include <type_traits>

#include "platform/CodePage.h"
#include "platform/OleAuto.h"

namespace BrmUtils {
namespace {

// ---- Numbers ---------------------------------------------------------------

template <typename T>
uint64_t Encode(const T& v) {
    if constexpr (std::is_integral_v<T>) {
        return uint64_t(std::make_unsigned_t<T>(v));
    } else if constexpr (std::is_same_v<T, float>) {
        uint32_t u;
        std::memcpy(&u, &v, sizeof u);
        return u;
    } else if constexpr (std::is_same_v<T, double>) {
        uint64_t u;
        std::memcpy(&u, &v, sizeof u);
        return u;
    } else if constexpr (std::is_same_v<T, LARGE_INTEGER> || std::is_same_v<T, ULARGE_INTEGER>) {
        return uint64_t(v.QuadPart);
    } else {
        static_assert(std::is_same_v<T, FILETIME>);
        return FileTimeToUInt64(v);
    }
}

template <typename T>
T Decode(uint64_t bits) {
    T v;
    if constexpr (std::is_integral_v<T>) {
        v = T(std::make_unsigned_t<T>(bits));
    } else if constexpr (std::is_same_v<T, float>) {
        const uint32_t u = uint32_t(bits);
        std::memcpy(&v, &u, sizeof v);
    } else if constexpr (std::is_same_v<T, double>) {
        std::memcpy(&v, &bits, sizeof v);
    } else if constexpr (std::is_same_v<T, LARGE_INTEGER>) {
        v.QuadPart = int64_t(bits);
    } else if constexpr (std::is_same_v<T, ULARGE_INTEGER>) {
        v.QuadPart = bits;
    } else {
        static_assert(std::is_same_v<T, FILETIME>);
        v = UInt64ToFileTime(bits);
    }
    return v;
}

// ---- Text ------------------------------------------------------------------

// UTF-16LE bytes of wide text (wchar_t holds whole code points here).
std::string ToUtf16(const wchar_t* text, size_t length) { return WideToUtf16LeString(text, length); }

// ---- Writing ---------------------------------------------------------------

class Writer {
public:
    explicit Writer(std::vector<uint8_t>& out) : out(out) {}

    void Number(uint64_t bits, size_t size) {
        for (size_t i = 0; i < size; ++i) {
            out.push_back(uint8_t(bits >> (8 * i)));
        }
    }
    void U16(uint16_t v) { Number(v, 2); }
    void U32(uint32_t v) { Number(v, 4); }
    void Bytes(const void* data, size_t size) {
        const auto* p = static_cast<const uint8_t*>(data);
        out.insert(out.end(), p, p + size);
    }
    void Units(const std::string& utf16) { Bytes(utf16.data(), utf16.size()); }
    // The value starts at offset 0 of `out`, so alignment is by its size.
    void Pad() {
        while (out.size() % 4 != 0) {
            out.push_back(0);
        }
    }

private:
    std::vector<uint8_t>& out;
};

void PutGuid(Writer& w, const GUID& g) {
    w.U32(g.Data1);
    w.U16(g.Data2);
    w.U16(g.Data3);
    w.Bytes(g.Data4, sizeof g.Data4);
}

// A null pointer writes the count 0: no characters, not even the zero.
void PutUnicodeString(Writer& w, const wchar_t* text) {
    if (!text) {
        w.U32(0);
        return;
    }
    const std::string units = ToUtf16(text, std::wcslen(text));
    w.U32(uint32_t(units.size() / 2 + 1));
    w.Units(units);
    w.U16(0);
    w.Pad();
}

// The byte-counted string of a code-page-1200 set.
void PutCodePageString(Writer& w, const std::string* units) {
    if (!units) {
        w.U32(0);
        return;
    }
    w.U32(uint32_t(units->size() + 2));
    w.Units(*units);
    w.U16(0);
    w.Pad();
}

void PutBstr(Writer& w, BSTR text) {
    if (!text) {
        PutCodePageString(w, nullptr);
        return;
    }
    const std::string units = ToUtf16(text, SysStringLen(text));
    PutCodePageString(w, &units);
}

bool PutAnsiString(Writer& w, const char* text) {
    if (!text) {
        PutCodePageString(w, nullptr);
        return true;
    }
    std::wstring wide;
    if (*text) {
        const int needed = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
        if (needed <= 0) {
            return false;
        }
        wide.resize(size_t(needed));
        if (MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), needed) != needed) {
            return false;
        }
        wide.resize(size_t(needed) - 1);  // the converted zero
    }
    const std::string units = ToUtf16(wide.data(), wide.size());
    PutCodePageString(w, &units);
    return true;
}

void PutBlob(Writer& w, const BLOB& blob) {
    w.U32(blob.cbSize);
    w.Bytes(blob.pBlobData, blob.cbSize);
    w.Pad();
}

template <typename T>
void PutScalar(Writer& w, const T& v) {
    w.Number(Encode(v), sizeof(T));
    w.Pad();
}

template <typename CA>
bool PutNumberVector(Writer& w, const CA& ca) {
    using T = std::remove_pointer_t<decltype(ca.pElems)>;
    if (ca.cElems && !ca.pElems) {
        return false;
    }
    w.U32(ca.cElems);
    for (ULONG i = 0; i < ca.cElems; ++i) {
        w.Number(Encode(ca.pElems[i]), sizeof(T));
    }
    w.Pad();
    return true;
}

template <typename CA, typename PutElement>
bool PutVector(Writer& w, const CA& ca, PutElement put) {
    if (ca.cElems && !ca.pElems) {
        return false;
    }
    w.U32(ca.cElems);
    for (ULONG i = 0; i < ca.cElems; ++i) {
        if (!put(w, ca.pElems[i])) {
            return false;
        }
    }
    return true;
}

bool PutValue(Writer& w, const PROPVARIANT& v) {
    switch (v.vt) {
        case VT_EMPTY:
        case VT_NULL: return true;
        case VT_I1: PutScalar(w, v.cVal); return true;
        case VT_UI1: PutScalar(w, v.bVal); return true;
        case VT_I2: PutScalar(w, v.iVal); return true;
        case VT_UI2: PutScalar(w, v.uiVal); return true;
        case VT_BOOL: PutScalar(w, v.boolVal); return true;
        case VT_I4: PutScalar(w, v.lVal); return true;
        case VT_UI4: PutScalar(w, v.ulVal); return true;
        case VT_INT: PutScalar(w, v.intVal); return true;
        case VT_UINT: PutScalar(w, v.uintVal); return true;
        case VT_ERROR: PutScalar(w, v.scode); return true;
        case VT_R4: PutScalar(w, v.fltVal); return true;
        case VT_I8: PutScalar(w, v.hVal); return true;
        case VT_UI8: PutScalar(w, v.uhVal); return true;
        case VT_R8: PutScalar(w, v.dblVal); return true;
        case VT_DATE: PutScalar(w, v.date); return true;
        case VT_FILETIME: PutScalar(w, v.filetime); return true;
        case VT_CLSID:
            if (!v.puuid) {
                return false;
            }
            PutGuid(w, *v.puuid);
            return true;
        case VT_LPWSTR: PutUnicodeString(w, v.pwszVal); return true;
        case VT_BSTR: PutBstr(w, v.bstrVal); return true;
        case VT_LPSTR: return PutAnsiString(w, v.pszVal);
        case VT_BLOB:
            if (v.blob.cbSize && !v.blob.pBlobData) {
                return false;
            }
            PutBlob(w, v.blob);
            return true;
        case VT_VECTOR | VT_I1: return PutNumberVector(w, v.cac);
        case VT_VECTOR | VT_UI1: return PutNumberVector(w, v.caub);
        case VT_VECTOR | VT_I2: return PutNumberVector(w, v.cai);
        case VT_VECTOR | VT_UI2: return PutNumberVector(w, v.caui);
        case VT_VECTOR | VT_BOOL: return PutNumberVector(w, v.cabool);
        case VT_VECTOR | VT_I4: return PutNumberVector(w, v.cal);
        case VT_VECTOR | VT_UI4: return PutNumberVector(w, v.caul);
        case VT_VECTOR | VT_ERROR: return PutNumberVector(w, v.cascode);
        case VT_VECTOR | VT_R4: return PutNumberVector(w, v.caflt);
        case VT_VECTOR | VT_I8: return PutNumberVector(w, v.cah);
        case VT_VECTOR | VT_UI8: return PutNumberVector(w, v.cauh);
        case VT_VECTOR | VT_R8: return PutNumberVector(w, v.cadbl);
        case VT_VECTOR | VT_DATE: return PutNumberVector(w, v.cadate);
        case VT_VECTOR | VT_FILETIME: return PutNumberVector(w, v.cafiletime);
        case VT_VECTOR | VT_CLSID:
            return PutVector(w, v.cauuid, [](Writer& out, const CLSID& g) {
                PutGuid(out, g);
                return true;
            });
        case VT_VECTOR | VT_LPWSTR:
            return PutVector(w, v.calpwstr, [](Writer& out, const wchar_t* s) {
                PutUnicodeString(out, s);
                return true;
            });
        case VT_VECTOR | VT_BSTR:
            return PutVector(w, v.cabstr, [](Writer& out, BSTR s) {
                PutBstr(out, s);
                return true;
            });
        case VT_VECTOR | VT_LPSTR:
            return PutVector(w, v.calpstr, [](Writer& out, const char* s) { return PutAnsiString(out, s); });
        default: return false;
    }
}

// ---- Reading ---------------------------------------------------------------

// A cursor over the given bytes; every read checks what is left first.
class Reader {
public:
    Reader(const uint8_t* data, size_t size) : data(data), size(size) {}

    size_t Left() const { return size - pos; }
    bool Number(size_t width, uint64_t& bits) {
        if (Left() < width) {
            return false;
        }
        bits = 0;
        for (size_t i = 0; i < width; ++i) {
            bits |= uint64_t(data[pos + i]) << (8 * i);
        }
        pos += width;
        return true;
    }
    bool U32(uint32_t& v) {
        uint64_t bits;
        if (!Number(4, bits)) {
            return false;
        }
        v = uint32_t(bits);
        return true;
    }
    bool Bytes(void* out, size_t count) {
        if (Left() < count) {
            return false;
        }
        if (count) {
            std::memcpy(out, data + pos, count);
        }
        pos += count;
        return true;
    }
    // Padding that the data ends in may be missing: only what is there is skipped.
    void Pad() {
        const size_t pad = (4 - pos % 4) % 4;
        pos += pad < Left() ? pad : Left();
    }
    // UTF-16 units up to the first zero unit, as wide text with pairs joined.
    bool Utf16(size_t units, std::wstring& text) {
        if (units > Left() / 2) {
            return false;
        }
        const uint8_t* p = data + pos;
        pos += units * 2;
        size_t used = 0;
        while (used < units && (p[2 * used] | p[2 * used + 1]) != 0) {
            ++used;
        }
        text = Utf16LeToWideString(p, used * 2);
        return true;
    }

private:
    const uint8_t* data;
    size_t size;
    size_t pos = 0;
};

wchar_t* TaskWideCopy(const std::wstring& text) {
    auto* out = static_cast<wchar_t*>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
    if (out) {
        std::memcpy(out, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    return out;
}

bool GetGuid(Reader& r, GUID& g) {
    uint64_t a, b, c;
    if (!r.Number(4, a) || !r.Number(2, b) || !r.Number(2, c) || !r.Bytes(g.Data4, sizeof g.Data4)) {
        return false;
    }
    g.Data1 = uint32_t(a);
    g.Data2 = uint16_t(b);
    g.Data3 = uint16_t(c);
    return true;
}

bool GetUnicodeString(Reader& r, LPWSTR& out) {
    uint32_t units;
    std::wstring text;
    if (!r.U32(units) || !r.Utf16(units, text)) {
        return false;
    }
    r.Pad();
    out = TaskWideCopy(text);
    return out != nullptr;
}

// The byte-counted string of a code-page-1200 set, as wide text.
bool GetCodePageString(Reader& r, std::wstring& text) {
    uint32_t bytes;
    if (!r.U32(bytes) || bytes % 2 != 0 || !r.Utf16(bytes / 2, text)) {
        return false;
    }
    r.Pad();
    return true;
}

bool GetBstr(Reader& r, BSTR& out) {
    std::wstring text;
    if (!GetCodePageString(r, text)) {
        return false;
    }
    out = SysAllocStringLen(text.data(), UINT(text.size()));
    return out != nullptr;
}

bool GetAnsiString(Reader& r, LPSTR& out) {
    std::wstring text;
    if (!GetCodePageString(r, text)) {
        return false;
    }
    int needed = 1;
    if (!text.empty()) {
        needed = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
        if (needed <= 0) {
            return false;
        }
    }
    out = static_cast<char*>(CoTaskMemAlloc(size_t(needed)));
    if (!out) {
        return false;
    }
    out[0] = 0;
    if (!text.empty() && WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, out, needed, nullptr, nullptr) != needed) {
        return false;  // the caller's clear frees `out`
    }
    return true;
}

template <typename T>
bool GetScalar(Reader& r, T& out) {
    uint64_t bits;
    if (!r.Number(sizeof(T), bits)) {
        return false;
    }
    out = Decode<T>(bits);
    r.Pad();
    return true;
}

// Allocates the zeroed array of a vector, with no more elements than the
// remaining bytes can hold at `minSize` bytes each.
template <typename CA>
bool AllocVector(Reader& r, CA& ca, size_t minSize) {
    using T = std::remove_pointer_t<decltype(ca.pElems)>;
    uint32_t count;
    if (!r.U32(count) || count > r.Left() / minSize) {
        return false;
    }
    ca.cElems = 0;
    ca.pElems = nullptr;
    if (count) {
        ca.pElems = static_cast<T*>(CoTaskMemAlloc(size_t(count) * sizeof(T)));
        if (!ca.pElems) {
            return false;
        }
        std::memset(static_cast<void*>(ca.pElems), 0, size_t(count) * sizeof(T));
        ca.cElems = count;
    }
    return true;
}

template <typename CA>
bool GetNumberVector(Reader& r, CA& ca) {
    using T = std::remove_pointer_t<decltype(ca.pElems)>;
    if (!AllocVector(r, ca, sizeof(T))) {
        return false;
    }
    for (ULONG i = 0; i < ca.cElems; ++i) {
        uint64_t bits = 0;
        r.Number(sizeof(T), bits);  // cannot fail: the count was checked against the bytes
        ca.pElems[i] = Decode<T>(bits);
    }
    r.Pad();
    return true;
}

// Elements that own memory: the array is in the variant before the first
// element is read, so a failure part-way is undone by PropVariantClear.
template <typename CA, typename GetElement>
bool GetVector(Reader& r, CA& ca, size_t minSize, GetElement get) {
    if (!AllocVector(r, ca, minSize)) {
        return false;
    }
    for (ULONG i = 0; i < ca.cElems; ++i) {
        if (!get(r, ca.pElems[i])) {
            return false;
        }
    }
    return true;
}

bool GetValue(Reader& r, VARTYPE vt, PROPVARIANT* v) {
    v->vt = vt;  // set first: what a failed read leaves is released by the caller's clear
    switch (vt) {
        case VT_EMPTY:
        case VT_NULL: return true;
        case VT_I1: return GetScalar(r, v->cVal);
        case VT_UI1: return GetScalar(r, v->bVal);
        case VT_I2: return GetScalar(r, v->iVal);
        case VT_UI2: return GetScalar(r, v->uiVal);
        case VT_BOOL: return GetScalar(r, v->boolVal);
        case VT_I4: return GetScalar(r, v->lVal);
        case VT_UI4: return GetScalar(r, v->ulVal);
        case VT_INT: return GetScalar(r, v->intVal);
        case VT_UINT: return GetScalar(r, v->uintVal);
        case VT_ERROR: return GetScalar(r, v->scode);
        case VT_R4: return GetScalar(r, v->fltVal);
        case VT_I8: return GetScalar(r, v->hVal);
        case VT_UI8: return GetScalar(r, v->uhVal);
        case VT_R8: return GetScalar(r, v->dblVal);
        case VT_DATE: return GetScalar(r, v->date);
        case VT_FILETIME: return GetScalar(r, v->filetime);
        case VT_CLSID: {
            GUID g;
            if (!GetGuid(r, g)) {
                return false;
            }
            v->puuid = static_cast<CLSID*>(CoTaskMemAlloc(sizeof(CLSID)));
            if (!v->puuid) {
                return false;
            }
            *v->puuid = g;
            return true;
        }
        case VT_LPWSTR: return GetUnicodeString(r, v->pwszVal);
        case VT_BSTR: return GetBstr(r, v->bstrVal);
        case VT_LPSTR: return GetAnsiString(r, v->pszVal);
        case VT_BLOB: {
            uint32_t count;
            if (!r.U32(count) || count > r.Left()) {
                return false;
            }
            if (count) {
                v->blob.pBlobData = static_cast<BYTE*>(CoTaskMemAlloc(count));
                if (!v->blob.pBlobData) {
                    return false;
                }
                v->blob.cbSize = count;
                r.Bytes(v->blob.pBlobData, count);
            }
            r.Pad();
            return true;
        }
        case VT_VECTOR | VT_I1: return GetNumberVector(r, v->cac);
        case VT_VECTOR | VT_UI1: return GetNumberVector(r, v->caub);
        case VT_VECTOR | VT_I2: return GetNumberVector(r, v->cai);
        case VT_VECTOR | VT_UI2: return GetNumberVector(r, v->caui);
        case VT_VECTOR | VT_BOOL: return GetNumberVector(r, v->cabool);
        case VT_VECTOR | VT_I4: return GetNumberVector(r, v->cal);
        case VT_VECTOR | VT_UI4: return GetNumberVector(r, v->caul);
        case VT_VECTOR | VT_ERROR: return GetNumberVector(r, v->cascode);
        case VT_VECTOR | VT_R4: return GetNumberVector(r, v->caflt);
        case VT_VECTOR | VT_I8: return GetNumberVector(r, v->cah);
        case VT_VECTOR | VT_UI8: return GetNumberVector(r, v->cauh);
        case VT_VECTOR | VT_R8: return GetNumberVector(r, v->cadbl);
        case VT_VECTOR | VT_DATE: return GetNumberVector(r, v->cadate);
        case VT_VECTOR | VT_FILETIME: return GetNumberVector(r, v->cafiletime);
        case VT_VECTOR | VT_CLSID: return GetVector(r, v->cauuid, 16, GetGuid);
        case VT_VECTOR | VT_LPWSTR: return GetVector(r, v->calpwstr, 4, GetUnicodeString);
        case VT_VECTOR | VT_BSTR: return GetVector(r, v->cabstr, 4, GetBstr);
        case VT_VECTOR | VT_LPSTR: return GetVector(r, v->calpstr, 4, GetAnsiString);
        default: v->vt = VT_EMPTY; return false;
    }
}

}  // namespace

bool SerializePropVariant(const PROPVARIANT& value, std::vector<uint8_t>& bytes) {
    bytes.clear();
    Writer w(bytes);
    w.U16(value.vt);
    w.U16(0);
    if (!PutValue(w, value)) {
        bytes.clear();
        return false;
    }
    return true;
}

bool DeserializePropVariant(const void* bytes, size_t size, PROPVARIANT* value) {
    if (!value) {
        return false;
    }
    PropVariantInit(value);
    if (!bytes) {
        return false;
    }
    Reader r(static_cast<const uint8_t*>(bytes), size);
    uint64_t header;
    if (!r.Number(4, header)) {
        return false;
    }
    if (!GetValue(r, VARTYPE(header & 0xFFFF), value)) {
        PropVariantClear(value);
        PropVariantInit(value);
        return false;
    }
    return true;
}

}  // namespace BrmUtils
