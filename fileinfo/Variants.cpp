// Conversion of PROPVARIANT values for output and from typed-in text.
#include "fileinfo/Variants.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "fileinfo/PropertyNames.h"
#include "fileinfo/Utf8Text.h"

namespace fi {
namespace {

const char* BaseName(VARTYPE vt) {
    switch (vt) {
        case VT_EMPTY: return "VT_EMPTY";
        case VT_NULL: return "VT_NULL";
        case VT_I2: return "VT_I2";
        case VT_I4: return "VT_I4";
        case VT_R4: return "VT_R4";
        case VT_R8: return "VT_R8";
        case VT_CY: return "VT_CY";
        case VT_DATE: return "VT_DATE";
        case VT_BSTR: return "VT_BSTR";
        case VT_ERROR: return "VT_ERROR";
        case VT_BOOL: return "VT_BOOL";
        case VT_VARIANT: return "VT_VARIANT";
        case VT_I1: return "VT_I1";
        case VT_UI1: return "VT_UI1";
        case VT_UI2: return "VT_UI2";
        case VT_UI4: return "VT_UI4";
        case VT_I8: return "VT_I8";
        case VT_UI8: return "VT_UI8";
        case VT_INT: return "VT_INT";
        case VT_UINT: return "VT_UINT";
        case VT_LPSTR: return "VT_LPSTR";
        case VT_LPWSTR: return "VT_LPWSTR";
        case VT_FILETIME: return "VT_FILETIME";
        case VT_BLOB: return "VT_BLOB";
        case VT_STREAM: return "VT_STREAM";
        case VT_CLSID: return "VT_CLSID";
        default: return nullptr;
    }
}

std::string Wide(const wchar_t* s) { return s ? Narrow(s, std::wcslen(s)) : std::string(); }

// Narrow strings of a property set are in the ANSI code page; bytes above
// 127 are taken as Latin-1 so the output stays valid UTF-8.
std::string Ansi(const char* s) {
    if (!s) return {};
    std::wstring w;
    for (; *s; ++s) w.push_back(wchar_t(static_cast<unsigned char>(*s)));
    return Narrow(w);
}

nlohmann::ordered_json Number(double d) { return std::isfinite(d) ? nlohmann::ordered_json(d) : nlohmann::ordered_json(nullptr); }

std::string FileTimeText(const FILETIME& ft) {
    uint64_t ticks = FileTimeToUInt64(ft);
    int64_t seconds = int64_t(ticks / 10000000) - 11644473600LL;
    std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    if (!gmtime_r(&t, &tm)) return {};
    char buf[40];
    std::strftime(buf, sizeof buf, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return buf;
}

// One element of a vector, by base type.
template <typename Array, typename Fn>
nlohmann::ordered_json ArrayJson(const Array& a, Fn fn) {
    nlohmann::ordered_json out = nlohmann::ordered_json::array();
    for (ULONG i = 0; a.pElems && i < a.cElems; ++i) out.push_back(fn(a.pElems[i]));
    return out;
}

}  // namespace

std::string_view VtNameChars(VARTYPE vt, char (&buf)[64]) {
    char* p = buf;
    auto put = [&p](std::string_view part) { p = std::copy(part.begin(), part.end(), p); };
    if (vt & VT_VECTOR) put("VT_VECTOR|");
    if (vt & VT_ARRAY) put("VT_ARRAY|");
    if (vt & VT_BYREF) put("VT_BYREF|");
    const VARTYPE base = vt & VT_TYPEMASK;
    if (const char* name = BaseName(base)) {
        put(name);
    } else {
        char hex[16];
        std::snprintf(hex, sizeof hex, "VT_0x%04X", unsigned(base));
        put(hex);
    }
    return {buf, size_t(p - buf)};
}

std::string VtName(VARTYPE vt) {
    char buf[64];
    return std::string(VtNameChars(vt, buf));
}

nlohmann::ordered_json VariantToJson(const PROPVARIANT& v) {
    using json = nlohmann::ordered_json;
    switch (v.vt) {
        case VT_EMPTY:
        case VT_NULL: return nullptr;
        case VT_BOOL: return v.boolVal != VARIANT_FALSE;
        case VT_I1: return int(v.cVal);
        case VT_UI1: return unsigned(v.bVal);
        case VT_I2: return v.iVal;
        case VT_UI2: return v.uiVal;
        case VT_I4: return v.lVal;
        case VT_UI4: return v.ulVal;
        case VT_INT: return v.intVal;
        case VT_UINT: return v.uintVal;
        case VT_ERROR: return v.scode;
        case VT_I8: return v.hVal.QuadPart;
        case VT_UI8: return v.uhVal.QuadPart;
        case VT_R4: return Number(v.fltVal);
        case VT_R8:
        case VT_DATE: return Number(v.dblVal);
        case VT_LPWSTR:
        case VT_BSTR: return Wide(v.pwszVal);
        case VT_LPSTR: return Ansi(v.pszVal);
        case VT_FILETIME: return FileTimeText(v.filetime);
        case VT_CLSID: return v.puuid ? GuidText(*v.puuid) : std::string();
        case VT_BLOB: return json{{"size", v.blob.cbSize}};
        case VT_VECTOR | VT_LPWSTR: return ArrayJson(v.calpwstr, [](LPWSTR s) { return json(Wide(s)); });
        case VT_VECTOR | VT_BSTR: return ArrayJson(v.cabstr, [](wchar_t* s) { return json(Wide(s)); });
        case VT_VECTOR | VT_LPSTR: return ArrayJson(v.calpstr, [](LPSTR s) { return json(Ansi(s)); });
        case VT_VECTOR | VT_I2: return ArrayJson(v.cai, [](SHORT x) { return json(x); });
        case VT_VECTOR | VT_UI2: return ArrayJson(v.caui, [](USHORT x) { return json(x); });
        case VT_VECTOR | VT_I4: return ArrayJson(v.cal, [](LONG x) { return json(x); });
        case VT_VECTOR | VT_UI4: return ArrayJson(v.caul, [](ULONG x) { return json(x); });
        case VT_VECTOR | VT_R4: return ArrayJson(v.caflt, [](FLOAT x) { return Number(x); });
        case VT_VECTOR | VT_R8: return ArrayJson(v.cadbl, [](DOUBLE x) { return Number(x); });
        case VT_VECTOR | VT_BOOL: return ArrayJson(v.cabool, [](VARIANT_BOOL x) { return json(x != VARIANT_FALSE); });
        case VT_VECTOR | VT_FILETIME: return ArrayJson(v.cafiletime, [](const FILETIME& x) { return json(FileTimeText(x)); });
        default: return nullptr;  // a type the tool cannot show; its name is still in "vt"
    }
}

std::string VariantToText(const PROPVARIANT& v) {
    nlohmann::ordered_json j = VariantToJson(v);
    auto one = [](const nlohmann::ordered_json& e) -> std::string {
        if (e.is_string()) return e.get<std::string>();
        if (e.is_null()) return {};
        if (e.is_boolean()) return e.get<bool>() ? "true" : "false";
        return e.dump();
    };
    if (!j.is_array()) return one(j);
    std::string out;
    for (const auto& e : j) {
        if (!out.empty()) out += "; ";
        out += one(e);
    }
    return out;
}

namespace {

std::string Trim(const std::string& s) {
    size_t b = s.find_first_not_of(" \t");
    if (b == std::string::npos) return {};
    size_t e = s.find_last_not_of(" \t");
    return s.substr(b, e - b + 1);
}

bool ParseInt(const std::string& text, long long lo, long long hi, long long* out) {
    std::string t = Trim(text);
    if (t.empty()) return false;
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(t.c_str(), &end, 10);
    if (errno || *end || v < lo || v > hi) return false;
    *out = v;
    return true;
}

LPWSTR DupWide(const std::string& s) {
    LPWSTR out = nullptr;
    SHStrDupW(Widen(s).c_str(), &out);
    return out;
}

}  // namespace

bool TextToVariant(const std::string& text, VARTYPE type, PROPVARIANT* value) {
    PropVariantInit(value);
    long long n = 0;
    switch (type) {
        case VT_EMPTY:
        case VT_LPWSTR:
            value->vt = VT_LPWSTR;
            value->pwszVal = DupWide(text);
            return value->pwszVal != nullptr;
        case VT_VECTOR | VT_LPWSTR: {
            std::vector<std::string> items;
            std::string current;
            for (char c : text + ";") {
                if (c == ';' || c == ',') {
                    std::string item = Trim(current);
                    if (!item.empty()) items.push_back(item);
                    current.clear();
                } else {
                    current.push_back(c);
                }
            }
            value->vt = VT_VECTOR | VT_LPWSTR;
            if (items.empty()) return true;
            value->calpwstr.pElems = static_cast<LPWSTR*>(CoTaskMemAlloc(items.size() * sizeof(LPWSTR)));
            if (!value->calpwstr.pElems) return false;
            for (const auto& item : items) {
                value->calpwstr.pElems[value->calpwstr.cElems] = DupWide(item);
                if (!value->calpwstr.pElems[value->calpwstr.cElems]) return false;
                ++value->calpwstr.cElems;
            }
            return true;
        }
        case VT_I2:
            if (!ParseInt(text, INT16_MIN, INT16_MAX, &n)) return false;
            value->vt = VT_I2;
            value->iVal = SHORT(n);
            return true;
        case VT_I4:
        case VT_INT:
            if (!ParseInt(text, INT32_MIN, INT32_MAX, &n)) return false;
            value->vt = type;
            value->lVal = LONG(n);
            return true;
        case VT_UI2:
            if (!ParseInt(text, 0, UINT16_MAX, &n)) return false;
            value->vt = VT_UI2;
            value->uiVal = USHORT(n);
            return true;
        case VT_UI4:
        case VT_UINT:
            if (!ParseInt(text, 0, UINT32_MAX, &n)) return false;
            value->vt = type;
            value->ulVal = ULONG(n);
            return true;
        case VT_R4:
        case VT_R8: {
            std::string t = Trim(text);
            char* end = nullptr;
            double d = std::strtod(t.c_str(), &end);
            if (t.empty() || *end || !std::isfinite(d)) return false;
            value->vt = type;
            if (type == VT_R4) value->fltVal = FLOAT(d); else value->dblVal = d;
            return true;
        }
        case VT_BOOL: {
            std::string t = Trim(text);
            bool yes = t == "true" || t == "1" || t == "yes";
            bool no = t == "false" || t == "0" || t == "no";
            if (!yes && !no) return false;
            value->vt = VT_BOOL;
            value->boolVal = yes ? VARIANT_TRUE : VARIANT_FALSE;
            return true;
        }
        default:
            return false;
    }
}

HRESULT ReadDisplayValue(IFileInfo* info, const PROPERTYKEY& key, PROPVARIANT* value) {
    PROPSPEC spec{};
    spec.ulKind = PRSPEC_PROPID;
    spec.propid = key.pid;
    return info->ReadValue(&key.fmtid, &spec, value);
}

}  // namespace fi
