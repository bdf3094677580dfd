// The table of property names. The readers' catalogues use a handful of
// property sets; the platform's names are used for the keys it publishes.
#include "fileinfo/PropertyNames.h"

#include <cctype>
#include <charconv>
#include <cstring>

#include "fileinfo/PropertyCatalogue.h"
#include "fileinfo/PropertyKeys.h"

namespace fi {
namespace {

constexpr const FMTID& SI = PropertyKeys::kSummary;
constexpr const FMTID& DSI = PropertyKeys::kDocSummary;
constexpr const FMTID& IMG = PropertyKeys::kImage;
constexpr const FMTID& VER = PropertyKeys::kVersion;
constexpr const FMTID& APP = PropertyKeys::kApp;
constexpr const FMTID& UNIT = PropertyKeys::kUnit;
constexpr const FMTID& DOC = PropertyKeys::kDocument;
constexpr const FMTID& FILEF = PropertyKeys::kFile;
constexpr const FMTID& TPL = PropertyKeys::kTemplate;
constexpr const FMTID& CLR = PropertyKeys::kColour;

constexpr VARTYPE kText = VT_LPWSTR;
constexpr VARTYPE kList = VT_VECTOR | VT_LPWSTR;

struct NameRow {
    const FMTID* fmtid;
    uint32_t pid;
    const char* name;
    VARTYPE primary;
};

const NameRow kNames[] = {
    {&SI, 2, "System.Title", kText},
    {&SI, 3, "System.Subject", kText},
    {&SI, 4, "System.Author", kList},
    {&SI, 5, "System.Keywords", kList},
    {&SI, 6, "System.Comment", kText},
    {&SI, 8, "System.Document.LastAuthor", kText},
    {&SI, 9, "System.Document.RevisionNumber", kText},
    {&SI, 12, "System.Document.DateCreated", VT_FILETIME},
    {&SI, 13, "System.Document.DateSaved", VT_FILETIME},
    {&SI, 14, "System.Document.PageCount", VT_I4},
    {&SI, 15, "System.Document.WordCount", VT_I4},
    {&SI, 16, "System.Document.CharacterCount", VT_I4},
    {&SI, 18, "System.ApplicationName", kText},
    {&DSI, 2, "System.Category", kText},
    {&DSI, 5, "System.Document.LineCount", VT_I4},
    {&DSI, 6, "System.Document.ParagraphCount", VT_I4},
    {&DSI, 18, "fileinfo.CreatorTool", kText},
    {&DSI, 26, "System.ContentType", kList},
    {&IMG, 3, "System.Image.HorizontalSize", VT_UI4},
    {&IMG, 4, "System.Image.VerticalSize", VT_UI4},
    {&IMG, 5, "System.Image.HorizontalResolution", VT_R8},
    {&IMG, 6, "System.Image.VerticalResolution", VT_R8},
    {&IMG, 7, "System.Image.BitDepth", VT_UI4},
    {&IMG, 13, "System.Image.Dimensions", kText},
    {&VER, 4, "System.FileVersion", kText},
    {&APP, 11, "System.Copyright", kText},
    {&APP, 28, "fileinfo.ApplicationVersion", kText},
    {&UNIT, 100, "fileinfo.ResolutionUnit", VT_I2},
    {&DOC, 100, "fileinfo.Fonts", kList},
    {&DOC, 101, "fileinfo.PageSize", kText},
    {&DOC, 102, "fileinfo.PageOrientation", VT_UI4},
    {&DOC, 103, "fileinfo.Links", kList},
    {&DOC, 104, "fileinfo.Pages", kList},
    {&DOC, 105, "fileinfo.Layers", kList},
    {&DOC, 106, "fileinfo.ObjectNames", kList},
    {&DOC, 107, "fileinfo.FontsEmbedded", VT_BOOL},
    {&DOC, 108, "fileinfo.ObjectCount", VT_I4},
    {&DOC, 109, "fileinfo.Colours", kList},
    {&DOC, 110, "fileinfo.ObjectKinds", kList},
    {&DOC, 111, "fileinfo.Fills", kList},
    {&DOC, 112, "fileinfo.Outlines", kList},
    {&DOC, 113, "fileinfo.Effects", kList},
    {&DOC, 114, "fileinfo.Palettes", kList},
    {&DOC, 115, "fileinfo.Styles", kList},
    {&DOC, 116, "fileinfo.Languages", kList},
    {&DOC, 117, "fileinfo.SpotColours", kList},
    {&DOC, 118, "fileinfo.RgbProfile", kText},
    {&DOC, 119, "fileinfo.CmykProfile", kText},
    {&DOC, 120, "fileinfo.GreyProfile", kText},
    {&DOC, 121, "fileinfo.ColourMode", VT_UI4},
    {&DOC, 122, "fileinfo.RenderingIntent", VT_UI4},
    {&FILEF, 100, "fileinfo.SecondFlag", VT_BOOL},
    {&FILEF, 101, "fileinfo.FirstFlag", VT_BOOL},
    {&FILEF, 102, "fileinfo.CompressionRatio", VT_R8},
    {&TPL, 100, "fileinfo.TemplateSides", kText},
    {&TPL, 101, "fileinfo.TemplateFolds", kText},
    {&TPL, 102, "fileinfo.TemplateType", kText},
    {&TPL, 103, "fileinfo.TemplateIndustry", kText},
    {&CLR, 100, "fileinfo.ImageColourMode", VT_UI4},
    {&CLR, 101, "fileinfo.ColourProfile", kText},
};

const NameRow* FindRow(const PROPERTYKEY& key) {
    for (const auto& row : kNames) {
        if (row.pid == key.pid && std::memcmp(row.fmtid, &key.fmtid, sizeof(FMTID)) == 0) return &row;
    }
    return nullptr;
}

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" from `p` on, upper case; answers
// the end. Written without printf: the scan writes a key for every property.
char* PutGuid(const GUID& id, char* p) {
    static const char kHex[] = "0123456789ABCDEF";
    auto hex = [&p](uint64_t v, int digits) {
        for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) *p++ = kHex[(v >> shift) & 15];
    };
    *p++ = '{';
    hex(id.Data1, 8);
    *p++ = '-';
    hex(id.Data2, 4);
    *p++ = '-';
    hex(id.Data3, 4);
    *p++ = '-';
    for (int i = 0; i < 8; ++i) {
        if (i == 2) *p++ = '-';
        hex(id.Data4[i], 2);
    }
    *p++ = '}';
    return p;
}

bool ParseHex(const std::string& s, size_t pos, size_t digits, uint64_t* out) {
    if (pos + digits > s.size()) return false;
    uint64_t v = 0;
    for (size_t i = pos; i < pos + digits; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(s[i]))) return false;
        v = v * 16 + uint64_t(std::isdigit(static_cast<unsigned char>(s[i])) ? s[i] - '0' : (std::tolower(s[i]) - 'a' + 10));
    }
    *out = v;
    return true;
}

}  // namespace

std::string GuidText(const GUID& id) {
    char buf[40];
    return std::string(buf, PutGuid(id, buf));
}

std::string_view KeyChars(const PROPERTYKEY& key, char (&buf)[64]) {
    char* p = PutGuid(key.fmtid, buf);
    *p++ = '/';
    p = std::to_chars(p, buf + sizeof buf, key.pid).ptr;
    return {buf, size_t(p - buf)};
}

std::string KeyText(const PROPERTYKEY& key) {
    char buf[64];
    return std::string(KeyChars(key, buf));
}

std::optional<PROPERTYKEY> ParseKeyText(const std::string& text) {
    auto slash = text.rfind('/');
    if (slash == std::string::npos) return std::nullopt;
    std::string id = text.substr(0, slash);
    std::string pid = text.substr(slash + 1);
    if (id.size() == 38 && id.front() == '{' && id.back() == '}') id = id.substr(1, 36);
    if (id.size() != 36 || id[8] != '-' || id[13] != '-' || id[18] != '-' || id[23] != '-') return std::nullopt;
    if (pid.empty() || pid.size() > 10 || pid.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    uint64_t pidValue = std::stoull(pid);
    if (pidValue > 0xFFFFFFFFu) return std::nullopt;
    PROPERTYKEY key{};
    uint64_t v = 0;
    if (!ParseHex(id, 0, 8, &v)) return std::nullopt;
    key.fmtid.Data1 = uint32_t(v);
    if (!ParseHex(id, 9, 4, &v)) return std::nullopt;
    key.fmtid.Data2 = uint16_t(v);
    if (!ParseHex(id, 14, 4, &v)) return std::nullopt;
    key.fmtid.Data3 = uint16_t(v);
    const size_t bytePos[8] = {19, 21, 24, 26, 28, 30, 32, 34};
    for (size_t i = 0; i < 8; ++i) {
        if (!ParseHex(id, bytePos[i], 2, &v)) return std::nullopt;
        key.fmtid.Data4[i] = uint8_t(v);
    }
    key.pid = uint32_t(pidValue);
    return key;
}

std::string KeyName(const PROPERTYKEY& key) {
    if (const NameRow* row = FindRow(key)) return row->name;
    return "fileinfo." + KeyText(key);
}

std::string_view KnownKeyName(const PROPERTYKEY& key) {
    const NameRow* row = FindRow(key);
    return row ? std::string_view(row->name) : std::string_view();
}

std::optional<PROPERTYKEY> ResolveKey(const std::string& nameOrKey) {
    for (const auto& row : kNames) {
        if (nameOrKey == row.name) return PROPERTYKEY{*row.fmtid, row.pid};
    }
    std::string text = nameOrKey;
    if (text.rfind("fileinfo.", 0) == 0) text = text.substr(9);
    return ParseKeyText(text);
}

VARTYPE KnownPrimaryType(const PROPERTYKEY& key) {
    const NameRow* row = FindRow(key);
    return row ? row->primary : VARTYPE(VT_EMPTY);
}

std::string GroupName(const PROPERTYKEY& key) {
    static const std::pair<const PROPERTYKEY*, const char*> groups[] = {
        {&kGroupDescription, "Description"}, {&kGroupOrigin, "Origin"},
        {&kGroupGeneral, "General"},         {&kGroupContents, "Contents"},
        {&kGroupFontsColours, "Fonts and colours"}, {&kGroupHidden, "Not shown"},
    };
    for (const auto& [k, name] : groups) {
        if (*k == key) return name;
    }
    return KeyText(key);
}

}  // namespace fi
