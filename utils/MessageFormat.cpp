// The seven replacements from message notation to positional printf notation.
// Each runs over the output of the one before, in this order: the numbered
// inserts first (plain ones, then those with a !spec!), the escapes after, so
// that an escape's replacement can never form a new insert.
//
// The leading group of doubled percent signs only shields runs of odd
// length: on an even run the search steps one character on and the last
// percent sign of the run starts the match. That is the conversion the
// messages were written against; it is kept as it is.
#include "utils/MessageFormat.h"

#include <regex>

namespace BrmUtils {

namespace {

struct Step {
    const char* pattern;
    const char* replacement;
};

constexpr Step kSteps[] = {
    // %1 with no !spec! is a string; the look-ahead keeps %12 whole and
    // leaves %2!d! to the next step.
    {"((?:%%)*%(?:\\d+))(?![!\\d])", "$1$s"},
    // %2!d! -> %2$d, for the printf specifications the notation allows.
    {"((?:%%)*%(?:\\d+))!([-+ #0]{0,5}(?:\\d+|\\*)?(?:\\.(?:\\d*|\\*)?)?"
     "(?:p|(?:l?[cs])|(?:(?:ll?|hh?|j|z|t|I64)?[ndiuoxX])|(?:L?[aAeEfFgG])))!",
     "$1$$$2"},
    // "% " drops the percent sign when another character stands before it.
    {"([^%])%( )", "$1$2"},
    {"((?:%%)*)%([.!])", "$1$2"},
    {"((?:%%)*)%n", "$1\n"},
    {"((?:%%)*)%r", "$1\r"},
    {"((?:%%)*)%t", "$1\t"},
};

template <typename T>
std::basic_string<T> Widen(const char* text)
{
    std::basic_string<T> out;
    for (; *text; ++text)
        out += T(static_cast<unsigned char>(*text));
    return out;
}

template <typename T>
std::basic_string<T> Convert(const T* format)
{
    std::basic_string<T> text;
    if (!format)
        return text;
    text = format;
    for (const Step& step : kSteps) {
        const std::basic_regex<T> pattern(Widen<T>(step.pattern));
        text = std::regex_replace(text, pattern, Widen<T>(step.replacement));
    }
    return text;
}

}  // namespace

std::string ConvertMessageFormat(const char* format)
{
    return Convert(format);
}

std::wstring ConvertMessageFormat(const wchar_t* format)
{
    return Convert(format);
}

}  // namespace BrmUtils
