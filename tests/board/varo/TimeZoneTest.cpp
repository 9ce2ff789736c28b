#include "tests/board/varo/VaroTest.h"

#include <functional>

namespace {

using namespace varotest;
using Zone = varoLib_s_sntpTimeZone;

class TimeZone : public VaroTest {
protected:
    static Zone read() { return readBy(varoGetSntpTimeZone); }

    static Zone factory() { return named("NONE", 0, 0); }

    static Zone named(const std::string& name, std::int32_t offset, std::int32_t dstOffset) {
        Zone zone{"", offset, dstOffset, 3, 4, 7, 200, 10, 5, 7, 200, 0};
        setText(zone.name, name);
        return zone;
    }

    /// Apart from the preset.
    static void expectEqual(const Zone& left, const Zone& right) {
        const auto numbers = [](const Zone& zone) {
            return std::vector<int>{zone.offset,    zone.dstOffset,     zone.dstSMonth,
                                    zone.dstSWeek,  zone.dstSDayInWeek, zone.dstSTime,
                                    zone.dstEMonth, zone.dstEWeek,      zone.dstEDayInWeek,
                                    zone.dstETime};
        };
        EXPECT_STREQ(left.name, right.name);
        EXPECT_EQ(numbers(left), numbers(right));
    }

    static int update(const std::function<void(Zone&)>& edit) {
        Zone zone = named("Europe/Vienna", 60, 60);
        edit(zone);
        return varoUpdateSntpTimeZone(&zone);
    }

    /// A change is taken as it is, or refused.
    void expectTaken(const std::function<void(Zone&)>& edit) {
        EXPECT_EQ(update(edit), varo::success);
        Zone expected = named("Europe/Vienna", 60, 60);
        edit(expected);
        expectEqual(read(), expected);
    }
    void expectRefused(const std::function<void(Zone&)>& edit, const std::string& reason) {
        const Zone before = read();
        log.take();
        EXPECT_EQ(update(edit), varo::invalidValue) << reason;
        EXPECT_THAT(log.lines(), ElementsAre("3 varoUpdateSntpTimeZone: " + reason));
        expectEqual(read(), before);
    }
};

TEST_F(TimeZone, IsNoneFromTheFactory) {
    expectEqual(read(), factory());
    EXPECT_EQ(read().preset, 1);
}

TEST_F(TimeZone, IsKeptOverARestart) {
    Zone zone = named("Europe/Vienna", 60, 60);
    zone.preset = 77;
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), varo::success);
    EXPECT_EQ(zone.preset, 77);
    ASSERT_EQ(restart(), varo::success);
    expectEqual(read(), zone);
    EXPECT_EQ(read().preset, 0);
}

TEST_F(TimeZone, HasThePresetWhenItIsTheFactoryOneAgain) {
    Zone zone = named("NONE", 0, 60);
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), varo::success);
    EXPECT_EQ(read().preset, 0);
    zone = factory();
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), varo::success);
    EXPECT_EQ(read().preset, 1);
    zone.dstETime = 300;
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), varo::success);
    EXPECT_EQ(read().preset, 0);
}

TEST_F(TimeZone, HasOffsetsOfTheEarth) {
    expectTaken([](Zone& zone) { zone.offset = -720; });
    expectTaken([](Zone& zone) { zone.offset = 840; });
    expectTaken([](Zone& zone) { zone.dstOffset = -180; });
    expectTaken([](Zone& zone) { zone.dstOffset = 180; });
    expectRefused([](Zone& zone) { zone.offset = -721; }, "offset: -721 is not in -720 to 840");
    expectRefused([](Zone& zone) { zone.offset = 841; }, "offset: 841 is not in -720 to 840");
    expectRefused([](Zone& zone) { zone.dstOffset = 181; },
                  "daylight-saving offset: 181 is not in -180 to 180");
}

TEST_F(TimeZone, HasDatesOfTheCalendar) {
    expectTaken([](Zone& zone) { zone.dstSMonth = 1; });
    expectTaken([](Zone& zone) { zone.dstSMonth = 12; });
    expectTaken([](Zone& zone) { zone.dstSWeek = 1; });
    expectTaken([](Zone& zone) { zone.dstSDayInWeek = 1; });
    expectTaken([](Zone& zone) { zone.dstSTime = 0; });
    expectTaken([](Zone& zone) { zone.dstETime = 2359; });
    expectRefused([](Zone& zone) { zone.dstSMonth = 13; }, "start month: 13 is not in 1 to 12");
    expectRefused([](Zone& zone) { zone.dstSMonth = 0; }, "start month: 0 is not in 1 to 12");
    expectRefused([](Zone& zone) { zone.dstSWeek = 6; }, "start week: 6 is not in 1 to 5");
    expectRefused([](Zone& zone) { zone.dstEWeek = 0; }, "end week: 0 is not in 1 to 5");
    expectRefused([](Zone& zone) { zone.dstEDayInWeek = 8; }, "end day: 8 is not in 1 to 7");
    expectRefused([](Zone& zone) { zone.dstEDayInWeek = -1; }, "end day: -1 is not in 1 to 7");
    expectRefused([](Zone& zone) { zone.dstETime = 2400; }, "end time: 2400 is not in 0 to 2359");
    expectRefused([](Zone& zone) { zone.dstSTime = 260; },
                  "start time: 260 is not an hour and a minute");
    expectRefused([](Zone& zone) { zone.dstSTime = -1; }, "start time: -1 is not in 0 to 2359");
}

TEST_F(TimeZone, TakesADateOfZerosAsNone) {
    const auto clearStart = [](Zone& zone) {
        zone.dstSMonth = zone.dstSWeek = zone.dstSDayInWeek = 0;
        zone.dstSTime = 0;
    };
    const auto clearEnd = [](Zone& zone) {
        zone.dstEMonth = zone.dstEWeek = zone.dstEDayInWeek = 0;
        zone.dstETime = 0;
    };
    expectTaken(clearStart);
    expectTaken(clearEnd);
    expectTaken([](Zone& zone) { zone = {}; });
    expectRefused(
        [&](Zone& zone) {
            clearStart(zone);
            zone.dstSTime = 200;
        },
        "start month: 0 is not in 1 to 12");
}

TEST_F(TimeZone, HasANameThatStaysBelowTheZoneDirectory) {
    expectTaken([](Zone& zone) { setText(zone.name, ""); });
    expectTaken([](Zone& zone) { setText(zone.name, std::string(199, 'z')); });
    expectTaken([](Zone& zone) { setText(zone.name, "America/Argentina/Buenos_Aires"); });
    expectTaken([](Zone& zone) { setText(zone.name, "Etc/GMT+1"); });
    const std::string reason = "name: it is not that of a time zone";
    for (const char* name :
         {"/etc/passwd", "../passwd", "Europe/../../passwd", "a b", "a\n", "\xc3\xa9"}) {
        expectRefused([&](Zone& zone) { setText(zone.name, name); }, reason);
    }
    expectRefused([](Zone& zone) { std::memset(zone.name, 'z', sizeof zone.name); },
                  "name: the text is not terminated within its 200 bytes");
}

TEST_F(TimeZone, StoresNothingOfWhatFollowsTheName) {
    Zone zone = factory();
    setText(zone.name, std::string("NONE\0rest", 9));
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), varo::success);
    expectEqual(read(), factory());
    EXPECT_EQ(read().preset, 1);
}

TEST_F(TimeZone, ChangesTheNameAlone) {
    ASSERT_EQ(update([](Zone&) {}), varo::success);
    Zone other{};
    setText(other.name, "Asia/Tokyo");
    other.offset = 9999;
    other.dstSMonth = 99;
    EXPECT_EQ(varoUpdateSntpTimeZoneAlt(&other), varo::success);
    expectEqual(read(), named("Asia/Tokyo", 60, 60));
    setText(other.name, "../Tokyo");
    EXPECT_EQ(varoUpdateSntpTimeZoneAlt(&other), varo::invalidValue);
    expectEqual(read(), named("Asia/Tokyo", 60, 60));
}

TEST_F(TimeZone, RefusesNull) {
    EXPECT_EQ(varoGetSntpTimeZone(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateSntpTimeZone(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoUpdateSntpTimeZoneAlt(nullptr), varo::invalidArgument);
}

}  // namespace
