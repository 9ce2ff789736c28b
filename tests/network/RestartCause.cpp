// What a new entity tells of the last restart. The file that holds the cause lies in a mount
// namespace of this process.

#include "fake/quoted.h"
#include "network/EntityTest.h"
#include "network/library.h"
#include "network/webEvents.h"
#include "support/CapturedOutput.h"
#include "support/files.h"
#include "support/privateNamespaces.h"

#include <cstdlib>
#include <filesystem>
#include <limits>

namespace {

using testing::ElementsAre;

constexpr const char* causeFile = "/var/log/resetCause";

/// 2024-03-01 10:20:30 and 2024-07-01 22:30:05, UTC.
constexpr std::time_t winter = 1709288430;
constexpr std::time_t summer = 1719873005;

const std::string winterText = "2024-03-01T10:20:30Z";

class PrivateLogs : public testing::Environment {
public:
    void SetUp() override {
        enterPrivateNamespaces(CLONE_NEWNS);
        coverDirectory("/var/log");
    }
};

testing::Environment* const environment = testing::AddGlobalTestEnvironment(new PrivateLogs);

std::string message(const std::string& time, const std::string& cause) {
    return "events={\n"
           "  \"ietf-restconf:notification\": {\n"
           "    \"eventTime\": \"" +
           time +
           "\",\n"
           "    \"VANTORIX-MSAN-MIB:RebootStatusIndication\": {\n"
           "      \"lastRestartCause\": \"" +
           cause +
           "\"\n"
           "    }\n"
           "  }\n"
           "}";
}

std::string sent(const std::string& text) {
    return "msgsnd(500, 1001 " + fake::quoted(text) + ", 2000, 04000) -> 0";
}

class RestartCause : public EntityTest {
protected:
    RestartCause() {
        // The entity of this test has told already, of a file that the test has not written yet.
        platform.ipc = {};
        HassesComm_Msgq_network = {};
        platform.unixTime = winter;
    }

    void SetUp() override { setTimeZone("UTC0"); }

    void TearDown() override {
        std::filesystem::remove_all(causeFile);
        unsetenv("TZ");
        if (!HasFailure()) {
            EXPECT_EQ(output.take(), "");
        }
        EntityTest::TearDown();
    }

    static void setTimeZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

    /// The text that is told when the file has this content.
    std::string toldOf(const std::string& content) {
        writeFile(causeFile, content);
        return told();
    }
    std::string told() {
        announceRestartCause();
        journal();
        const auto& messages = platform.ipc.queues.at(500).messages;
        EXPECT_EQ(messages.back().type, 1001);
        EXPECT_EQ(messages.back().area.size(), 2000U);
        return messages.back().text();
    }

    CapturedOutput output;
};

TEST_F(RestartCause, IsToldByANewEntityBeforeItTurnsToVaroLib) {
    writeFile(causeFile, "power-on\nwatchdog\n");
    remakeEntity();
    EXPECT_JOURNAL("varoLibDestroy()", R"(~ACLContainer_t("br0", "acl"))",
                   R"(~BLEntity("network"))", R"(BLEntity("network"))",
                   R"(ACLContainer_t("br0", "acl"))", "varoGetMyBoardPos() -> 0 5",
                   "msgget(1708033, 01666) -> 500",
                   "msgctl(500, IPC_STAT) -> 0 qnum=0 qbytes=16384 uid=11 gid=12 mode=0666",
                   "msgctl(500, IPC_SET qbytes=10000000 uid=11 gid=12 mode=0666) -> 0",
                   sent(message(winterText, "power-on")), "varoLibInit() -> 0",
                   "varoGetInternalConfig() -> 0 {severity=3}");
    EXPECT_EQ(entity().mngVlanId, 1U);
    EXPECT_EQ(entity().boardPos, 5U);
    EXPECT_EQ(entity().severity, 3);
}

TEST_F(RestartCause, IsToldOnceByEachEntityOnTheSameQueue) {
    remakeEntity();
    remakeEntity();
    EXPECT_EQ(platform.ipc.queues.size(), 1U);
    EXPECT_EQ(platform.ipc.queues.at(500).messages.size(), 2U);
    EXPECT_THAT(journal(), testing::Contains("msgget(1708033, 01666) -> 500").Times(1));
}

TEST_F(RestartCause, StartUpForgetsTheRemoteAccessRules) {
    entity().ruleIdx = 2;
    entity().ruleIds[0] = 101;
    entity().ruleIds[199] = 102;
    entity().mngVlanId = 7;
    entity().networkBleInit();
    EXPECT_EQ(entity().ruleIdx, 0U);
    EXPECT_EQ(entity().ruleIds[0], 0U);
    EXPECT_EQ(entity().ruleIds[199], 0U);
    EXPECT_EQ(entity().mngVlanId, 1U);
    journal();
}

TEST_F(RestartCause, IsEmptyWithoutAFile) { EXPECT_EQ(told(), message(winterText, "")); }

TEST_F(RestartCause, IsTheFirstLineOfTheFile) {
    EXPECT_EQ(toldOf(""), message(winterText, ""));
    EXPECT_EQ(toldOf("\n"), message(winterText, ""));
    EXPECT_EQ(toldOf("\nwatchdog\n"), message(winterText, ""));
    EXPECT_EQ(toldOf("power-on"), message(winterText, "power-on"));
    EXPECT_EQ(toldOf("power-on\n"), message(winterText, "power-on"));
    EXPECT_EQ(toldOf("power-on\nwatchdog\n"), message(winterText, "power-on"));
}

TEST_F(RestartCause, IsToldAsItWasRead) {
    for (const std::string cause : {R"(a "quoted" cause)", R"(back\slash \n \u0000)", " blanks  ",
                                    "tab\tand\r", "\x01\x02\x1b[0m\x7f", "caf\xc3\xa9 \xff\x80",
                                    "%s%n%d", "\", \"lastRestartCause\": \"forged"}) {
        EXPECT_EQ(toldOf(cause + "\nwatchdog\n"), message(winterText, cause));
    }
}

TEST_F(RestartCause, LongOneIsCutWithTheMessage) {
    const std::size_t around = message(winterText, "").size();
    const std::string fits(1999 - around, 'c');
    EXPECT_EQ(toldOf(fits), message(winterText, fits));
    EXPECT_EQ(toldOf(fits + "d"), message(winterText, fits + "d").substr(0, 1999));
    const std::string huge(5000, 'e');
    EXPECT_EQ(toldOf(huge), message(winterText, huge).substr(0, 1999));
}

TEST_F(RestartCause, IsEmptyWhenADirectoryStandsInThePlaceOfTheFile) {
    std::filesystem::create_directory(causeFile);
    EXPECT_EQ(told(), message(winterText, ""));
}

TEST_F(RestartCause, TimeIsLocalThoughItIsMarkedAsUtc) {
    setTimeZone("IST-5:30");
    EXPECT_EQ(told(), message("2024-03-01T15:50:30Z", ""));
    setTimeZone("EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(told(), message("2024-03-01T05:20:30Z", ""));
    setTimeZone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(told(), message("2024-03-01T11:20:30Z", ""));
    platform.unixTime = summer;
    EXPECT_EQ(told(), message("2024-07-02T00:30:05Z", ""));
}

TEST_F(RestartCause, TimeIsThatOfTheMoment) {
    platform.unixTime = 0;
    EXPECT_EQ(told(), message("1970-01-01T00:00:00Z", ""));
    platform.unixTime = summer;
    EXPECT_EQ(told(), message("2024-07-01T22:30:05Z", ""));
}

TEST_F(RestartCause, TimeThatNoCalendarHoldsIsEmpty) {
    platform.unixTime = std::numeric_limits<std::time_t>::max();
    EXPECT_EQ(told(), message("", ""));
}

TEST_F(RestartCause, FailuresOfTheQueueAreSilentAndStartUpGoesOn) {
    logEverything();
    const std::string text = fake::quoted(message(winterText, ""));
    platform.fail("msgget", 28);
    platform.fail("varoGetInternalConfig", 4);
    entity().networkBleInit();
    EXPECT_JOURNAL("varoGetMyBoardPos() -> 0 5", "msgget(1708033, 01666) -> errno 28",
                   "msgget(1708033, 01666) -> errno 28",
                   "msgsnd(-1, 1001 " + text + ", 2000, 04000) -> errno 22", "varoLibInit() -> 0",
                   "varoGetInternalConfig() -> 4");
}

TEST_F(RestartCause, FullQueueLosesItSilently) {
    ASSERT_EQ(told(), message(winterText, ""));
    platform.ipc.queues.at(500).byteLimit = 2000;
    announceRestartCause();
    EXPECT_THAT(journal(),
                ElementsAre(testing::AllOf(testing::StartsWith("msgsnd(500, 1001 "),
                                           testing::EndsWith(", 2000, 04000) -> errno 11"))));
    EXPECT_EQ(platform.ipc.queues.at(500).messages.size(), 1U);
}

}  // namespace
