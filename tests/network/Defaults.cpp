// Return to factory settings. The component lists and the remote-access rules are reached past
// their access (-fno-access-control, for this file).

#include "network/DefaultsTest.h"
#include "network/freshProcess.h"

namespace {

using testing::ElementsAreArray;

using Defaults = DefaultsLater;

TEST_F(Defaults, AllGroupsAreWrittenInTheirOrder) { expectDefaults(1, Groups()); }

TEST_F(Defaults, AreSilentAtTheOrdinaryThreshold) {
    remakeEntity();
    readComponents();
    Groups groups;
    groups.entry = {};
    expectDefaults(1, groups);
}

using DefaultsDeathTest = DefaultsTest;

TEST_F(DefaultsDeathTest, ComponentsAreReadLastWhateverHappenedBefore) {
    for (const bool works : {true, false}) {
        inFreshProcess([&] {
            Groups groups;
            if (!works) {
                platform.fail("varoUpdateSntpTimeZone", 5);
                groups.timeZone = {failing(groups.timeZone[0], 5),
                                   failed("varoUpdateSntpTimeZone", 5)};
            }
            const int result = entity().applyDefaultSettings();
            const Entries componentsRead = {
                "isActive(5) -> 0", R"(popen("ls /opt/kalvor/neroot -l |grep active", "r"))",
                R"(pclose("ls /opt/kalvor/neroot -l |grep active") -> 0)",
                R"(popen("rpm -q --whatprovides dorn-medium", "r"))",
                R"(pclose("rpm -q --whatprovides dorn-medium") -> 0)"};
            return mismatch(result, works ? 1 : 0) +
                   mismatch(journal(), ElementsAreArray(sequence(groups.all(), componentsRead)));
        });
    }
}

// The profile in which telnet and the auto-configuration client are off.

const Entries telnetSwitchedOff = {
    "varoDefTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}", "isActive(12) -> 1",
    trace("applyDefaultSettings: default telnet state set to false for CORD : 0"),
    "varoUpdateTelnetSrv({enabled=0 sessions=11 idle=12}) -> 0"};

TEST_F(Defaults, CordProfileSwitchesTelnetAndTheAutoConfigurationClientOff) {
    platform.shelf.activeFeatures.insert(12);
    Groups groups;
    groups.telnet = telnetSwitchedOff;
    groups.acs = {"varoDefAcs({enabled=0 source=2}, 2) -> 0 {enabled=1 source=23}",
                  "isActive(12) -> 1",
                  trace("applyDefaultSettings: default acs client state set to false for CORD : 0"),
                  "varoUpdateAcs({enabled=0 source=2}, 2) -> 0",
                  "varoUpdateAcs({enabled=0 source=1}, 1) -> 0"};
    expectDefaults(1, groups);
}

// Clear-configuration.

TEST_F(Defaults, ClearConfigurationForgetsTheRemoteAccessRulesInstead) {
    platform.product.isClearConfigInProgress = true;
    platform.product.supportedFeatures.insert("httpserver");
    entity().ruleIds[0] = 101;
    entity().ruleIds[199] = 102;
    entity().ruleIdx = 2;
    entity().aclInitialized = 1;
    entity().aclAssigned = 1;
    expectDefaults(1, groupsOfClearConfig());
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_EQ(entity().ruleIdx, 0U);
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().aclAssigned, 0U);
}

TEST_F(Defaults, ClearConfigurationSwitchesTelnetOffInTheCordProfileToo) {
    platform.product.isClearConfigInProgress = true;
    platform.product.supportedFeatures.insert("httpserver");
    platform.shelf.activeFeatures.insert(12);
    Groups groups = groupsOfClearConfig();
    groups.telnet = telnetSwitchedOff;
    expectDefaults(1, groups);
}

TEST_F(Defaults, OtherwiseTheRemoteAccessRulesStay) {
    entity().ruleIds[0] = 101;
    entity().ruleIdx = 1;
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    EXPECT_EQ(entity().ruleIds[0], 101U);
    EXPECT_EQ(entity().ruleIdx, 1U);
    entity().ruleIdx = 0;
    entity().ruleIds[0] = 0;
    journal();
}

TEST_F(Defaults, ClearConfigurationWithoutFactoryTimeServersAsksOnce) {
    platform.product.isClearConfigInProgress = true;
    platform.fail("varoDefNtpHost", 5);
    Groups groups = groupsOfClearConfig();
    groups.ntp = {"varoDefNtpHost(2) -> 5", failed("varoDefNtpHost", 5)};
    expectDefaults(0, groups);
}

// Failures, each of which leaves all other groups as they are.

TEST_F(Defaults, TimeZoneThatCannotBeWrittenIsReported) {
    platform.fail("varoUpdateSntpTimeZone", -4);
    Groups groups;
    groups.timeZone = {failing(groups.timeZone[0], -4), failed("varoUpdateSntpTimeZone", -4)};
    expectDefaults(0, groups);
}

class DefaultsGroup : public Defaults, public testing::WithParamInterface<NamedGroup> {};

TEST_P(DefaultsGroup, WithoutFactoryValuesIsNotWritten) {
    const std::string call = "varoDef" + GetParam().name;
    platform.fail(call, 5);
    Groups groups;
    Entries& entries = groups.*GetParam().entries;
    entries = {failing(entries.front(), 5), failed(call, 5)};
    expectDefaults(0, groups);
}

TEST_P(DefaultsGroup, ThatCannotBeWrittenIsReported) {
    const std::string call = "varoUpdate" + GetParam().name;
    platform.fail(call, 6);
    Groups groups;
    Entries& entries = groups.*GetParam().entries;
    Entries expected;
    for (const std::string& entry : entries) {
        if (entry.starts_with(call)) {
            append(expected, {failing(entry, 6), failed(call, 6)});
        } else {
            append(expected, entry);
        }
    }
    entries = expected;
    expectDefaults(0, groups);
}

INSTANTIATE_TEST_SUITE_P(Groups, DefaultsGroup, testing::ValuesIn(groupsToldByCall),
                         [](const auto& group) { return group.param.name; });

TEST_F(Defaults, TimeServersWithoutFactoryValuesAreNotWritten) {
    platform.fail("varoDefNtpHost", 5);
    Groups groups;
    groups.ntp = {"varoDefNtpHost(2) -> 5", failed("varoDefNtpHost", 5)};
    expectDefaults(0, groups);
}

TEST_F(Defaults, TimeServersThatCannotBeWrittenAreReportedBySource) {
    platform.fail("varoUpdateNtpHost", 6);
    Groups groups;
    groups.ntp = {groups.ntp[0],
                  failing(groups.ntp[1], 6),
                  error("applyDefaultSettings: varoUpdateNtpHost for source CLI has failed! Return "
                        "value: 6"),
                  groups.ntp[2],
                  failing(groups.ntp[3], 6),
                  error("applyDefaultSettings: varoUpdateNtpHost for surce DHCPhas failed! Return "
                        "value: 6")};
    expectDefaults(0, groups);
}

TEST_F(Defaults, TimeServersOfEitherSourceFailByThemselves) {
    platform.fail("varoUpdateNtpHost", 6, 1);
    Groups groups;
    groups.ntp[1] = failing(groups.ntp[1], 6);
    groups.ntp.insert(groups.ntp.begin() + 2,
                      error("applyDefaultSettings: varoUpdateNtpHost for source CLI has failed! "
                            "Return value: 6"));
    expectDefaults(0, groups);

    platform.fail("varoUpdateNtpHost", 7, 1, 1);
    groups = {};
    groups.ntp[3] = failing(groups.ntp[3], 7);
    append(groups.ntp,
           error("applyDefaultSettings: varoUpdateNtpHost for surce DHCPhas failed! Return value: "
                 "7"));
    expectDefaults(0, groups);
}

TEST_F(Defaults, FirstFailedWriteOfASourceDoesNotStopTheSecond) {
    for (const char* const call : {"varoUpdateDnsWS", "varoUpdateDns6", "varoUpdateAcs"}) {
        platform.fail(call, 6, 1);
    }
    Groups groups;
    groups.dns = {groups.dns[0], failing(groups.dns[1], 6), failed("varoUpdateDnsWS", 6),
                  groups.dns[2]};
    groups.dns6 = {groups.dns6[0], failing(groups.dns6[1], 6), failed("varoUpdateDns6", 6),
                   groups.dns6[2]};
    groups.acs = {groups.acs[0], groups.acs[1], failing(groups.acs[2], 6),
                  failed("varoUpdateAcs", 6), groups.acs[3]};
    expectDefaults(0, groups);
}

TEST_F(Defaults, EverythingFailingIsReportedGroupByGroup) {
    platform.fail("varoUpdateSntpTimeZone", 9);
    Groups groups;
    groups.timeZone = {failing(groups.timeZone[0], 9), failed("varoUpdateSntpTimeZone", 9)};
    std::vector<NamedGroup> filled = groupsToldByCall;
    filled.push_back({"NtpHost", &Groups::ntp});
    for (const auto& [name, entries] : filled) {
        const std::string call = "varoDef" + name;
        platform.fail(call, 9);
        Entries& group = groups.*entries;
        group = {failing(group[0], 9), failed(call, 9)};
    }
    expectDefaults(0, groups);
}

}  // namespace
