#include "network/EntityTest.h"

#include <sstream>

namespace {

using testing::IsEmpty;

class Logging : public EntityTest {
protected:
    static void setThreshold(const std::string& text) {
        std::ostringstream reply;
        entity().externalMessage("networkBle_severity", text, &reply);
    }

    /// One line at each level of the system log.
    void logAtAllLevels() {
        for (int level = 0; level <= 7; ++level) {
            entity().networkBleSyslog(level, "[networkBLE]: level %d of %s\n", level, "8");
        }
    }
};

TEST_F(Logging, ThresholdIsThreeAtFirst) {
    logAtAllLevels();
    EXPECT_JOURNAL(R"(syslog(0, "[networkBLE]: level 0 of 8\n"))",
                   R"(syslog(1, "[networkBLE]: level 1 of 8\n"))",
                   R"(syslog(2, "[networkBLE]: level 2 of 8\n"))", error("level 3 of 8"));
}

TEST_F(Logging, AtSevenEveryLevelPasses) {
    setThreshold("7");
    logAtAllLevels();
    EXPECT_THAT(journal(), testing::SizeIs(8));
}

TEST_F(Logging, BelowZeroNothingPasses) {
    setThreshold("-1");
    logAtAllLevels();
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Logging, TextThatIsNoNumberIsZero) {
    setThreshold("abc");
    logAtAllLevels();
    EXPECT_JOURNAL(R"(syslog(0, "[networkBLE]: level 0 of 8\n"))");
}

TEST_F(Logging, NumberIsCutToSixteenBits) {
    setThreshold("65543");  // 65536 + 7
    entity().networkBleSyslog(7, "[networkBLE]: seven\n");
    EXPECT_JOURNAL(trace("seven"));

    setThreshold("32768");  // the most negative number
    entity().networkBleSyslog(0, "[networkBLE]: nothing\n");
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Logging, NumberIsReadUpToWhatIsNone) {
    setThreshold("4x");
    entity().networkBleSyslog(4, "[networkBLE]: four\n");
    entity().networkBleSyslog(5, "[networkBLE]: five\n");
    EXPECT_JOURNAL(R"(syslog(4, "[networkBLE]: four\n"))");
}

TEST_F(Logging, VaroLibsThresholdIsTheLibrarysToo) {
    std::ostringstream reply;
    entity().externalMessage("varoLib_severity", "5", &reply);
    entity().networkBleSyslog(5, "[networkBLE]: five\n");
    entity().networkBleSyslog(6, "[networkBLE]: six\n");
    EXPECT_JOURNAL("varoGetInternalConfig() -> 0 {severity=3}",
                   "varoUpdateInternalConfig({severity=5}, 5) -> 0",
                   R"(syslog(5, "[networkBLE]: five\n"))");
    EXPECT_EQ(platform.internalConfig.severity, 5);
    EXPECT_EQ(reply.str(), "");
}

TEST_F(Logging, VaroLibsThresholdIsCutToSixteenBits) {
    std::ostringstream reply;
    entity().externalMessage("varoLib_severity", "65542", &reply);
    EXPECT_JOURNAL("varoGetInternalConfig() -> 0 {severity=3}",
                   "varoUpdateInternalConfig({severity=6}, 6) -> 0");
}

TEST_F(Logging, VaroLibsThresholdStaysWhenItCannotBeRead) {
    platform.fail("varoGetInternalConfig", 9);
    std::ostringstream reply;
    entity().externalMessage("varoLib_severity", "5", &reply);
    entity().networkBleSyslog(4, "[networkBLE]: four\n");
    EXPECT_JOURNAL("varoGetInternalConfig() -> 9");
    EXPECT_EQ(platform.internalConfig.severity, 3);
}

TEST_F(Logging, OwnThresholdIsSetEvenIfVaroLibRefusesTheUpdate) {
    platform.fail("varoUpdateInternalConfig", 9);
    std::ostringstream reply;
    entity().externalMessage("varoLib_severity", "4", &reply);
    entity().networkBleSyslog(4, "[networkBLE]: four\n");
    EXPECT_JOURNAL("varoGetInternalConfig() -> 0 {severity=3}",
                   "varoUpdateInternalConfig({severity=4}, 4) -> 9",
                   R"(syslog(4, "[networkBLE]: four\n"))");
}

TEST_F(Logging, OwnThresholdLeavesVaroLibsAlone) {
    setThreshold("7");
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_EQ(platform.internalConfig.severity, 3);
}

TEST_F(Logging, OtherMessagesAreIgnored) {
    std::ostringstream reply;
    for (const char* name : {"", "networkBle_severity ", "NETWORKBLE_SEVERITY", "severity"}) {
        entity().externalMessage(name, "7", &reply);
    }
    entity().networkBleSyslog(4, "[networkBLE]: four\n");
    EXPECT_THAT(journal(), IsEmpty());
    EXPECT_EQ(reply.str(), "");
}

}  // namespace
