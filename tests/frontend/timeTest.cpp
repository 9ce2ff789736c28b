#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Time, IsShownWithTheZone) {
    CannedBoard board;
    EXPECT_EQ(board.run("time show"),
              done("local time: 2026-07-01 12:00:00\ntime zone: none (UTC0)\n" +
                   board.run("ntp show").out));
    const std::string json = board.run("time show --json").out;
    EXPECT_THAT(json, HasSubstr("  \"localTime\": \"2026-07-01 12:00:00\",\n"
                                "  \"timeZone\": \"\",\n"
                                "  \"rule\": \"UTC0\",\n"
                                "  \"ntp\": {\n"
                                "    \"enabled\": "));
}

TEST(Time, IsSetInEitherOrderOfTheDate) {
    CannedBoard board;
    EXPECT_EQ(board.run("time set 31/12/2024 23:59:30"),
              done("local time: 2024-12-31 23:59:30\ntime zone: none (UTC0)\n"));
    EXPECT_EQ(board.run("time set -q 2024-02-29 00:00"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre("set_time_info 31/12/2024 23:59:30", "get_time_info",
                            "get_sntp_timezone_info", "set_time_info 29/02/2024 00:00:00"));
}

TEST(Time, IsNotSetToWhatTheCalendarLacks) {
    CannedBoard board;
    const auto refused = [&](const std::string& words, const std::string& sentence) {
        EXPECT_EQ(board.run("time set " + words), wrongUsage(sentence)) << words;
    };
    refused("31/02/2024 10:00:00", "the calendar has no day 31/02/2024");
    refused("29/02/2023 10:00:00", "the calendar has no day 29/02/2023");
    refused("2024-13-01 10:00:00", "the calendar has no day 2024-13-01");
    refused("00/01/2024 10:00:00", "the calendar has no day 00/01/2024");
    refused("01/01/1969 10:00:00", "the clock can be set to the years 1970 to 2199, not 1969");
    refused("01/01/2200 10:00:00", "the clock can be set to the years 1970 to 2199, not 2200");
    const std::string date = "expected a date such as 31/12/2024 (day first) or 2024-12-31, not ";
    refused("31/12/2024x 10:00:00", date + "'31/12/2024x'");
    refused("1/1/2024 10:00:00", date + "'1/1/2024'");
    refused("12/31 10:00:00", date + "'12/31'");
    const std::string time = "expected a time from 00:00:00 to 23:59:59, not ";
    refused("31/12/2024 24:00:00", time + "'24:00:00'");
    refused("31/12/2024 23:60:00", time + "'23:60:00'");
    refused("31/12/2024 23:59:60", time + "'23:59:60'");
    refused("31/12/2024 23:59:30Z", time + "'23:59:30Z'");
    refused("31/12/2024 23", time + "'23'");
    const std::string words = "expected a date and a time such as 31/12/2024 23:59:30, got ";
    refused("31/12/2024 23:59:30 noon", words + "3 words");
    refused("31/12/2024", words + "1 word");
    refused("", words + "0 words");
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Time, TellsWhatSettingTheClockTakes) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(
        board.run("time set 31/12/2024 23:59:30"),
        refusedWith("the board refused to set the clock to 2024-12-31 23:59:30: result -1 "
                    "(failed); the business-logic process needs the right to set the machine's "
                    "clock (CAP_SYS_TIME), which nobody has in a box or a container"));
}

TEST(Time, IsNotInventedWhenTheBoardCannotTell) {
    const CannedBoard board({"--fail-half-way", "get_time_info"});
    EXPECT_EQ(board.run("time show"),
              refusedWith("the board cannot tell the time: result -1 (failed)"));
}

}  // namespace
}  // namespace mngctl::test
