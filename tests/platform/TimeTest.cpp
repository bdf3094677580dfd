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

TEST(FileTime, UnixEpochAndSystemTime) {
    EXPECT_EQ(Utc(0), 116444736000000000ull);
    EXPECT_EQ(FileTimeToUInt64(UnixTimeToFileTime(1, 999)), 116444736000000000ull + kTicksPerSecond + 9);
    EXPECT_EQ(Utc(-20'000'000'000), 0u);  // before 1601 clamps
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    EXPECT_NEAR(double(FileTimeToUInt64(now)), double(Utc(std::time(nullptr))), 5.0 * kTicksPerSecond);
}

struct LocalCase {
    const char* name;
    const char* zone;
    int64_t unixSeconds;  // an instant
    int offsetHours;      // local minus UTC at that instant
};

TEST(FileTime, LocalOffsetIsTheOneInForceAtTheInstant) {
    const LocalCase cases[] = {
        {"BerlinWinter", kBerlin, 1579046400, 1},   // 2020-01-15
        {"BerlinSummer", kBerlin, 1594771200, 2},   // 2020-07-15
        {"NewYorkWinter", kNewYork, 1579046400, -5},
        {"NewYorkSummer", kNewYork, 1594771200, -4},
        {"Utc", "UTC0", 1594771200, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ZoneGuard zone(c.zone);
        FILETIME utc = UnixTimeToFileTime(c.unixSeconds, 500'000'000);
        FILETIME local, back;
        ASSERT_TRUE(FileTimeToLocalFileTime(&utc, &local));
        EXPECT_EQ(int64_t(FileTimeToUInt64(local) - FileTimeToUInt64(utc)),
                  int64_t(c.offsetHours) * 3600 * int64_t(kTicksPerSecond));
        ASSERT_TRUE(LocalFileTimeToFileTime(&local, &back));
        EXPECT_EQ(FileTimeToUInt64(back), FileTimeToUInt64(utc));  // sub-second part kept
    }
}

struct DosCase {
    const char* name;
    WORD date, time;
    std::array<int, 6> fields;  // year, month, day, hour, minute, second
};

TEST(DosTime, FieldsConvertBothWays) {
    const DosCase cases[] = {
        {"Earliest", DosDate(1980, 1, 1), DosTime(0, 0, 0), {1980, 1, 1, 0, 0, 0}},
        {"LeapDay", DosDate(2024, 2, 29), DosTime(23, 59, 58), {2024, 2, 29, 23, 59, 58}},
        {"Latest", DosDate(2107, 12, 31), DosTime(23, 59, 58), {2107, 12, 31, 23, 59, 58}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FILETIME ft;
        ASSERT_TRUE(DosDateTimeToFileTime(c.date, c.time, &ft));
        SYSTEMTIME st;
        ASSERT_TRUE(FileTimeToSystemTime(&ft, &st));
        EXPECT_EQ((std::array<int, 6>{st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond}), c.fields);
        WORD date = 0, time = 0;
        ASSERT_TRUE(FileTimeToDosDateTime(&ft, &date, &time));
        EXPECT_EQ(date, c.date);
        EXPECT_EQ(time, c.time);
    }
}

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

// What the zip layer does: a UTC time stored as local DOS fields and read
// back gives the same instant to two seconds, in any zone and season.
TEST(DosTime, LocalRoundTripThroughZipFields) {
    for (const char* zoneName : {kBerlin, kNewYork, "UTC0", "JST-9"}) {
        ZoneGuard zone(zoneName);
        for (int64_t instant : {int64_t(1579046401), int64_t(1594771203), int64_t(1711846800)}) {
            SCOPED_TRACE(std::string(zoneName) + " " + std::to_string(instant));
            FILETIME utc = UnixTimeToFileTime(instant), local, fromDos, back;
            WORD date, time;
            ASSERT_TRUE(FileTimeToLocalFileTime(&utc, &local));
            ASSERT_TRUE(FileTimeToDosDateTime(&local, &date, &time));
            ASSERT_TRUE(DosDateTimeToFileTime(date, time, &fromDos));
            ASSERT_TRUE(LocalFileTimeToFileTime(&fromDos, &back));
            EXPECT_EQ(FileTimeToUInt64(back), Utc(instant - instant % 2));
        }
    }
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
