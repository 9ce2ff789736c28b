#include "board/services/timeZone.h"
#include "support/matchers.h"
#include "tests/board/services/zones.h"

namespace {

std::string rule(const Zone& given) { return services::timeZoneRule(given).text; }

TEST(TimeZoneRule, OfTheFactoryIsUtc) {
    EXPECT_EQ(rule(zone("NONE", 0)), "UTC0");
    EXPECT_EQ(rule(Zone{}), "UTC0");
}

TEST(TimeZoneRule, CountsOffsetsWestOfUtc) {
    EXPECT_EQ(rule(zone("NONE", 60)), "<+01>-1");
    EXPECT_EQ(rule(zone("NONE", -300)), "<-05>5");
    EXPECT_EQ(rule(zone("NONE", 330)), "<+0530>-5:30");
    EXPECT_EQ(rule(zone("NONE", -210)), "<-0330>3:30");
    EXPECT_EQ(rule(zone("NONE", 30)), "<+0030>-0:30");
    EXPECT_EQ(rule(zone("NONE", -30)), "<-0030>0:30");
    EXPECT_EQ(rule(zone("NONE", 840)), "<+14>-14");
    EXPECT_EQ(rule(zone("NONE", -720)), "<-12>12");
}

TEST(TimeZoneRule, TakesANameThatIsAnAbbreviation) {
    EXPECT_EQ(rule(zone("CET", 60)), "CET-1");
    EXPECT_EQ(rule(zone("ABCDEF", 0)), "ABCDEF0");
    for (const std::string& name :
         {std::string("CE"), std::string("ABCDEFG"), std::string("C+T"),
          std::string("Europe/Vienna"), std::string(), std::string(99, 'z'), std::string(150, 'z'),
          std::string(199, 'z')}) {
        EXPECT_EQ(rule(zone(name, 60)), "<+01>-1") << name;
    }
}

TEST(TimeZoneRule, StatesDaylightSavingTime) {
    EXPECT_EQ(rule(zone("NONE", 60, 60)), "<+01>-1<+02>,M3.5.0,M10.5.0/3");
    EXPECT_EQ(rule(zone("CET", 60, 60)), "CET-1<+02>,M3.5.0,M10.5.0/3");
    EXPECT_EQ(rule(zone("NONE", 0, 60)), "<+00>0<+01>,M3.5.0,M10.5.0/3");
    EXPECT_EQ(rule(zone("NONE", 630, 30)), "<+1030>-10:30<+11>-11,M3.5.0,M10.5.0/3");
    EXPECT_EQ(rule(zone("NONE", 60, -60)), "<+01>-1<+00>0,M3.5.0,M10.5.0/3");
}

TEST(TimeZoneRule, StatesDaysAndTimes) {
    Zone given = zone("NONE", 0, 60);
    given.dstSDayInWeek = 1;
    given.dstSWeek = 1;
    given.dstSTime = 0;
    given.dstEDayInWeek = 6;
    given.dstETime = 2359;
    EXPECT_EQ(rule(given), "<+00>0<+01>,M3.1.1/0,M10.5.6/23:59");
    given.dstETime = 5;
    EXPECT_EQ(rule(given), "<+00>0<+01>,M3.1.1/0,M10.5.6/0:05");
}

TEST(TimeZoneRule, NeedsAnOffsetAndBothDates) {
    Zone given = zone("NONE", 60, 60);
    given.dstSMonth = given.dstSWeek = given.dstSDayInWeek = 0;
    given.dstSTime = 0;
    EXPECT_EQ(rule(given), "<+01>-1");
    given = zone("NONE", 60, 60);
    given.dstEMonth = given.dstEWeek = given.dstEDayInWeek = 0;
    given.dstETime = 0;
    EXPECT_EQ(rule(given), "<+01>-1");
}

}  // namespace
