// DOS date and time fields and file times that have no DOS form.
#include <gtest/gtest.h>

#include "platform/Time.h"

namespace {

WORD DosDate(int y, int m, int d) { return WORD(((y - 1980) << 9) | (m << 5) | d); }
WORD DosTime(int h, int min, int s) { return WORD((h << 11) | (min << 5) | (s / 2)); }

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

}  // namespace
