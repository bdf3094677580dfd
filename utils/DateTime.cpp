// Julian Dates, calendar fields, file times and the ISO 8601 text forms.
#include "utils/DateTime.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace BrmUtils {

namespace {

constexpr double kHalfMillisecondInDays = 5.787037037037037e-9;
constexpr double kMaxAbsDays = 1e8;
constexpr int64_t kMsPerDay = 86400000;

int64_t DaysFromCivil(int64_t y, int64_t m, int64_t d) {
    // Months beyond 1..12 move the year first.
    y += (m >= 1 ? (m - 1) / 12 : -((12 - m) / 12));
    m = ((m - 1) % 12 + 12) % 12 + 1;
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const int64_t yoe = y - era * 400;
    const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;  // days since 1970-01-01
}

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(int y, int m) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

}  // namespace

DateFields JulianToFields(double jd) {
    DateFields f;
    const double t = jd - kJulianCalendarBase;
    if (!std::isfinite(t) || std::fabs(t) > kMaxAbsDays) return f;
    const int64_t whole = static_cast<int64_t>(t);
    const int64_t c = whole * 100 - 25;
    const int64_t a = c / 3652425;
    const int64_t b = a - a / 4;
    int64_t year = (b * 100 + c) / 36525;
    const int64_t d = b + whole - 365 * year - year / 4;
    int64_t month = (5 * d + 456) / 153;
    const int64_t day = d - (153 * month - 457) / 5;
    if (month > 12) {
        year += 1;
        month -= 12;
    }
    f.year = static_cast<int>(year);
    f.month = static_cast<int>(month);
    f.day = static_cast<int>(day);

    double x = (t - static_cast<double>(whole) + kHalfMillisecondInDays) * 24;
    f.hour = static_cast<int>(std::floor(x));
    x = (x - f.hour) * 60;
    f.minute = static_cast<int>(std::floor(x));
    x = (x - f.minute) * 60;
    f.second = static_cast<int>(std::floor(x));
    f.millisecond = static_cast<int>((x - f.second) * 1000);
    return f;
}

double FieldsToJulian(const DateFields& f) {
    const int64_t days = DaysFromCivil(f.year, f.month, f.day);
    const double ms = ((f.hour * 60.0 + f.minute) * 60.0 + f.second) * 1000.0 + f.millisecond;
    return kJulianUnixEpoch + static_cast<double>(days) + ms / static_cast<double>(kMsPerDay);
}

double FileTimeToJulian(uint64_t ticks) {
    const uint64_t ms = ticks / 10000;
    return static_cast<double>(ms) / 8.64e7 + kJulianFileTimeEpoch;
}

SYSTEMTIME JulianToSystemTime(double jd) {
    SYSTEMTIME st{};
    const double t = jd - kJulianCalendarBase;
    if (!std::isfinite(t) || std::fabs(t) > kMaxAbsDays) return st;
    const int64_t total = std::llround(t * static_cast<double>(kMsPerDay));
    int64_t days = total / kMsPerDay;
    int64_t ms = total % kMsPerDay;
    if (ms < 0) {
        ms += kMsPerDay;
        days -= 1;
    }
    const DateFields date = JulianToFields(kJulianCalendarBase + static_cast<double>(days));
    if (date.year < 0 || date.year > 65535) return st;
    st.wYear = static_cast<WORD>(date.year);
    st.wMonth = static_cast<WORD>(date.month);
    st.wDay = static_cast<WORD>(date.day);
    st.wHour = static_cast<WORD>(ms / 3600000);
    st.wMinute = static_cast<WORD>(ms / 60000 % 60);
    st.wSecond = static_cast<WORD>(ms / 1000 % 60);
    st.wMilliseconds = static_cast<WORD>(ms % 1000);
    return st;
}

double SystemTimeToJulian(const SYSTEMTIME& st) {
    return FieldsToJulian(DateFields{st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond,
                                     st.wMilliseconds});
}

std::string FormatDate(int year, int month, int day) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", year, month, day);
    return buf;
}

std::string FormatTime(int hour, int minute, int second, int millisecond, int zoneMinutes) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", hour, minute, second);
    std::string out = buf;
    if (millisecond > 0) {
        std::snprintf(buf, sizeof buf, ",%03d", millisecond);
        std::string fraction = buf;
        while (fraction.size() > 1 && fraction.back() == '0') fraction.pop_back();
        out += fraction;
    }
    if (zoneMinutes == 0) {
        out += 'Z';
    } else {
        // Computed in 64 bits: the absolute value of INT_MIN does not fit.
        const long long zone = zoneMinutes < 0 ? -static_cast<long long>(zoneMinutes) : zoneMinutes;
        std::snprintf(buf, sizeof buf, "%c%02lld:%02lld", zoneMinutes < 0 ? '-' : '+', zone / 60, zone % 60);
        out += buf;
    }
    return out;
}

std::string FormatDateTime(const DateFields& f, int zoneMinutes) {
    return FormatDate(f.year, f.month, f.day) + "T" + FormatTime(f.hour, f.minute, f.second, f.millisecond, zoneMinutes);
}

int CurrentZoneMinutes() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (!localtime_r(&now, &local)) return 0;
    return static_cast<int>(local.tm_gmtoff / 60);
}

// ---------------------------------------------------------------------------
// The parser: a cursor over the text with small helpers for each piece.

namespace {

constexpr std::array<const char*, 12> kMonthNames = {"january", "february", "march",     "april",
                                                     "may",     "june",     "july",      "august",
                                                     "september", "october", "november", "december"};
constexpr std::array<const char*, 7> kDayNames = {"monday", "tuesday",  "wednesday", "thursday",
                                                  "friday", "saturday", "sunday"};

class Cursor {
public:
    explicit Cursor(std::string_view text) : text_(text) {}

    bool AtEnd() const { return pos_ >= text_.size(); }
    char Peek(std::size_t ahead = 0) const { return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0'; }
    bool Accept(char c) {
        if (Peek() != c || AtEnd()) return false;
        ++pos_;
        return true;
    }
    void SkipBlanks() {
        while (!AtEnd() && (Peek() == ' ' || Peek() == '\t')) ++pos_;
    }
    // Exactly `count` digits.
    bool Digits(int count, int& value) {
        int v = 0;
        for (int i = 0; i < count; ++i) {
            if (!std::isdigit(static_cast<unsigned char>(Peek(i)))) return false;
            v = v * 10 + (Peek(i) - '0');
        }
        pos_ += count;
        value = v;
        return true;
    }
    // One to `max` digits; the count read goes to `count`.
    bool DigitRun(int max, int& value, int& count) {
        count = 0;
        value = 0;
        while (count < max && std::isdigit(static_cast<unsigned char>(Peek()))) {
            value = value * 10 + (Peek() - '0');
            ++pos_;
            ++count;
        }
        return count > 0;
    }
    int CountDigitsAhead() const {
        int n = 0;
        while (std::isdigit(static_cast<unsigned char>(Peek(n)))) ++n;
        return n;
    }
    std::string Word() {
        std::string w;
        while (std::isalpha(static_cast<unsigned char>(Peek()))) {
            w += static_cast<char>(std::tolower(static_cast<unsigned char>(Peek())));
            ++pos_;
        }
        return w;
    }
    std::size_t Position() const { return pos_; }
    void Rewind(std::size_t pos) { pos_ = pos; }

private:
    std::string_view text_;
    std::size_t pos_ = 0;
};

// 1..12 for a full or three-letter month name, else 0.
template <std::size_t N>
int NameIndex(const std::array<const char*, N>& names, const std::string& word) {
    if (word.size() < 3) return 0;
    for (std::size_t i = 0; i < N; ++i) {
        std::string_view full = names[i];
        if (word == full || (word.size() == 3 && full.substr(0, 3) == word)) return static_cast<int>(i) + 1;
    }
    return 0;
}

bool ParseIsoDate(Cursor& c, DateFields& f) {
    if (!c.Digits(4, f.year)) return false;
    f.month = 1;
    f.day = 1;
    if (c.Peek() != '-' || !std::isdigit(static_cast<unsigned char>(c.Peek(1)))) return true;
    c.Accept('-');
    if (!c.Digits(2, f.month)) return false;
    if (c.Peek() != '-') return true;
    c.Accept('-');
    return c.Digits(2, f.day);
}

// "2 Jan 2006", "02-Jan-2006".
bool ParseDayMonthYear(Cursor& c, DateFields& f) {
    int count = 0;
    if (!c.DigitRun(2, f.day, count)) return false;
    if (!c.Accept('-')) c.SkipBlanks();
    f.month = NameIndex(kMonthNames, c.Word());
    if (f.month == 0) return false;
    if (!c.Accept('-')) c.SkipBlanks();
    return c.Digits(4, f.year);
}

// "January 2, 2006", "Jan 2 2006".
bool ParseMonthDayYear(Cursor& c, DateFields& f) {
    f.month = NameIndex(kMonthNames, c.Word());
    if (f.month == 0) return false;
    c.SkipBlanks();
    int count = 0;
    if (!c.DigitRun(2, f.day, count)) return false;
    c.Accept(',');
    c.SkipBlanks();
    return c.Digits(4, f.year);
}

bool ParseTime(Cursor& c, DateFields& f) {
    if (!c.Digits(2, f.hour) || !c.Accept(':') || !c.Digits(2, f.minute)) return false;
    if (!c.Accept(':')) return true;
    if (!c.Digits(2, f.second)) return false;
    if (c.Peek() == '.' || c.Peek() == ',') {
        c.Accept(c.Peek());
        int digits = c.CountDigitsAhead();
        if (digits == 0) return false;
        int value = 0;
        for (int i = 0; i < digits; ++i) {
            int d = 0;
            c.Digits(1, d);
            if (i < 3) value = value * 10 + d;
        }
        for (int i = digits; i < 3; ++i) value *= 10;
        f.millisecond = value;
    }
    return true;
}

bool ParseZone(Cursor& c, int& minutes) {
    const std::size_t start = c.Position();
    std::string word = c.Word();
    if (word == "z" || word == "utc" || word == "gmt") {
        minutes = 0;
        if (word == "z") return true;
        if (c.Peek() != '+' && c.Peek() != '-') return true;  // "UTC" alone; "GMT+01:00" goes on
    } else if (!word.empty()) {
        c.Rewind(start);
        return false;
    }
    const char sign = c.Peek();
    if (sign != '+' && sign != '-') return false;
    c.Accept(sign);
    int hours = 0;
    int mins = 0;
    if (!c.Digits(2, hours)) return false;
    if (c.Accept(':')) {
        if (!c.Digits(2, mins)) return false;
    } else if (std::isdigit(static_cast<unsigned char>(c.Peek()))) {
        if (!c.Digits(2, mins)) return false;
    }
    if (hours > 23 || mins > 59) return false;
    minutes = (sign == '-' ? -1 : 1) * (hours * 60 + mins);
    return true;
}

}  // namespace

bool ParseDateTime(std::string_view text, ParsedDateTime& result) {
    Cursor c(text);
    DateFields f;
    c.SkipBlanks();

    // A leading day name is read and ignored.
    const std::size_t start = c.Position();
    if (std::isalpha(static_cast<unsigned char>(c.Peek()))) {
        if (NameIndex(kDayNames, c.Word()) != 0) {
            c.Accept(',');
            c.SkipBlanks();
        } else {
            c.Rewind(start);
        }
    }

    bool dateOk = false;
    if (std::isalpha(static_cast<unsigned char>(c.Peek()))) {
        dateOk = ParseMonthDayYear(c, f);
    } else if (c.CountDigitsAhead() == 4) {
        dateOk = ParseIsoDate(c, f);
    } else {
        dateOk = ParseDayMonthYear(c, f);
    }
    if (!dateOk || f.month < 1 || f.month > 12 || f.day < 1 || f.day > DaysInMonth(f.year, f.month)) return false;

    ParsedDateTime out;
    const std::size_t beforeTime = c.Position();
    if (c.Accept('T') || c.Accept(' ') || c.Accept('\t')) {
        c.SkipBlanks();
        if (std::isdigit(static_cast<unsigned char>(c.Peek()))) {
            if (!ParseTime(c, f)) return false;
            if (f.hour > 23 || f.minute > 59 || f.second > 59) return false;
            out.hasTime = true;
        } else {
            c.Rewind(beforeTime);
        }
    }
    if (out.hasTime) {
        c.SkipBlanks();
        if (!c.AtEnd()) {
            if (!ParseZone(c, out.zoneMinutes)) return false;
            out.hasZone = true;
        }
    }
    c.SkipBlanks();
    if (!c.AtEnd()) return false;

    out.julian = FieldsToJulian(f) - out.zoneMinutes / 1440.0;
    result = out;
    return true;
}

}  // namespace BrmUtils
