#include "mngctl/zone/civilTime.h"
#include "mngctl/zone/zoneSettings.h"
#include "mngctlRun.h"

#include <ctime>

namespace mngctl::test {
namespace {

using testing::HasSubstr;

std::string refusal(const std::string& rule) {
    return refusalOf([&] { parseRule(rule); });
}

TEST(ZoneRule, IsReadInAllItsForms) {
    const ZoneSettings plain = parseRule("UTC0");
    EXPECT_EQ(plain.name, "UTC");
    EXPECT_EQ(plain.offset, 0);
    EXPECT_FALSE(plain.observesDst());

    const ZoneSettings central = parseRule("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(central.offset, 60);
    EXPECT_EQ(central.dstOffset, 60);
    EXPECT_EQ(central.start, (SwitchDate{3, 5, 7, 200}));
    EXPECT_EQ(central.end, (SwitchDate{10, 5, 7, 300}));

    const ZoneSettings lordHowe = parseRule("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0");
    EXPECT_EQ(lordHowe.name, "+1030");
    EXPECT_EQ(lordHowe.offset, 630);
    EXPECT_EQ(lordHowe.dstOffset, 30);

    const ZoneSettings dublin = parseRule("IST-1GMT0,M10.5.0,M3.5.0/1");
    EXPECT_EQ(dublin.dstOffset, -60);
    EXPECT_EQ(parseRule("XXX+3:30").offset, -210);
    EXPECT_EQ(parseRule("XXX3YYY,M1.1.1/0:05,M2.2.6/23:59:00").start.time, 5);
}

TEST(ZoneRule, IsRefusedWithWhatIsWrong) {
    EXPECT_EQ(refusal("CE-1"),
              "'CE-1' is no rule of a time zone such as CET-1CEST,M3.5.0,M10.5.0/3: a name has "
              "three letters or more");
    EXPECT_THAT(refusal(""), HasSubstr("a name has three letters or more"));
    EXPECT_THAT(refusal("CET"), HasSubstr("expected hours, at most 24"));
    EXPECT_THAT(refusal("CET-25"), HasSubstr("expected hours, at most 24"));
    EXPECT_THAT(refusal("CET-1:60"), HasSubstr("expected minutes, at most 59"));
    EXPECT_THAT(refusal("<+01-1"), HasSubstr("ends with >"));
    EXPECT_THAT(refusal("CET-1CEST,M3.5.0"), HasSubstr("a comma and a date are missing"));
    EXPECT_THAT(refusal("CET-1CEST,M0.5.0,M10.5.0"), HasSubstr("months and weeks count from 1"));
    EXPECT_THAT(refusal("CET-1CEST,M3.0.0,M10.5.0"), HasSubstr("months and weeks count from 1"));
    EXPECT_THAT(refusal("CET-1CEST,M13.5.0,M10.5.0"), HasSubstr("expected a month, at most 12"));
    EXPECT_THAT(refusal("CET-1CEST,M3.6.0,M10.5.0"), HasSubstr("expected a week, at most 5"));
    EXPECT_THAT(refusal("CET-1CEST,M3.5.7,M10.5.0"), HasSubstr("at most 6"));
    EXPECT_THAT(refusal("CET-1CEST,M3.5.0,M10.5.0/3 "), HasSubstr("' ' follows its end"));
    EXPECT_THAT(refusal("CET-1CEST,X"), HasSubstr("expected a date such as M3.5.0"));
}

TEST(ZoneRule, IsRefusedWhenTheBoardCannotKeepIt) {
    const auto kept = [](const std::string& rule, const std::string& why) {
        EXPECT_EQ(refusal(rule), "the board cannot keep the time zone rule '" + rule + "': " + why);
    };
    kept("CET-1CEST", "it does not say when daylight-saving time starts and ends");
    kept("CET-1CEST,J60,M10.5.0", "it counts days of the year, and the board weeks of a month");
    kept("CET-1CEST,59,M10.5.0", "it counts days of the year, and the board weeks of a month");
    kept("<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "a change is not on the day that the rule names");
    kept("EET-2EEST,M3.4.4/50,M10.4.4/50", "a change is not on the day that the rule names");
    kept("LMT-1:05:21", "it has seconds");
}

TEST(ZoneRule, IsTheSameAfterBeingReadAndWritten) {
    for (const std::string rule :
         {"UTC0", "<+01>-1<+02>,M3.5.0,M10.5.0/3", "<-0330>3:30<-0230>,M3.2.0,M11.1.0",
          "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "<+01>-1<+00>0,M10.5.0,M3.5.0/1",
          "EST5<-04>,M3.2.0/0:30,M11.1.6/23:59", "<+0030>-0:30"}) {
        EXPECT_EQ(formatRule(parseRule(rule)), rule);
    }
}

/// The C library's opinion is the witness.
TEST(ZoneOutlook, AgreesWithTheCLibrary) {
    for (const std::string rule :
         {"<+01>-1<+02>,M3.5.0,M10.5.0/3", "EST5<-04>,M3.2.0,M11.1.0",
          "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "<+01>-1<+00>0,M10.5.0,M3.5.0/1",
          "<+12>-12<+13>,M9.5.0,M4.1.0/3", "AAA3<-02>,M1.1.1/0,M12.4.6/23:59"}) {
        const Variable variable("TZ", rule);
        ::tzset();
        const ZoneSettings zone = parseRule(rule);
        constexpr std::time_t step = 11 * 86400 + 1234;
        for (std::time_t moment = 1767225600; moment < 1830000000; moment += step) {
            std::tm local{};
            ::localtime_r(&moment, &local);
            const LocalTime now{std::chrono::seconds(moment + local.tm_gmtoff)};
            const Outlook future = outlook(zone, now, 2);
            EXPECT_EQ(future.isDst, local.tm_isdst > 0) << rule << " " << formatCivilTime(now);
            ASSERT_EQ(future.changes.size(), 2U);
            for (const ZoneChange& change : future.changes) {
                // On the scale of UTC, a second before and at the change.
                const int before = zone.offset + (change.toDst ? 0 : zone.dstOffset);
                const std::time_t at = change.before.time_since_epoch().count() - before * 60;
                ASSERT_GT(at, moment);
                const std::time_t justBefore = at - 1;
                ::localtime_r(&justBefore, &local);
                EXPECT_EQ(local.tm_isdst > 0, !change.toDst) << rule;
                ::localtime_r(&at, &local);
                EXPECT_EQ(local.tm_isdst > 0, change.toDst) << rule;
                EXPECT_EQ(change.after.time_since_epoch().count(), at + local.tm_gmtoff) << rule;
            }
        }
    }
    ::tzset();
}

TEST(ZoneOutlook, IsEmptyWithoutDaylightSavingTime) {
    const Outlook future = outlook(parseRule("UTC0"), LocalTime{}, 2);
    EXPECT_FALSE(future.isDst);
    EXPECT_TRUE(future.changes.empty());
}

}  // namespace
}  // namespace mngctl::test
