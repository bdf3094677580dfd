// Text forms of fill.xml values (see FillText.h).
#include "fill/FillText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale.h>
#include <stdlib.h>

namespace FillText {

namespace {

std::string_view SkipBlanks(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    return text.substr(i);
}

// The "C" locale for strtod_l, made once: the host may have set a locale
// whose decimal point is a comma, and the file's numbers always use ".".
locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

template <typename T>
T ParseInteger(std::string_view text) {
    text = SkipBlanks(text);
    bool negative = false;
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    // Digits are accumulated as a negative number, which has the larger range.
    T value = 0;
    bool overflow = false;
    for (char c : text) {
        if (c < '0' || c > '9') break;
        const T digit = c - '0';
        if (value < (std::numeric_limits<T>::min() + digit) / 10) {
            overflow = true;
            break;
        }
        value = value * 10 - digit;
    }
    if (overflow) return negative ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
    if (negative) return value;
    return value == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max() : -value;
}

}  // namespace

bool IsAbout(double value, double target) { return std::fabs(value - target) < kEpsilon; }

std::string FormatNumber(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

double ParseNumber(std::string_view text) {
    // strtod needs a terminated string; numbers are short, so only a bounded
    // prefix is copied.
    text = SkipBlanks(text);
    const std::string copy(text.substr(0, 512));
    const locale_t locale = CLocale();
    if (!locale) return 0.0;
    const double value = strtod_l(copy.c_str(), nullptr, locale);
    return std::isnan(value) ? 0.0 : value;
}

int ParseInt(std::string_view text) { return ParseInteger<int>(text); }
int64_t ParseInt64(std::string_view text) { return ParseInteger<int64_t>(text); }

std::string FormatInt(int64_t value) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string FormatVersion(int version) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.2f", version / 100.0);
    std::string text(buffer);
    if (!text.empty() && text.back() == '0') text.pop_back();
    return text;
}

int ParseVersion(std::string_view text) {
    const double scaled = ParseNumber(text) * 100.0;
    if (!(scaled > std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    if (!(scaled < std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    return static_cast<int>(scaled);
}

BrmStringW FormatColor(const ColorModels& models) {
    std::wstring text;
    for (const auto& [model, value] : models) {
        if (!text.empty()) text += L';';
        text.append(model.StdView()).append(L"(").append(value.StdView()).append(L")");
    }
    return BrmStringW(text);
}

ColorModels ParseColor(std::wstring_view text) {
    ColorModels models;
    while (!text.empty()) {
        const std::size_t end = text.find(L';');
        std::wstring_view item = text.substr(0, end);
        text = end == std::wstring_view::npos ? std::wstring_view() : text.substr(end + 1);
        if (item.empty()) continue;
        const std::size_t open = item.find(L'(');
        std::wstring_view value;
        if (open != std::wstring_view::npos) {
            value = item.substr(open + 1);
            item = item.substr(0, open);
            if (!value.empty() && value.back() == L')') value.remove_suffix(1);
        }
        models.insert_or_assign(BrmStringW(item), BrmStringW(value));
    }
    return models;
}

}  // namespace FillText
