// Julian Dates, calendar fields, file times, and the ISO 8601 text forms.
#include <gtest/gtest.h>

#include <cmath>

#include "utils/DateTime.h"

using BrmUtils::DateFields;

namespace {

TEST(JulianToFields, HostileValuesGiveZeroFields) {
    for (double jd : {double(NAN), double(INFINITY), -double(INFINITY), 1e300, -1e300}) {
        EXPECT_EQ(BrmUtils::JulianToFields(jd), DateFields{}) << jd;
        EXPECT_EQ(BrmUtils::JulianToSystemTime(jd).wYear, 0);
    }
}

struct ParseCase {
    const char* text;
    DateFields utc;  // the instant, in UTC
    int zone;
    bool hasZone;
    bool hasTime;
};

TEST(ParseDateTime, AcceptedForms) {
    const ParseCase cases[] = {
        {"2020-01-02T03:04:05Z", {2020, 1, 2, 3, 4, 5, 0}, 0, true, true},
        {"2020-01-02T03:04:05+02:00", {2020, 1, 2, 1, 4, 5, 0}, 120, true, true},
        {"2020-01-02T03:04:05-01:30", {2020, 1, 2, 4, 34, 5, 0}, -90, true, true},
        {"2020-01-02T03:04:05,5Z", {2020, 1, 2, 3, 4, 5, 500}, 0, true, true},
        {"2020-01-02T03:04:05.123456Z", {2020, 1, 2, 3, 4, 5, 123}, 0, true, true},
        {"2020-01-02T03:04:05.07+0100", {2020, 1, 2, 2, 4, 5, 70}, 60, true, true},
        {"2020-01-02T00:30+01", {2020, 1, 1, 23, 30, 0, 0}, 60, true, true},
        {"2020-01-02 03:04:05", {2020, 1, 2, 3, 4, 5, 0}, 0, false, true},
        {"2020-01-02T03:04:05 UTC", {2020, 1, 2, 3, 4, 5, 0}, 0, true, true},
        {"2020-01-02", {2020, 1, 2, 0, 0, 0, 0}, 0, false, false},
        {"2020-07", {2020, 7, 1, 0, 0, 0, 0}, 0, false, false}, {"2020", {2020, 1, 1, 0, 0, 0, 0}, 0, false, false},
        {"  2020-01-02T03:04:05Z  ", {2020, 1, 2, 3, 4, 5, 0}, 0, true, true},
        {"Mon, 2 Jan 2006 15:04:05 +0100", {2006, 1, 2, 14, 4, 5, 0}, 60, true, true},
        {"Monday, 02-Jan-2006 15:04:05 GMT", {2006, 1, 2, 15, 4, 5, 0}, 0, true, true},
        {"January 2, 2006", {2006, 1, 2, 0, 0, 0, 0}, 0, false, false},
        {"sep 30 2021 23:59", {2021, 9, 30, 23, 59, 0, 0}, 0, false, true},
        {"2000-02-29T12:00:00Z", {2000, 2, 29, 12, 0, 0, 0}, 0, true, true},
    };
    for (const auto& c : cases) {
        BrmUtils::ParsedDateTime p;
        ASSERT_TRUE(BrmUtils::ParseDateTime(c.text, p)) << c.text;
        EXPECT_NEAR(p.julian, BrmUtils::FieldsToJulian(c.utc), 1e-9) << c.text;
        EXPECT_EQ(p.zoneMinutes, c.zone) << c.text;
        EXPECT_EQ(p.hasZone, c.hasZone) << c.text;
        EXPECT_EQ(p.hasTime, c.hasTime) << c.text;
    }
}

TEST(ParseDateTime, RejectedForms) {
    const char* cases[] = {
        "", "   ", "20-01-02", "2020-13-01", "2020-02-30", "2019-02-29", "2020-00-10", "2020-01-02T25:00:00Z",
        "2020-01-02T03:60:00Z", "2020-01-02T03:04:61Z", "2020-01-02T03:04:05+24:00", "2020-01-02T03:04:05+01:60",
        "2020-01-02T03:04:05Q", "2020-01-02T03:04:05Z junk", "2020-01-02T3:04:05Z", "2020-01-02T03:04:05.Z",
        "Mon", "Foo 2, 2006", "2 Foo 2006", "2020-1-02", "2020-01-02T03", "+2020-01-02",
    };
    for (const char* text : cases) {
        BrmUtils::ParsedDateTime p;
        EXPECT_FALSE(BrmUtils::ParseDateTime(text, p)) << text;
    }
}

TEST(ParseDateTime, ReadsWhatFormatWrites) {
    for (int zone : {0, 60, -90, 330, -720}) {
        for (int ms : {0, 1, 10, 500, 999}) {
            DateFields f{1999, 12, 31, 23, 59, 58, ms};
            std::string text = BrmUtils::FormatDateTime(f, zone);
            BrmUtils::ParsedDateTime p;
            ASSERT_TRUE(BrmUtils::ParseDateTime(text, p)) << text;
            EXPECT_EQ(p.zoneMinutes, zone) << text;
            EXPECT_NEAR(p.julian + zone / 1440.0, BrmUtils::FieldsToJulian(f), 1e-9) << text;
        }
    }
}

}  // namespace
