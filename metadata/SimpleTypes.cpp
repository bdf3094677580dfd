// Text forms of the simple data types, and the shared lookup of a named
// simple value.
#include "metadata/SimpleTypes.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "metadata/Rdf.h"
#include "metadata/Utf8.h"
#include "utils/DateTime.h"

namespace Metadata {

std::string ReadNamedText(XmlNS::Node* node, const QualifiedName& name, bool& found) {
    found = false;
    if (!node) return {};
    if (const std::string* attribute = node->GetAttribute(name)) {
        found = true;
        return *attribute;
    }
    // A property node with child elements is a structure or a container,
    // never a simple value.
    const XmlNS::Node* property = node->FindChildOrSelf(name);
    if (!property || !property->Children().empty()) return {};
    found = true;
    return Rdf::GetText(property);
}

namespace DataType {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

std::size_t SkipBlanks(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) ++i;
    return i;
}

}  // namespace

// --- Bool -------------------------------------------------------------------

bool Bool::IsCompatible(const Any& value) const { return value.Is<bool>(); }

void Bool::FromText(Any& out, std::string text) const {
    bool value = text.size() == 4;
    for (std::size_t i = 0; value && i < 4; ++i) {
        value = (text[i] | 0x20) == "true"[i];
    }
    out = value;
}

void Bool::ToText(std::string& out, const Any& value) const { out = value.GetValue<bool>(false) ? "true" : "false"; }

// --- Int --------------------------------------------------------------------

bool Int::IsCompatible(const Any& value) const { return value.Is<int>() || value.Is<long>() || value.Is<double>(); }

void Int::FromText(Any& out, std::string text) const {
    std::size_t i = SkipBlanks(text);
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > std::numeric_limits<int>::max()) {  // saturates instead of wrapping
            value = negative ? -static_cast<long long>(std::numeric_limits<int>::min()) : std::numeric_limits<int>::max();
            break;
        }
    }
    out = static_cast<int>(negative ? -value : value);
}

void Int::ToText(std::string& out, const Any& value) const {
    int number = 0;
    if (const double* d = value.GetPtr<double>()) {
        // Truncated toward zero, kept within int.
        if (std::isfinite(*d)) {
            number = *d >= 2147483647.0    ? std::numeric_limits<int>::max()
                     : *d <= -2147483648.0 ? std::numeric_limits<int>::min()
                                           : static_cast<int>(*d);
        }
    } else if (const long* l = value.GetPtr<long>()) {
        number = static_cast<int>(*l);
    } else if (const int* n = value.GetPtr<int>()) {
        number = *n;
    }
    out = std::to_string(number);
}

// --- Double -----------------------------------------------------------------

bool Double::IsCompatible(const Any& value) const {
    return value.Is<double>() || value.Is<int>() || value.Is<long>();
}

void Double::FromText(Any& out, std::string text) const {
    std::size_t i = SkipBlanks(text);
    if (i < text.size() && text[i] == '+' && i + 1 < text.size() && text[i + 1] != '-') ++i;
    double value = 0;
    auto [ptr, ec] = std::from_chars(text.data() + i, text.data() + text.size(), value);
    (void)ptr;
    out = ec == std::errc() ? value : 0.0;
}

void Double::ToText(std::string& out, const Any& value) const {
    double number = 0;
    if (const double* d = value.GetPtr<double>()) {
        number = *d;
    } else if (const int* n = value.GetPtr<int>()) {
        number = *n;
    } else if (const long* l = value.GetPtr<long>()) {
        number = static_cast<double>(*l);
    }
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, number, std::chars_format::general, 15);
    out.assign(buf, ec == std::errc() ? end : buf);
}

// --- String -----------------------------------------------------------------

bool String::IsCompatible(const Any& value) const {
    return value.Is<BrmStringW>() || value.Is<const wchar_t*>() || value.Is<wchar_t*>();
}

void String::FromText(Any& out, std::string text) const { out = Utf8ToWide(text); }

void String::ToText(std::string& out, const Any& value) const {
    out.clear();
    if (const BrmStringW* s = value.GetPtr<BrmStringW>()) {
        out = WideToUtf8(*s);
    } else if (const wchar_t* const* p = value.GetPtr<const wchar_t*>()) {
        if (*p) out = WideToUtf8(std::wstring_view(*p));
    } else if (wchar_t* const* q = value.GetPtr<wchar_t*>()) {
        if (*q) out = WideToUtf8(std::wstring_view(*q));
    }
}

// --- Date -------------------------------------------------------------------

int DateZoneMinutes() { return BrmUtils::CurrentZoneMinutes() / 60 * 60; }

bool Date::IsCompatible(const Any& value) const { return value.Is<SYSTEMTIME>(); }

void Date::FromText(Any& out, std::string text) const {
    out.Clear();
    BrmUtils::ParsedDateTime parsed;
    if (!BrmUtils::ParseDateTime(text, parsed)) return;
    double local = parsed.julian;
    if (parsed.hasZone) local += DateZoneMinutes() / 1440.0;
    const SYSTEMTIME st = BrmUtils::JulianToSystemTime(local);
    if (st.wYear == 0 && st.wMonth == 0) return;
    out = st;
}

void Date::ToText(std::string& out, const Any& value) const {
    const SYSTEMTIME st = value.GetValue<SYSTEMTIME>(SYSTEMTIME{});
    const int zoneHours = DateZoneMinutes() / 60;
    char buf[80];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d", st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute,
                  st.wSecond);
    out = buf;
    if (zoneHours == 0) {
        out += 'Z';
    } else {
        std::snprintf(buf, sizeof buf, "%c%02d:00", zoneHours < 0 ? '-' : '+', zoneHours < 0 ? -zoneHours : zoneHours);
        out += buf;
    }
}

// --- Guid -------------------------------------------------------------------

bool Guid::IsCompatible(const Any& value) const { return value.Is<BrmUtils::Guid>() || value.Is<GUID>(); }

void Guid::FromText(Any& out, std::string text) const { out = BrmUtils::Guid(text.c_str()); }

void Guid::ToText(std::string& out, const Any& value) const {
    BrmUtils::Guid id;
    if (const BrmUtils::Guid* g = value.GetPtr<BrmUtils::Guid>()) {
        id = *g;
    } else if (const GUID* raw = value.GetPtr<GUID>()) {
        id = BrmUtils::Guid(*raw);
    }
    out = WideToUtf8(id.ToString());
}

}  // namespace DataType
}  // namespace Metadata
