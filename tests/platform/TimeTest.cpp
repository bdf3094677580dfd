// File times, local time and DOS fields, in fixed time zones.
#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <string>

#include "EnvGuard.h"
#include "platform/Time.h"

namespace {

struct ZoneGuard : EnvGuard {
    explicit ZoneGuard(const char* zone) { Set("TZ", zone); }
};

constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kNewYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr uint64_t kTicksPerSecond = 10'000'000;

uint64_t Utc(int64_t unixSeconds) { return FileTimeToUInt64(UnixTimeToFileTime(unixSeconds)); }

WORD DosDate(int y, int m, int d) { return WORD(((y - 1980) << 9) | (m << 5) | d); }
WORD DosTime(int h, int min, int s) { return WORD((h << 11) | (min << 5) | (s / 2)); }

struct LocalCase {
    const char* name;
    const char* zone;
    int64_t unixSeconds;  // an instant
    int offsetHours;      // local minus UTC at that instant
};

struct DosCase {
    const char* name;
    WORD date, time;
    std::array<int, 6> fields;  // year, month, day, hour, minute, second
};

TEST(DosTime, InvalidFieldsAndRangesFail) {
    FILETIME ft;
    // No leap day in 2021, months 13 and 0, day 0, hour 24, minute 60, second 60.
    const std::pair<WORD, WORD> fields[] = {
        {DosDate(2021, 2, 29), 0}, {DosDate(2020, 13, 1), 0},          {DosDate(2020, 0, 1), 0},
        {DosDate(2020, 1, 0), 0},  {DosDate(2020, 1, 1), DosTime(24, 0, 0)}, {DosDate(2020, 1, 1), WORD(60 << 5)},
        {DosDate(2020, 1, 1), WORD(30)}};
    for (const auto& [date, time] : fields) EXPECT_FALSE(DosDateTimeToFileTime(date, time, &ft)) << date << " " << time;
    WORD date, time;
    FILETIME before1980 = UnixTimeToFileTime(0);
    EXPECT_FALSE(FileTimeToDosDateTime(&before1980, &date, &time));
    FILETIME notATime = UInt64ToFileTime(0x8000000000000000ull);
    EXPECT_FALSE(FileTimeToDosDateTime(&notATime, &date, &time));
    SYSTEMTIME st;
    EXPECT_FALSE(FileTimeToSystemTime(&notATime, &st));
}

TEST(SystemTime, FieldsAndDayOfWeek) {
    SYSTEMTIME st{2020, 2, 0, 29, 12, 34, 56, 789};
    FILETIME ft;
    ASSERT_TRUE(SystemTimeToFileTime(&st, &ft));
    EXPECT_EQ(FileTimeToUInt64(ft), Utc(1582979696) + 789 * 10'000);
    SYSTEMTIME back;
    ASSERT_TRUE(FileTimeToSystemTime(&ft, &back));
    EXPECT_EQ(back.wDayOfWeek, 6);  // a Saturday
    EXPECT_EQ(back.wMilliseconds, 789);
    FILETIME first = UInt64ToFileTime(0);
    ASSERT_TRUE(FileTimeToSystemTime(&first, &back));
    EXPECT_EQ(back.wYear, 1601);
    EXPECT_EQ(back.wDayOfWeek, 1);  // a Monday
    const SYSTEMTIME bad[] = {{2021, 2, 0, 29, 0, 0, 0, 0}, {1600, 12, 0, 31, 0, 0, 0, 0},
                              {2020, 1, 0, 1, 0, 0, 0, 1000}, {2020, 1, 0, 1, 0, 60, 0, 0}};
    for (const auto& b : bad) EXPECT_FALSE(SystemTimeToFileTime(&b, &ft));
}

}  // namespace
