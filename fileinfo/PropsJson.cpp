// The JSON form of a document's properties (see PropsJson.h).
#include "fileinfo/PropsJson.h"

#include <cstring>
#include <cwchar>
#include <unordered_map>

#include "fileinfo/FormatDetection.h"
#include "fileinfo/JsonWriter.h"
#include "fileinfo/PropertyCatalogue.h"
#include "fileinfo/PropertyNames.h"
#include "fileinfo/Utf8Text.h"
#include "fileinfo/Variants.h"

namespace fi {
namespace {

struct GroupCollector : PropertyVisitor {
    std::vector<std::pair<PROPERTYKEY, std::vector<PROPERTYKEY>>> list;
    void Visit(const void* record) override {
        const auto* group = static_cast<const PropertyGroup*>(record);
        list.emplace_back(group->key, group->members);
    }
};

nlohmann::ordered_json PropertyJson(IFileInfo* info, const PROPERTYKEY& key) {
    Variant value;
    HRESULT hr = info->GetValue(&key, &value.pv);
    Variant display;
    HRESULT displayHr = ReadDisplayValue(info, key, &display.pv);
    return {{"key", KeyText(key)},
            {"name", KeyName(key)},
            {"hr", HexHresult(hr)},
            {"vt", VtName(value.pv.vt)},
            {"value", VariantToJson(value.pv)},
            {"display_hr", HexHresult(displayHr)},
            {"display_vt", VtName(display.pv.vt)},
            {"display", VariantToText(display.pv)},
            {"readonly", info->IsReadOnly(&key)}};
}

// The "key" and "name" members of a property as the scan writes them. The
// same few keys come back in every document, so each is written once per
// thread and kept; documents with open properties bring keys of their own,
// so the memory is bounded by starting afresh when many have gathered.
std::string_view KeyMembers(const PROPERTYKEY& key) {
    struct Hash {
        size_t operator()(const PROPERTYKEY& k) const {
            uint64_t a, b;
            uint32_t c;
            std::memcpy(&a, &k, 8);
            std::memcpy(&b, reinterpret_cast<const char*>(&k) + 8, 8);
            std::memcpy(&c, reinterpret_cast<const char*>(&k) + 16, 4);
            return size_t((a * 0x9E3779B97F4A7C15u) ^ (b * 0xC2B2AE3D27D4EB4Fu) ^ (uint64_t(c) * 0x165667B19E3779F9u));
        }
    };
    constexpr size_t kMaxKept = 1024;
    thread_local std::unordered_map<PROPERTYKEY, std::string, Hash> kept;
    if (auto it = kept.find(key); it != kept.end()) return it->second;
    if (kept.size() >= kMaxKept) kept.clear();
    std::string members;
    JsonWriter json(members);
    char keyBuf[64];
    json.PlainMember("key", KeyChars(key, keyBuf));
    json.Key("name");
    const std::string_view known = KnownKeyName(key);
    json.String(known.empty() ? std::string_view(KeyName(key)) : known);
    return kept.emplace(key, std::move(members)).first->second;
}

std::string_view HresultChars(HRESULT hr, char (&buf)[16]) {
    static const char kHex[] = "0123456789ABCDEF";
    const auto v = static_cast<uint32_t>(hr);
    buf[0] = '0';
    buf[1] = 'x';
    for (int i = 0; i < 8; ++i) buf[2 + i] = kHex[(v >> (28 - 4 * i)) & 15];
    return {buf, 10};
}

// For the common scalar types, writes what VariantToJson gives to `json`
// and puts what VariantToText gives in `text` (either may be null); false
// for the other types, which take the general way.
bool WriteScalar(JsonWriter* json, const PROPVARIANT& v, std::string* text) {
    auto integer = [&](auto x) {
        if (json) json->Int(int64_t(x));
        if (text) *text = std::to_string(x);
        return true;
    };
    auto real = [&](double x) {
        if (json) json->Double(x);
        if (text) {
            char buf[64];
            *text = JsonWriter::DoubleChars(x, buf);
        }
        return true;
    };
    switch (v.vt) {
        case VT_EMPTY:
        case VT_NULL:
            if (json) json->Null();
            if (text) text->clear();
            return true;
        case VT_BOOL:
            if (json) json->Bool(v.boolVal != VARIANT_FALSE);
            if (text) *text = v.boolVal != VARIANT_FALSE ? "true" : "false";
            return true;
        case VT_I1: return integer(int(v.cVal));
        case VT_UI1: return integer(unsigned(v.bVal));
        case VT_I2: return integer(v.iVal);
        case VT_UI2: return integer(v.uiVal);
        case VT_I4: return integer(v.lVal);
        case VT_UI4: return integer(v.ulVal);
        case VT_INT: return integer(v.intVal);
        case VT_UINT: return integer(v.uintVal);
        case VT_I8: return integer(v.hVal.QuadPart);
        case VT_UI8:
            if (json) json->UInt(v.uhVal.QuadPart);
            if (text) *text = std::to_string(v.uhVal.QuadPart);
            return true;
        case VT_R4: return real(double(v.fltVal));
        case VT_R8:
        case VT_DATE: return real(v.dblVal);
        case VT_LPWSTR:
        case VT_BSTR: {
            const size_t length = v.pwszVal ? std::wcslen(v.pwszVal) : 0;
            if (json) json->WideString(v.pwszVal, length);
            if (text) *text = Narrow(v.pwszVal, length);
            return true;
        }
        case VT_VECTOR | VT_LPWSTR: {
            // VariantToText's join: "; " only once something is written.
            if (json) json->BeginArray();
            if (text) text->clear();
            for (ULONG i = 0; v.calpwstr.pElems && i < v.calpwstr.cElems; ++i) {
                const wchar_t* item = v.calpwstr.pElems[i];
                const std::string s = item ? Narrow(item, std::wcslen(item)) : std::string();
                if (json) json->String(s);
                if (text) {
                    if (!text->empty()) *text += "; ";
                    *text += s;
                }
            }
            if (json) json->EndArray();
            return true;
        }
        default: return false;
    }
}

// The JSON of a display group, {"key":...,"members":[...]}. Readers of one
// type show the same groups in every document, so each is written once per
// thread and kept (a handful at most; bounded all the same).
std::string_view GroupJson(const PropertyGroup& group) {
    struct Kept {
        PROPERTYKEY key;
        std::vector<PROPERTYKEY> members;
        std::string json;
    };
    constexpr size_t kMaxKept = 64;
    thread_local std::vector<Kept> kept;
    for (const Kept& k : kept) {
        if (k.key == group.key && k.members == group.members) return k.json;
    }
    if (kept.size() >= kMaxKept) kept.clear();
    std::string text;
    JsonWriter json(text);
    char keyBuf[64];
    json.BeginObject();
    json.PlainMember("key", KeyChars(group.key, keyBuf));
    json.Key("members");
    json.BeginArray();
    for (const auto& k : group.members) json.PlainString(KeyChars(k, keyBuf));
    json.EndArray();
    json.EndObject();
    kept.push_back(Kept{group.key, group.members, std::move(text)});
    return kept.back().json;
}

// Writes each group as it is visited.
struct GroupWriter : PropertyVisitor {
    explicit GroupWriter(JsonWriter& json) : json(json) {}
    void Visit(const void* record) override { json.Raw(GroupJson(*static_cast<const PropertyGroup*>(record))); }
    JsonWriter& json;
};

}  // namespace

void AppendPropsJson(std::string& out, IFileInfo* info, const std::string& file, EFileFormat format) {
    JsonWriter json(out);
    char hrBuf[16];
    char vtBuf[64];
    std::string display;
    json.BeginObject();
    json.Key("file");
    json.String(file);
    json.Key("type");
    json.String(FormatName(format));
    json.Key("properties");
    json.BeginArray();
    for (uint32_t i = 0, n = info->GetCount(); i < n; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        Variant value;
        const HRESULT hr = info->GetValue(&key, &value.pv);
        Variant shown;
        const HRESULT shownHr = ReadDisplayValue(info, key, &shown.pv);
        json.BeginObject();
        json.Raw(KeyMembers(key));
        json.PlainMember("hr", HresultChars(hr, hrBuf));
        json.PlainMember("vt", VtNameChars(value.pv.vt, vtBuf));
        json.Key("value");
        if (!WriteScalar(&json, value.pv, nullptr)) json.Value(VariantToJson(value.pv));
        json.PlainMember("display_hr", HresultChars(shownHr, hrBuf));
        json.PlainMember("display_vt", VtNameChars(shown.pv.vt, vtBuf));
        json.Key("display");
        if (shown.pv.vt == VT_LPWSTR || shown.pv.vt == VT_BSTR) {
            WriteScalar(&json, shown.pv, nullptr);  // the JSON value of a text is its display form
        } else {
            if (!WriteScalar(nullptr, shown.pv, &display)) display = VariantToText(shown.pv);
            json.String(display);
        }
        json.Key("readonly");
        json.Bool(info->IsReadOnly(&key));
        json.EndObject();
    }
    json.EndArray();
    json.Key("groups");
    json.BeginArray();
    GroupWriter groups(json);
    info->EnumGroups(groups);
    json.EndArray();
    json.EndObject();
}

void AppendScanErrorJson(std::string& out, const std::string& file, EFileFormat format, const std::string& why) {
    JsonWriter json(out);
    json.BeginObject();
    json.Key("file");
    json.String(file);
    json.Key("type");
    json.String(FormatName(format));
    json.Key("error");
    json.String(why);
    json.EndObject();
}

std::vector<std::pair<PROPERTYKEY, std::vector<PROPERTYKEY>>> PropertyGroups(IFileInfo* info) {
    GroupCollector groups;
    info->EnumGroups(groups);
    return std::move(groups.list);
}

nlohmann::ordered_json PropsJson(IFileInfo* info, const std::string& file, EFileFormat format) {
    nlohmann::ordered_json properties = nlohmann::ordered_json::array();
    for (uint32_t i = 0, n = info->GetCount(); i < n; ++i) {
        PROPERTYKEY key{};
        if (FAILED(info->GetAt(i, &key))) continue;
        properties.push_back(PropertyJson(info, key));
    }
    nlohmann::ordered_json groups = nlohmann::ordered_json::array();
    for (const auto& [key, members] : PropertyGroups(info)) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const auto& k : members) list.push_back(KeyText(k));
        groups.push_back({{"key", KeyText(key)}, {"members", list}});
    }
    return {{"file", file}, {"type", FormatName(format)}, {"properties", properties}, {"groups", groups}};
}

std::string DumpJson(const nlohmann::ordered_json& j, int indent) {
    return j.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string HexHresult(HRESULT hr) {
    char buf[16];
    return std::string(HresultChars(hr, buf));
}

}  // namespace fi
