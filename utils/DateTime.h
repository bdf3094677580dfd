// Dates as one double on the Julian Date scale (days; 2305813.5 is
// 1601-01-01 00:00, the start of the file time count), proleptic Gregorian
// calendar fields, file times, and the ISO 8601 text forms of metadata.
// A zone offset is an int count of minutes east of UTC.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/WinTypes.h"

namespace BrmUtils {

inline constexpr double kJulianFileTimeEpoch = 2305813.5;   // 1601-01-01 00:00
inline constexpr double kJulianCalendarBase = 1721118.5;    // origin of the field arithmetic
inline constexpr double kJulianUnixEpoch = 2440587.5;       // 1970-01-01 00:00

struct DateFields {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
};

inline bool operator==(const DateFields& a, const DateFields& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
           a.second == b.second && a.millisecond == b.millisecond;
}

// Calendar fields of a Julian Date. The time is rounded by half a
// millisecond after the date was taken from the whole days, so a time just
// below midnight can come out as hour 24 of the same date. A value that is
// not finite or lies beyond ±10^8 days gives all-zero fields.
DateFields JulianToFields(double jd);
// The inverse, for any fields (months and times out of range carry over).
double FieldsToJulian(const DateFields& fields);

// A file time (100-nanosecond ticks since 1601) on the Julian scale, to the
// whole millisecond.
double FileTimeToJulian(uint64_t ticks);
inline double FileTimeToJulian(const FILETIME& ft) { return FileTimeToJulian(FileTimeToUInt64(ft)); }

// Calendar fields and SYSTEMTIME, rounded to the nearest millisecond so the
// time never reads 24:00. The day of week is left 0.
SYSTEMTIME JulianToSystemTime(double jd);
double SystemTimeToJulian(const SYSTEMTIME& st);

// "%04d-%02d-%02d".
std::string FormatDate(int year, int month, int day);
// "%02d:%02d:%02d", then ",fff" without trailing zeros when the
// milliseconds are above 0, then "Z" for zone 0 or "+hh:mm" / "-hh:mm".
std::string FormatTime(int hour, int minute, int second, int millisecond, int zoneMinutes);
// Date, "T", time.
std::string FormatDateTime(const DateFields& fields, int zoneMinutes);

struct ParsedDateTime {
    double julian = 0;        // the instant in UTC when a zone was given, else as written
    int zoneMinutes = 0;      // the zone as written; 0 when none
    bool hasZone = false;
    bool hasTime = false;
};

// Reads what FormatDateTime writes, and the usual relatives: a date alone
// ("YYYY", "YYYY-MM", "YYYY-MM-DD"), a time after "T" or a blank with or
// without seconds and a fraction after "." or ",", a zone "Z", "UTC",
// "GMT", "+hh:mm", "+hhmm" or "+hh"; and the English forms with month and
// day names in full or in three letters ("Mon, 2 Jan 2006 15:04:05 +0100",
// "January 2, 2006"). Leading and trailing blanks are allowed. False for
// anything else or for fields out of range.
bool ParseDateTime(std::string_view text, ParsedDateTime& result);

// The machine's present offset from UTC in minutes.
int CurrentZoneMinutes();

}  // namespace BrmUtils
