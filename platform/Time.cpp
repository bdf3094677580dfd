// File times (100 ns since 1601 UTC), their local-time forms, DOS date and
// time fields and SYSTEMTIME. The local zone is the process's, through
// localtime_r and mktime, so TZ is honoured and each instant gets the
// offset that was in force at that instant (summer time included).
#include "platform/Time.h"

#include <ctime>

namespace {

constexpr int64_t kTicksPerSecond = 10'000'000;
constexpr int64_t kTicksPerDay = kTicksPerSecond * 86400;
// Seconds from 1601-01-01 to 1970-01-01.
constexpr int64_t kEpochDifference = 11'644'473'600;
// FILETIME values from the high bit up are not times.
constexpr uint64_t kMaxFileTime = 0x7FFFFFFFFFFFFFFFull;

// Days since 1970-01-01 of a civil date, and back (proleptic Gregorian).
int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = unsigned(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + int64_t(doe) - 719468;
}

void CivilFromDays(int64_t z, int64_t& y, unsigned& m, unsigned& d) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = unsigned(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = int64_t(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    if (m <= 2) ++y;
}

bool IsLeap(int64_t y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

unsigned DaysInMonth(int64_t y, unsigned m) {
    static constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

// Fields of a wall-clock time, with no zone attached.
struct Fields {
    int64_t year;
    unsigned month, day, hour, minute, second;
    uint32_t ticks;  // below one second
};

bool Valid(const Fields& f) {
    return f.month >= 1 && f.month <= 12 && f.day >= 1 && f.day <= DaysInMonth(f.year, f.month) && f.hour < 24 &&
           f.minute < 60 && f.second < 60;
}

// Ticks since 1601 of fields read as they stand (no zone conversion).
bool ToTicks(const Fields& f, uint64_t& ticks) {
    if (!Valid(f) || f.year < 1601 || f.year > 30827) return false;
    int64_t days = DaysFromCivil(f.year, f.month, f.day) + kEpochDifference / 86400;
    int64_t seconds = days * 86400 + f.hour * 3600 + f.minute * 60 + f.second;
    ticks = uint64_t(seconds) * kTicksPerSecond + f.ticks;
    return true;
}

Fields FromTicks(uint64_t ticks, unsigned* dayOfWeek = nullptr) {
    Fields f{};
    int64_t days = int64_t(ticks / kTicksPerDay);
    int64_t rest = int64_t(ticks % kTicksPerDay);
    CivilFromDays(days - kEpochDifference / 86400, f.year, f.month, f.day);
    f.hour = unsigned(rest / (3600 * kTicksPerSecond));
    f.minute = unsigned(rest / (60 * kTicksPerSecond) % 60);
    f.second = unsigned(rest / kTicksPerSecond % 60);
    f.ticks = uint32_t(rest % kTicksPerSecond);
    if (dayOfWeek) *dayOfWeek = unsigned((days + 1) % 7);  // 1601-01-01 was a Monday
    return f;
}

}  // namespace

FILETIME UnixTimeToFileTime(int64_t seconds, uint32_t nanoseconds) {
    if (seconds < -kEpochDifference) return FILETIME{0, 0};
    if (seconds > int64_t(kMaxFileTime / kTicksPerSecond) - kEpochDifference) return UInt64ToFileTime(kMaxFileTime);
    return UInt64ToFileTime(uint64_t(seconds + kEpochDifference) * kTicksPerSecond + nanoseconds % 1'000'000'000 / 100);
}

void GetSystemTimeAsFileTime(FILETIME* ft) {
    if (!ft) return;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *ft = UnixTimeToFileTime(now.tv_sec, uint32_t(now.tv_nsec));
}

BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) {
    if (!utc || !local) return FALSE;
    uint64_t ticks = FileTimeToUInt64(*utc);
    if (ticks > kMaxFileTime) return FALSE;
    time_t seconds = time_t(int64_t(ticks / kTicksPerSecond) - kEpochDifference);
    tm parts{};
    if (!localtime_r(&seconds, &parts)) return FALSE;
    int64_t shifted = int64_t(ticks) + int64_t(parts.tm_gmtoff) * kTicksPerSecond;
    if (shifted < 0 || uint64_t(shifted) > kMaxFileTime) return FALSE;
    *local = UInt64ToFileTime(uint64_t(shifted));
    return TRUE;
}

BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc) {
    if (!local || !utc) return FALSE;
    uint64_t ticks = FileTimeToUInt64(*local);
    if (ticks > kMaxFileTime) return FALSE;
    Fields f = FromTicks(ticks);
    if (f.year > 1900 + int64_t(INT32_MAX)) return FALSE;
    tm parts{};
    parts.tm_year = int(f.year - 1900);
    parts.tm_mon = int(f.month - 1);
    parts.tm_mday = int(f.day);
    parts.tm_hour = int(f.hour);
    parts.tm_min = int(f.minute);
    parts.tm_sec = int(f.second);
    parts.tm_isdst = -1;  // let the zone rules decide
    parts.tm_wday = -1;   // mktime sets it on success; -1 is also a valid answer
    time_t seconds = mktime(&parts);
    if (parts.tm_wday == -1) return FALSE;
    int64_t converted = int64_t(seconds) + kEpochDifference;
    if (converted < 0) return FALSE;
    *utc = UInt64ToFileTime(uint64_t(converted) * kTicksPerSecond + ticks % kTicksPerSecond);
    return TRUE;
}

BOOL DosDateTimeToFileTime(WORD fatDate, WORD fatTime, FILETIME* ft) {
    if (!ft) return FALSE;
    Fields f{};
    f.year = 1980 + (fatDate >> 9);
    f.month = (fatDate >> 5) & 0x0F;
    f.day = fatDate & 0x1F;
    f.hour = fatTime >> 11;
    f.minute = (fatTime >> 5) & 0x3F;
    f.second = (fatTime & 0x1F) * 2u;
    uint64_t ticks;
    if (!ToTicks(f, ticks)) return FALSE;
    *ft = UInt64ToFileTime(ticks);
    return TRUE;
}

BOOL FileTimeToDosDateTime(const FILETIME* ft, WORD* fatDate, WORD* fatTime) {
    if (!ft || !fatDate || !fatTime) return FALSE;
    uint64_t ticks = FileTimeToUInt64(*ft);
    if (ticks > kMaxFileTime) return FALSE;
    Fields f = FromTicks(ticks);
    if (f.year < 1980 || f.year > 2107) return FALSE;
    *fatDate = WORD(((f.year - 1980) << 9) | (f.month << 5) | f.day);
    *fatTime = WORD((f.hour << 11) | (f.minute << 5) | (f.second / 2));
    return TRUE;
}

BOOL FileTimeToSystemTime(const FILETIME* ft, SYSTEMTIME* st) {
    if (!ft || !st) return FALSE;
    uint64_t ticks = FileTimeToUInt64(*ft);
    if (ticks > kMaxFileTime) return FALSE;
    unsigned dayOfWeek = 0;
    Fields f = FromTicks(ticks, &dayOfWeek);
    st->wYear = WORD(f.year);
    st->wMonth = WORD(f.month);
    st->wDayOfWeek = WORD(dayOfWeek);
    st->wDay = WORD(f.day);
    st->wHour = WORD(f.hour);
    st->wMinute = WORD(f.minute);
    st->wSecond = WORD(f.second);
    st->wMilliseconds = WORD(f.ticks / 10'000);
    return TRUE;
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* st, FILETIME* ft) {
    if (!st || !ft || st->wMilliseconds > 999) return FALSE;
    Fields f{st->wYear, st->wMonth, st->wDay, st->wHour, st->wMinute, st->wSecond, uint32_t(st->wMilliseconds) * 10'000};
    uint64_t ticks;
    if (!ToTicks(f, ticks)) return FALSE;
    *ft = UInt64ToFileTime(ticks);
    return TRUE;
}
