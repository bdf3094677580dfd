// The text forms of fill.xml values: numbers, integers, booleans, the
// version and the colour of a stop. Parsing is forgiving in the way of the C
// library's atof/atoi (leading blanks, a number prefix, 0 for no number) but
// never depends on the process locale.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "utils/strings/BrmString.h"

namespace FillText {

using BrmPlatform::BrmStringW;

// Colour model name to its value text, e.g. "RGB" -> "255,0,0".
using ColorModels = std::map<BrmStringW, BrmStringW>;

// The tolerance below which a value counts as equal to 0 or 1 when deciding
// whether an element is written at all.
inline constexpr double kEpsilon = 2.220446049250313e-16;
bool IsAbout(double value, double target);

// The shortest text that reads back as the same double.
std::string FormatNumber(double value);
// atof: the longest number prefix after blanks, 0 when there is none. A
// "nan" reads as 0 so that no NaN reaches an ordered container.
double ParseNumber(std::string_view text);
// atoi: decimal prefix after blanks, saturated to the type's range.
int ParseInt(std::string_view text);
int64_t ParseInt64(std::string_view text);
std::string FormatInt(int64_t value);

inline const char* FormatBool(bool value) { return value ? "true" : "false"; }
// Only exactly "true" is true.
inline bool ParseBool(std::string_view text) { return text == "true"; }

// Version times 100 as "%.2f" with one trailing "0" cut: 100 gives "1.0".
std::string FormatVersion(int version);
// The number times 100, cut toward zero (saturated to int).
int ParseVersion(std::string_view text);

// "model(value);model(value)" in key order.
BrmStringW FormatColor(const ColorModels& models);
// Items split at ";", each at its first "("; one trailing ")" is cut off. A
// later item of the same model replaces the former; empty items are skipped.
ColorModels ParseColor(std::wstring_view text);

}  // namespace FillText
