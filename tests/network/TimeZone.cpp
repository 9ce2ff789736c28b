// Time zone and daylight-saving rule.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace {

const std::string zoneRead = R"(varoGetSntpTimeZone() -> 0 {name="Europe/Vaduz" offset=60 dst=30)"
                             R"( start=3/5/7/200 end=10/5/7/300 preset=1})";

class TimeZone : public EntityTest {
protected:
    TimeZone() { platform.time.zone = stored; }

    const varoLib_s_sntpTimeZone stored = {"Europe/Vaduz", 60, 30, 3, 5, 7, 200, 10, 5, 7, 300, 1};
};

TEST_F(TimeZone, OffsetAloneCannotBeSet) {
    EXPECT_EQ(networkSetTimezoneOffset(60), -1);
    EXPECT_JOURNAL(exclusively());
    logEverything();
    EXPECT_EQ(networkSetTimezoneOffset(60), -1);
    EXPECT_EQ(networkSetTimezoneOffset(-2147483647), -1);
    EXPECT_JOURNAL(exclusively(trace("setTimezoneOffset: offset=60")),
                   exclusively(trace("setTimezoneOffset: offset=-2147483647")));
    EXPECT_EQ(platform.time.zone.offset, 60);
}

TEST_F(TimeZone, NameIsWrittenByItself) {
    EXPECT_EQ(networkSetTimezoneName("UTC"), 0);
    EXPECT_JOURNAL(exclusively(zoneRead, R"(varoUpdateSntpTimeZoneAlt({name="UTC" offset=60 dst=30)"
                                         R"( start=3/5/7/200 end=10/5/7/300 preset=1}) -> 0)"));
    EXPECT_STREQ(platform.time.zone.name, "UTC");
}

TEST_F(TimeZone, NameAndOffsetAreWrittenWithTheWholeRecord) {
    EXPECT_EQ(networkSetSntpTimezone(-180, "America/Bahia"), 0);
    EXPECT_JOURNAL(exclusively(zoneRead,
                               R"(varoUpdateSntpTimeZone({name="America/Bahia" offset=-180 dst=30)"
                               R"( start=3/5/7/200 end=10/5/7/300 preset=1}) -> 0)"));
}

TEST_F(TimeZone, StartOfDaylightSavingKeepsTheRest) {
    EXPECT_EQ(networkSetSntpTimezoneDstStart(4, 1, 6, 130), 0);
    EXPECT_JOURNAL(exclusively(zoneRead,
                               R"(varoUpdateSntpTimeZone({name="Europe/Vaduz" offset=60 dst=30)"
                               R"( start=4/1/6/130 end=10/5/7/300 preset=1}) -> 0)"));
}

TEST_F(TimeZone, EndOfDaylightSavingKeepsTheRest) {
    EXPECT_EQ(networkSetSntpTimezoneDstEnd(9, 2, 5, -1), 0);
    EXPECT_JOURNAL(exclusively(zoneRead,
                               R"(varoUpdateSntpTimeZone({name="Europe/Vaduz" offset=60 dst=30)"
                               R"( start=3/5/7/200 end=9/2/5/-1 preset=1}) -> 0)"));
}

TEST_F(TimeZone, OffsetOfDaylightSavingKeepsTheRest) {
    EXPECT_EQ(networkSetSntpTimezoneDstOffset(-15), 0);
    EXPECT_JOURNAL(exclusively(zoneRead,
                               R"(varoUpdateSntpTimeZone({name="Europe/Vaduz" offset=60 dst=-15)"
                               R"( start=3/5/7/200 end=10/5/7/300 preset=1}) -> 0)"));
}

TEST_F(TimeZone, MonthsWeeksAndDaysKeepTheirLow16Bits) {
    const struct {
        unsigned int given;
        std::string stored;
    } rows[] = {{0, "0"},          {13, "13"},         {65539, "3"},
                {32768, "-32768"}, {0xffffffff, "-1"}, {0x7fff0005, "5"}};
    for (const auto& row : rows) {
        EXPECT_EQ(networkSetSntpTimezoneDstStart(row.given, 1, 2, 0), 0);
        EXPECT_EQ(networkSetSntpTimezoneDstStart(1, row.given, 2, 0), 0);
        EXPECT_EQ(networkSetSntpTimezoneDstStart(1, 2, row.given, 0), 0);
        EXPECT_EQ(networkSetSntpTimezoneDstEnd(row.given, 1, 2, 0), 0);
        EXPECT_EQ(networkSetSntpTimezoneDstEnd(1, row.given, 2, 0), 0);
        EXPECT_EQ(networkSetSntpTimezoneDstEnd(1, 2, row.given, 0), 0);
        std::vector<std::string> written;
        for (const std::string& entry : journal()) {
            if (entry.starts_with("varoUpdate")) {
                const std::size_t start = entry.find(" start=");
                written.push_back(entry.substr(start, entry.find(" preset=") - start));
            }
        }
        const std::string lastStart = " start=1/2/" + row.stored + "/0";
        EXPECT_THAT(written, testing::ElementsAre(" start=" + row.stored + "/1/2/0 end=10/5/7/300",
                                                  " start=1/" + row.stored + "/2/0 end=10/5/7/300",
                                                  lastStart + " end=10/5/7/300",
                                                  lastStart + " end=" + row.stored + "/1/2/0",
                                                  lastStart + " end=1/" + row.stored + "/2/0",
                                                  lastStart + " end=1/2/" + row.stored + "/0"));
        platform.time.zone = stored;
    }
}

TEST_F(TimeZone, NamesThatAreNullAreReportedBeforeTheLibraryIsCalled) {
    EXPECT_EQ(networkSetTimezoneName(nullptr), -1);
    EXPECT_EQ(networkSetSntpTimezone(60, nullptr), -1);
    EXPECT_JOURNAL(
        exclusively(error("setTimezoneName failed! One of input args is NULL. name: (nil)")),
        exclusively(error("setSntpTimezone failed! One of input args is NULL. linuxName: (nil)")));
}

/// A setter of the time zone, and what it makes of a record that is all zero, and of the one that
/// is stored.
struct Setter {
    std::string name;
    std::string update;
    int (*call)();
    std::string written;
    std::string changed;
};

class TimeZoneSetter : public TimeZone, public testing::WithParamInterface<Setter> {};

TEST_P(TimeZoneSetter, WritesEvenIfTheRecordCannotBeRead) {
    platform.fail("varoGetSntpTimeZone", 5);
    EXPECT_EQ(GetParam().call(), 0);
    EXPECT_JOURNAL(exclusively("varoGetSntpTimeZone() -> 5",
                               error(GetParam().name + ": varoGetSntpTimeZone has failed!"),
                               GetParam().update + "(" + GetParam().written + ") -> 0"));
}

TEST_P(TimeZoneSetter, DropsWhatAFailedReadLeft) {
    platform.time.zoneLeftByFailure.emplace();
    platform.time.zoneLeftByFailure->preset = 77;
    platform.fail("varoGetSntpTimeZone", 5);
    EXPECT_EQ(GetParam().call(), 0);
    EXPECT_JOURNAL(exclusively("varoGetSntpTimeZone() -> 5",
                               error(GetParam().name + ": varoGetSntpTimeZone has failed!"),
                               GetParam().update + "(" + GetParam().written + ") -> 0"));
}

TEST_P(TimeZoneSetter, ReportsAFailedWrite) {
    platform.fail("varoGetSntpTimeZone", 5);
    platform.fail(GetParam().update, -6);
    EXPECT_EQ(GetParam().call(), -1);
    EXPECT_JOURNAL(exclusively(
        "varoGetSntpTimeZone() -> 5", error(GetParam().name + ": varoGetSntpTimeZone has failed!"),
        GetParam().update + "(" + GetParam().written + ") -> -6",
        error(GetParam().name + ": " + GetParam().update + " has failed! Return value: -6")));
}

TEST_P(TimeZoneSetter, ReportsAFailedWriteOfTheRecordThatWasRead) {
    platform.fail(GetParam().update, -6);
    EXPECT_EQ(GetParam().call(), -1);
    EXPECT_JOURNAL(exclusively(
        zoneRead, GetParam().update + "(" + GetParam().changed + ") -> -6",
        error(GetParam().name + ": " + GetParam().update + " has failed! Return value: -6")));
    EXPECT_TRUE(areSame(platform.time.zone, stored));
}

const std::string whole = "varoUpdateSntpTimeZone";

INSTANTIATE_TEST_SUITE_P(
    Setters, TimeZoneSetter,
    testing::Values(Setter{"setTimezoneName", "varoUpdateSntpTimeZoneAlt",
                           [] { return networkSetTimezoneName("UTC"); },
                           R"({name="UTC" offset=0 dst=0 start=0/0/0/0 end=0/0/0/0 preset=0})",
                           R"({name="UTC" offset=60 dst=30)"
                           R"( start=3/5/7/200 end=10/5/7/300 preset=1})"},
                    Setter{"setSntpTimezone", whole,
                           [] { return networkSetSntpTimezone(90, "UTC"); },
                           R"({name="UTC" offset=90 dst=0 start=0/0/0/0 end=0/0/0/0 preset=0})",
                           R"({name="UTC" offset=90 dst=30)"
                           R"( start=3/5/7/200 end=10/5/7/300 preset=1})"},
                    Setter{"setSntpTimezoneDstStart", whole,
                           [] { return networkSetSntpTimezoneDstStart(1, 2, 3, 4); },
                           R"({name="" offset=0 dst=0 start=1/2/3/4 end=0/0/0/0 preset=0})",
                           R"({name="Europe/Vaduz" offset=60 dst=30)"
                           R"( start=1/2/3/4 end=10/5/7/300 preset=1})"},
                    Setter{"setSntpTimezoneDstEnd", whole,
                           [] { return networkSetSntpTimezoneDstEnd(1, 2, 3, 4); },
                           R"({name="" offset=0 dst=0 start=0/0/0/0 end=1/2/3/4 preset=0})",
                           R"({name="Europe/Vaduz" offset=60 dst=30)"
                           R"( start=3/5/7/200 end=1/2/3/4 preset=1})"},
                    Setter{"setSntpTimezoneDstOffset", whole,
                           [] { return networkSetSntpTimezoneDstOffset(45); },
                           R"({name="" offset=0 dst=45 start=0/0/0/0 end=0/0/0/0 preset=0})",
                           R"({name="Europe/Vaduz" offset=60 dst=45)"
                           R"( start=3/5/7/200 end=10/5/7/300 preset=1})"}),
    [](const auto& setter) { return setter.param.name; });

TEST_F(TimeZone, LongNamesAreCutTo199AndReadCutTo99) {
    for (const std::size_t length : {0U, 1U, 99U, 100U, 150U, 199U, 200U, 300U}) {
        std::string name;
        for (std::size_t i = 0; i < length; ++i) {
            name += static_cast<char>('a' + i % 26);
        }
        for (const bool withOffset : {false, true}) {
            platform.time.zone = stored;
            EXPECT_EQ(withOffset ? networkSetSntpTimezone(1, name.c_str())
                                 : networkSetTimezoneName(name.c_str()),
                      0);
            EXPECT_EQ(platform.time.zone.name, name.substr(0, 199));
            Buffer<200> buffer;
            int offset = 0;
            EXPECT_EQ(networkGetTimezoneInfo(&offset, buffer.text), 0);
            EXPECT_EQ(buffer.content(), name.substr(0, 199));
            EXPECT_TRUE(buffer.isIntactBehind());
            auto info = filled<rpcNetworkSntpTimezone>('#');
            EXPECT_EQ(networkGetSntpTimezoneInfo(&info), 0);
            EXPECT_EQ(std::string(info.name), name.substr(0, 99));
        }
    }
    journal();
}

TEST_F(TimeZone, NameWithoutItsEndIsReadWithinItsField) {
    std::memset(platform.time.zone.name, 'z', sizeof platform.time.zone.name);
    Buffer<200> buffer;
    int offset = 0;
    EXPECT_EQ(networkGetTimezoneInfo(&offset, buffer.text), 0);
    EXPECT_EQ(buffer.content(), std::string(199, 'z'));
    EXPECT_TRUE(buffer.isIntactBehind());
    journal();
}

TEST_F(TimeZone, NameAndOffsetAreRead) {
    Buffer<200> name;
    int offset = 0;
    EXPECT_EQ(networkGetTimezoneInfo(&offset, name.text), 0);
    EXPECT_EQ(offset, 60);
    EXPECT_EQ(name.content(), "Europe/Vaduz");
    EXPECT_EQ(name.text[13], '#');
    EXPECT_JOURNAL(sharing(zoneRead));
}

TEST_F(TimeZone, ThatCannotBeReadLeavesNameAndOffsetAlone) {
    platform.fail("varoGetSntpTimeZone", 5);
    Buffer<200> name;
    int offset = 77;
    EXPECT_EQ(networkGetTimezoneInfo(&offset, name.text), -1);
    EXPECT_EQ(offset, 77);
    EXPECT_TRUE(name.isUntouched());
    EXPECT_JOURNAL(sharing("varoGetSntpTimeZone() -> 5",
                           error("getTimezoneInfo: varoGetSntpTimeZone has failed!")));
}

TEST_F(TimeZone, PlacesThatAreNullAreReported) {
    Buffer<200> name;
    int offset = 77;
    const auto at = [](const void* place) {
        char text[32];
        std::snprintf(text, sizeof text, "%p", place);
        return std::string(text);
    };
    const std::string message = "getTimezoneInfo failed! One of input args is NULL. offset: ";
    EXPECT_EQ(networkGetTimezoneInfo(nullptr, name.text), -1);
    EXPECT_EQ(networkGetTimezoneInfo(&offset, nullptr), -1);
    EXPECT_EQ(networkGetTimezoneInfo(nullptr, nullptr), -1);
    EXPECT_JOURNAL(sharing(error(message + "(nil), name: " + at(name.text))),
                   sharing(error(message + at(&offset) + ", name: (nil)")),
                   sharing(error(message + "(nil), name: (nil)")));
    EXPECT_EQ(offset, 77);
    EXPECT_TRUE(name.isUntouched());
}

TEST_F(TimeZone, WholeRecordIsReadAndTraced) {
    platform.time.zone.dstSMonth = -3;
    platform.time.zone.dstEDayInWeek = std::numeric_limits<std::int16_t>::min();
    logEverything();
    auto info = filled<rpcNetworkSntpTimezone>('#');
    EXPECT_EQ(networkGetSntpTimezoneInfo(&info), 0);
    EXPECT_STREQ(info.name, "Europe/Vaduz");
    EXPECT_EQ(info.offset, 60);
    EXPECT_EQ(info.dstOffset, 30);
    EXPECT_EQ(info.dstSMonth, -3);
    EXPECT_EQ(info.dstSWeek, 5);
    EXPECT_EQ(info.dstSDayInWeek, 7);
    EXPECT_EQ(info.dstSTime, 200);
    EXPECT_EQ(info.dstEMonth, 10);
    EXPECT_EQ(info.dstEWeek, 5);
    EXPECT_EQ(info.dstEDayInWeek, -32768);
    EXPECT_EQ(info.dstETime, 300);
    EXPECT_EQ(info.preset, 1);
    EXPECT_JOURNAL(
        sharing(R"(varoGetSntpTimeZone() -> 0 {name="Europe/Vaduz" offset=60 dst=30)"
                R"( start=-3/5/7/200 end=10/5/-32768/300 preset=1})",
                trace("getSntpTimezoneInfo: name=Europe/Vaduz, offset=60, dstOffset=30, "
                      "dstSMonth=-3, dstSWeek=5, dstSDayInWeek=7, dstSTime=200, dstEMonth=10, "
                      "dstEWeek=5, dstEDayInWeek=-32768, dstETime=300, preset=1")));
}

TEST_F(TimeZone, WholeRecordThatCannotBeReadIsReported) {
    platform.fail("varoGetSntpTimeZone", 5);
    auto info = untouched<rpcNetworkSntpTimezone>();
    EXPECT_EQ(networkGetSntpTimezoneInfo(&info), -1);
    EXPECT_TRUE(isUntouched(info));
    EXPECT_JOURNAL(sharing("varoGetSntpTimeZone() -> 5",
                           error("getSntpTimezoneInfo: varoGetSntpTimeZone has failed!")));
}

}  // namespace
