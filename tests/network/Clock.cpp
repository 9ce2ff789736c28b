// Wall clock. It is never set: the fake writes down what it was asked.

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>

namespace {

/// The time zone of the process, for as long as this lives.
class ProcessTimeZone {
public:
    explicit ProcessTimeZone(const char* zone) {
        if (const char* const before = std::getenv("TZ")) {
            previous = before;
            wasSet = true;
        }
        set(zone);
    }
    ~ProcessTimeZone() {
        if (wasSet) {
            set(previous.c_str());
        } else {
            unsetenv("TZ");
            tzset();
        }
    }
    ProcessTimeZone(const ProcessTimeZone&) = delete;
    ProcessTimeZone& operator=(const ProcessTimeZone&) = delete;

    static void set(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

private:
    std::string previous;
    bool wasSet = false;
};

/// An hour ahead of UTC, and another one between the last Sundays of March and October.
constexpr const char* withDaylightSaving = "TST-1DST,M3.5.0,M10.5.0/3";

class Clock : public EntityTest {
protected:
    ProcessTimeZone zone{"UTC0"};
};

Entries setTo(const std::string& moment) {
    return exclusively("settimeofday(" + moment + ", no zone) -> 0");
}

TEST_F(Clock, IsSetToLocalTime) {
    EXPECT_EQ(networkSetTimeInfo("31/12/2024 23:59:30"), 0);
    EXPECT_JOURNAL(setTo("1735689570.000000"));
    ProcessTimeZone::set("TST-2");
    EXPECT_EQ(networkSetTimeInfo("31/12/2024 23:59:30"), 0);
    EXPECT_JOURNAL(setTo("1735682370.000000"));
}

TEST_F(Clock, DaylightSavingIsTheSystemsDecision) {
    ProcessTimeZone::set(withDaylightSaving);
    EXPECT_EQ(networkSetTimeInfo("01/01/2024 12:00:00"), 0);
    EXPECT_JOURNAL(setTo("1704106800.000000"));
    EXPECT_EQ(networkSetTimeInfo("01/07/2024 12:00:00"), 0);
    EXPECT_JOURNAL(setTo("1719828000.000000"));
}

TEST_F(Clock, TextBehindTheTimeIsIgnored) {
    for (const char* const text :
         {"31/12/2024 23:59:30 UTC", "31/12/2024 23:59:30.75", "31/12/2024 23:59:30\n",
          "31/12/2024   23:59:30", "31/12/202423:59:30", "  31/12/2024 23:59:30"}) {
        EXPECT_EQ(networkSetTimeInfo(text), 0) << text;
        EXPECT_JOURNAL(setTo("1735689570.000000"));
    }
}

TEST_F(Clock, NumbersNeedNotBeFilledUp) {
    EXPECT_EQ(networkSetTimeInfo("1/2/2024 3:4:5"), 0);
    EXPECT_JOURNAL(setTo("1706756645.000000"));
}

TEST_F(Clock, DaysThatTheMonthDoesNotHaveRunIntoTheNext) {
    EXPECT_EQ(networkSetTimeInfo("31/02/2024 00:00:00"), 0);  // 2 March 2024
    EXPECT_JOURNAL(setTo("1709337600.000000"));
    EXPECT_EQ(networkSetTimeInfo("29/02/2023 00:00:00"), 0);  // 1 March 2023
    EXPECT_JOURNAL(setTo("1677628800.000000"));
    EXPECT_EQ(networkSetTimeInfo("29/02/2024 00:00:00"), 0);
    EXPECT_JOURNAL(setTo("1709164800.000000"));
}

TEST_F(Clock, TimesBefore1970AreTheKernelsBusiness) {
    platform.fail("settimeofday", 22);
    EXPECT_EQ(networkSetTimeInfo("31/12/1969 23:59:59"), -1);
    EXPECT_JOURNAL(exclusively("settimeofday(-1.000000, no zone) -> errno 22"));
}

TEST_F(Clock, TextsThatAreNoTimeFailSilently) {
    for (const char* const text :
         {"2024-12-31 23:59:30", "", " ", "now", "32/01/2024 00:00:00", "00/01/2024 00:00:00",
          "01/13/2024 00:00:00", "01/00/2024 00:00:00", "01/01/2024 24:00:00",
          "01/01/2024 00:60:00", "01/01/2024 00:00:62", "-1/01/2024 00:00:00", "01/01/2024",
          "01/01/2024 00:00", "01/01/20245 00:00:00", "23:59:30 31/12/2024",
          "01.01.2024 00:00:00"}) {
        EXPECT_EQ(networkSetTimeInfo(text), -1) << text;
        EXPECT_JOURNAL(exclusively());
    }
}

TEST_F(Clock, ThatMayNotBeSetFailsSilently) {
    platform.fail("settimeofday", 1);
    EXPECT_EQ(networkSetTimeInfo("31/12/2024 23:59:30"), -1);
    EXPECT_JOURNAL(exclusively("settimeofday(1735689570.000000, no zone) -> errno 1"));
}

TEST_F(Clock, IsReadWithTheTimeFirst) {
    platform.timeOfDay = {1735689570, 999999};
    Buffer<30> time;
    EXPECT_EQ(networkGetTimeInfo(time.text), 0);
    EXPECT_EQ(time.content(), "23:59:30 31/12/2024");
    EXPECT_EQ(time.text[20], '#');
    EXPECT_TRUE(time.isIntactBehind());
    EXPECT_JOURNAL(sharing());
}

TEST_F(Clock, IsReadInLocalTimeByTheZoneOfTheMoment) {
    platform.timeOfDay = {1719828000, 0};
    for (const auto& [zoneNow, text] :
         {std::pair{"UTC0", "10:00:00 01/07/2024"}, {withDaylightSaving, "12:00:00 01/07/2024"}}) {
        setenv("TZ", zoneNow, 1);  // by another process, so to speak: tzset() is not called here
        Buffer<30> time;
        EXPECT_EQ(networkGetTimeInfo(time.text), 0);
        EXPECT_EQ(time.content(), text);
    }
    journal();
}

TEST_F(Clock, LongestYearFits) {
    std::tm last{};
    last.tm_year = std::numeric_limits<int>::max() - 1900;
    last.tm_mon = 11;
    last.tm_mday = 31;
    last.tm_hour = 23;
    platform.timeOfDay = {timegm(&last), 0};
    Buffer<30> time;
    EXPECT_EQ(networkGetTimeInfo(time.text), 0);
    EXPECT_EQ(time.content(), "23:00:00 31/12/2147483647");
    EXPECT_TRUE(time.isIntactBehind());
    journal();
}

TEST_F(Clock, WithoutALocalTimeIsReported) {
    Buffer<30> time;
    platform.timeOfDay = {std::numeric_limits<std::time_t>::max(), 0};
    EXPECT_EQ(networkGetTimeInfo(time.text), -1);
    EXPECT_JOURNAL(sharing(error("localtime (&curtime) error")));
    platform.timeOfDay = {1735689570, 0};
    platform.fail("localtime_r", 75);
    EXPECT_EQ(networkGetTimeInfo(time.text), -1);
    EXPECT_JOURNAL(sharing("localtime_r() -> errno 75", error("localtime (&curtime) error")));
    EXPECT_TRUE(time.isUntouched());
}

TEST_F(Clock, BufferThatIsNullIsReported) {
    EXPECT_EQ(networkGetTimeInfo(nullptr), -1);
    EXPECT_JOURNAL(sharing(error("getTimeInfo failed! One of input args is NULL. time: (nil)")));
}

}  // namespace
