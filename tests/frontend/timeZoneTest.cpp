#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* central = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(TimeZone, IsShownFromTheStart) {
    CannedBoard board;
    EXPECT_EQ(board.run("time zone show"),
              done("time zone: none\nrule: UTC0\nnow: UTC+00:00\nnext changes: none\n"));
    EXPECT_THAT(board.requests(), ElementsAre("get_sntp_timezone_info", "get_time_info"));
}

TEST(TimeZone, IsSetByARule) {
    CannedBoard board;
    EXPECT_EQ(board.run(std::string("time zone set office ") + central),
              done("time zone: office\n"
                   "rule: office-1<+02>,M3.5.0,M10.5.0/3\n"
                   "now: UTC+02:00, daylight-saving time\n"
                   "next changes: 2026-10-25 03:00:00 becomes 02:00:00 (UTC+01:00)\n"
                   "              2027-03-28 02:00:00 becomes 03:00:00 (UTC+02:00)\n"));
    EXPECT_THAT(
        board.requests(),
        ElementsAre(R"(set_sntp_timezone {"offset":60,"name":"office"})",
                    R"(set_sntp_timezone_dst_start {"month":3,"week":5,"dayInWeek":7,"time":200})",
                    R"(set_sntp_timezone_dst_end {"month":10,"week":5,"dayInWeek":7,"time":300})",
                    "set_sntp_timezone_dst_offset 60", "get_sntp_timezone_info", "get_time_info"));
    EXPECT_EQ(board.run("time zone show --json"), done(laidOut(R"({"name": "office",
              "rule": "office-1<+02>,M3.5.0,M10.5.0/3", "offsetMinutes": 60,
              "daylightSaving": {"offsetMinutes": 60, "start": "M3.5.0", "end": "M10.5.0/3",
                "inForce": true},
              "nextChanges": [{"from": "2026-10-25 03:00:00", "to": "2026-10-25 02:00:00",
                  "offsetMinutes": 60},
                {"from": "2027-03-28 02:00:00", "to": "2027-03-28 03:00:00",
                  "offsetMinutes": 120}]})")));
}

TEST(TimeZone, WithoutDaylightSavingTimeLeavesItsDatesAlone) {
    CannedBoard board;
    EXPECT_EQ(board.run("time zone set -q Asia/Kolkata IST-5:30"), done(""));
    EXPECT_THAT(board.requests(),
                ElementsAre(R"(set_sntp_timezone {"offset":330,"name":"Asia/Kolkata"})",
                            "set_sntp_timezone_dst_offset 0"));
}

TEST(TimeZone, IsLookedUpInTheZoneDatabase) {
    const TemporaryDirectory directory;
    const Variable database("TZDIR", directory.path());
    writeFile(directory / "Town", "TZif2......\nCET-1CEST,M3.5.0,M10.5.0/3\n");
    writeFile(directory / "Old", "TZif\n\n");
    writeFile(directory / "Empty", "TZif2.....\n\n");
    const CannedBoard board;
    EXPECT_EQ(board.run("time zone set -q Town"), done(""));
    EXPECT_EQ(board.run("time zone set Nowhere"),
              wrongUsage("there is no zone 'Nowhere' in " + directory.path().string() +
                         ": give its rule after the name, such as "
                         "CET-1CEST,M3.5.0,M10.5.0/3"));
    for (const std::string name : {"Old", "Empty"}) {
        EXPECT_EQ(board.run("time zone set " + name),
                  wrongUsage(directory.path().string() + "/" + name +
                             " has no rule for the time to come: give one after the "
                             "name"));
    }
}

TEST(TimeZone, HasANameThatTheBoardCanKeep) {
    CannedBoard board;
    const auto outcome = [&](const std::string& name) {
        return board.run({"time", "zone", "set", "-q", name, "UTC0"});
    };
    EXPECT_EQ(outcome(std::string(99, 'z')), done(""));
    for (const std::size_t size : {150U, 199U}) {
        EXPECT_EQ(outcome(std::string(size, 'z')),
                  (Outcome{Exit::Done, "",
                           "mngctl: the board keeps all " + std::to_string(size) +
                               " characters of this name but shows the first 99 only\n"}));
    }
    board.requests();
    EXPECT_EQ(outcome(std::string(300, 'z')),
              wrongUsage("the name of a time zone has at most 199 characters, not 300"));
    EXPECT_EQ(outcome(""), wrongUsage("the name of the time zone is empty"));
    for (const std::string name : {"/etc/passwd", "../passwd", "a b", "Z\xC3\xBCrich"}) {
        EXPECT_EQ(outcome(name).exit, Exit::Usage) << name;
    }
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(TimeZone, TellsHowFarARefusedChangeCame) {
    const CannedBoard board({"--fail-half-way", "set_sntp_timezone_dst_end"});
    EXPECT_EQ(
        board.run(std::string("time zone set CET ") + central),
        refusedWith("the board refused to set the end of daylight-saving time: result -1 "
                    "(failed); done before that: set the time zone CET with UTC+01:00, set the "
                    "start of daylight-saving time"));
}

}  // namespace
}  // namespace mngctl::test
