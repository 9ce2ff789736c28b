// Return to factory settings. The component lists and the remote-access rules are reached past
// their access (-fno-access-control, for this file).

#include "network/EntityTest.h"
#include "network/freshProcess.h"
#include "network/journals.h"
#include "network/library.h"

#include <string>

namespace {

using testing::ElementsAreArray;

const std::string ntpFactory = R"({mode=15 {"factory.example" 16 17 18}})";
const std::string dnsFactory = R"({domain="factory.example" pri=192.0.2.19 sec=192.0.2.20})";
const std::string dns6Factory =
    R"({domain="factory6.example" pri="2001:db8::15" sec="2001:db8::16"})";

/// A group of which the factory values are read and written.
Entries readAndWritten(const std::string& group, const std::string& values) {
    return {"varoDef" + group + "() -> 0 " + values,
            "varoUpdate" + group + "(" + values + ") -> 0"};
}

Entries resolverWritten(const std::string& group, const std::string& values) {
    return {"varoDef" + group + "(2) -> 0 " + values,
            "varoUpdate" + group + "(2, " + values + ") -> 0",
            "varoUpdate" + group + "(1, " + values + ") -> 0"};
}

/// What the operation does, group by group; of a board on which all works, as it stands here.
struct Groups {
    Entries entry = {trace("applyDefaultSettings: Inside function")};
    Entries timeZone = {
        R"(varoUpdateSntpTimeZone({name="NONE" offset=0 dst=0 start=3/4/7/200 end=10/5/7/200)"
        R"( preset=0}) -> 0)"};
    Entries telnet = {"varoDefTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}",
                      "isActive(12) -> 0",
                      "varoUpdateTelnetSrv({enabled=1 sessions=11 idle=12}) -> 0"};
    Entries ssh = readAndWritten("SshSrv", "{enabled=1 port=13}");
    Entries ftp = readAndWritten("FtpSrv", "{state=1}");
    Entries managers = readAndWritten("Subag", R"({port=14 {192.0.2.14 "factory trap"}})");
    Entries communities = readAndWritten("SnmpCommunity", R"({communities {"factory" "ro"}})");
    Entries system =
        readAndWritten("SnmpSystem", R"({"factory contact" "factory location" "factory name"})");
    Entries ntp = {
        "varoDefNtpHost(2) -> 0 " + ntpFactory, "varoUpdateNtpHost(2, " + ntpFactory + ") -> 0",
        "isClearConfigInProgress() -> 0", "varoUpdateNtpHost(1, " + ntpFactory + ") -> 0"};
    Entries question = {"isClearConfigInProgress() -> 0"};
    Entries dns = resolverWritten("DnsWS", dnsFactory);
    Entries dns6 = resolverWritten("Dns6", dns6Factory);
    Entries acs = {"varoDefAcs({enabled=0 source=2}, 2) -> 0 {enabled=1 source=23}",
                   "isActive(12) -> 0", "varoUpdateAcs({enabled=1 source=2}, 2) -> 0",
                   "varoUpdateAcs({enabled=1 source=1}, 1) -> 0"};
    Entries webServer = {R"(isFeatureSupported("httpserver") -> 0)"};

    Entries all() const {
        return sequence(entry, timeZone, telnet, ssh, ftp, managers, communities, system, ntp,
                        question, dns, dns6, acs, webServer);
    }
};

std::string failed(const std::string& call, int code) {
    return error("applyDefaultSettings: " + call +
                 " has failed! Return value: " + std::to_string(code));
}

/// The entry of a call that works, made to fail.
std::string failing(std::string entry, int code) {
    const std::string worked = ") -> 0";
    entry.resize(entry.find(worked));
    return entry + ") -> " + std::to_string(code);
}

class Defaults : public EntityTest {
protected:
    Defaults() { logEverything(); }

    /// The component lists are read once in the life of a process, which is looked at elsewhere.
    void readComponents() {
        entity().initVersComp();
        journal();
    }
};

TEST_F(Defaults, AllGroupsAreWrittenInTheirOrder) {
    readComponents();
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    EXPECT_THAT(journal(), ElementsAreArray(Groups().all()));
}

TEST_F(Defaults, AreSilentAtTheOrdinaryThreshold) {
    remakeEntity();
    readComponents();
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    Groups groups;
    groups.entry = {};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

using DefaultsDeathTest = Defaults;

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

TEST_F(Defaults, CordProfileSwitchesTelnetAndTheAutoConfigurationClientOff) {
    readComponents();
    platform.shelf.activeFeatures.insert(12);
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    Groups groups;
    groups.telnet = {"varoDefTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}", "isActive(12) -> 1",
                     trace("applyDefaultSettings: default telnet state set to false for CORD : 0"),
                     "varoUpdateTelnetSrv({enabled=0 sessions=11 idle=12}) -> 0"};
    groups.acs = {"varoDefAcs({enabled=0 source=2}, 2) -> 0 {enabled=1 source=23}",
                  "isActive(12) -> 1",
                  trace("applyDefaultSettings: default acs client state set to false for CORD : 0"),
                  "varoUpdateAcs({enabled=0 source=2}, 2) -> 0",
                  "varoUpdateAcs({enabled=0 source=1}, 1) -> 0"};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

// Clear-configuration.

Groups groupsOfClearConfig() {
    Groups groups;
    groups.ntp = {"varoDefNtpHost(2) -> 0 " + ntpFactory,
                  "varoUpdateNtpHost(2, " + ntpFactory + ") -> 0",
                  "isClearConfigInProgress() -> 1"};
    groups.question = {"isClearConfigInProgress() -> 1"};
    groups.dns = groups.dns6 = groups.acs = groups.webServer = {};
    return groups;
}

TEST_F(Defaults, ClearConfigurationForgetsTheRemoteAccessRulesInstead) {
    readComponents();
    platform.product.isClearConfigInProgress = true;
    platform.product.supportedFeatures.insert("httpserver");
    entity().ruleIds[0] = 101;
    entity().ruleIds[199] = 102;
    entity().ruleIdx = 2;
    entity().aclInitialized = 1;
    entity().aclAssigned = 1;
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    EXPECT_THAT(journal(), ElementsAreArray(groupsOfClearConfig().all()));
    EXPECT_THAT(entity().ruleIds, testing::Each(0U));
    EXPECT_EQ(entity().ruleIdx, 0U);
    EXPECT_EQ(entity().aclInitialized, 0U);
    EXPECT_EQ(entity().aclAssigned, 0U);
}

TEST_F(Defaults, OtherwiseTheRemoteAccessRulesStay) {
    readComponents();
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
    readComponents();
    platform.product.isClearConfigInProgress = true;
    platform.fail("varoDefNtpHost", 5);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups = groupsOfClearConfig();
    groups.ntp = {"varoDefNtpHost(2) -> 5", failed("varoDefNtpHost", 5)};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

// Failures, each of which leaves all other groups as they are.

TEST_F(Defaults, TimeZoneThatCannotBeWrittenIsReported) {
    readComponents();
    platform.fail("varoUpdateSntpTimeZone", -4);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    groups.timeZone = {failing(groups.timeZone[0], -4), failed("varoUpdateSntpTimeZone", -4)};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

/// A group of settings, and the names of its calls.
struct Group {
    std::string name;
    Entries Groups::*entries;
};

class DefaultsGroup : public Defaults, public testing::WithParamInterface<Group> {};

TEST_P(DefaultsGroup, WithoutFactoryValuesIsNotWritten) {
    readComponents();
    const std::string call = "varoDef" + GetParam().name;
    platform.fail(call, 5);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    Entries& entries = groups.*GetParam().entries;
    entries = {failing(entries.front(), 5), failed(call, 5)};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

TEST_P(DefaultsGroup, ThatCannotBeWrittenIsReported) {
    readComponents();
    const std::string call = "varoUpdate" + GetParam().name;
    platform.fail(call, 6);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
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
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

INSTANTIATE_TEST_SUITE_P(
    Groups, DefaultsGroup,
    testing::Values(Group{"TelnetSrv", &Groups::telnet}, Group{"SshSrv", &Groups::ssh},
                    Group{"FtpSrv", &Groups::ftp}, Group{"Subag", &Groups::managers},
                    Group{"SnmpCommunity", &Groups::communities},
                    Group{"SnmpSystem", &Groups::system}, Group{"DnsWS", &Groups::dns},
                    Group{"Dns6", &Groups::dns6}, Group{"Acs", &Groups::acs}),
    [](const auto& group) { return group.param.name; });

TEST_F(Defaults, TimeServersWithoutFactoryValuesAreNotWritten) {
    readComponents();
    platform.fail("varoDefNtpHost", 5);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    groups.ntp = {"varoDefNtpHost(2) -> 5", failed("varoDefNtpHost", 5)};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

TEST_F(Defaults, TimeServersThatCannotBeWrittenAreReportedBySource) {
    readComponents();
    platform.fail("varoUpdateNtpHost", 6);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    groups.ntp = {groups.ntp[0],
                  failing(groups.ntp[1], 6),
                  error("applyDefaultSettings: varoUpdateNtpHost for source CLI has failed! Return "
                        "value: 6"),
                  groups.ntp[2],
                  failing(groups.ntp[3], 6),
                  error("applyDefaultSettings: varoUpdateNtpHost for surce DHCPhas failed! Return "
                        "value: 6")};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

TEST_F(Defaults, TimeServersOfEitherSourceFailByThemselves) {
    readComponents();
    platform.fail("varoUpdateNtpHost", 6, 1);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    groups.ntp[1] = failing(groups.ntp[1], 6);
    groups.ntp.insert(groups.ntp.begin() + 2,
                      error("applyDefaultSettings: varoUpdateNtpHost for source CLI has failed! "
                            "Return value: 6"));
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));

    platform.fail("varoUpdateNtpHost", 7, 1, 1);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    groups = {};
    groups.ntp[3] = failing(groups.ntp[3], 7);
    append(groups.ntp,
           error("applyDefaultSettings: varoUpdateNtpHost for surce DHCPhas failed! Return value: "
                 "7"));
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

TEST_F(Defaults, FirstFailedWriteOfASourceDoesNotStopTheSecond) {
    readComponents();
    for (const char* const call : {"varoUpdateDnsWS", "varoUpdateDns6", "varoUpdateAcs"}) {
        platform.fail(call, 6, 1);
    }
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    groups.dns = {groups.dns[0], failing(groups.dns[1], 6), failed("varoUpdateDnsWS", 6),
                  groups.dns[2]};
    groups.dns6 = {groups.dns6[0], failing(groups.dns6[1], 6), failed("varoUpdateDns6", 6),
                   groups.dns6[2]};
    groups.acs = {groups.acs[0], groups.acs[1], failing(groups.acs[2], 6),
                  failed("varoUpdateAcs", 6), groups.acs[3]};
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

TEST_F(Defaults, EverythingFailingIsReportedGroupByGroup) {
    readComponents();
    for (const char* const group : {"TelnetSrv", "SshSrv", "FtpSrv", "Subag", "SnmpCommunity",
                                    "SnmpSystem", "NtpHost", "DnsWS", "Dns6", "Acs"}) {
        platform.fail(std::string("varoDef") + group, 9);
    }
    platform.fail("varoUpdateSntpTimeZone", 9);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    Groups groups;
    for (const auto& [name, entries] : {std::pair{"varoUpdateSntpTimeZone", &Groups::timeZone},
                                        {"varoDefTelnetSrv", &Groups::telnet},
                                        {"varoDefSshSrv", &Groups::ssh},
                                        {"varoDefFtpSrv", &Groups::ftp},
                                        {"varoDefSubag", &Groups::managers},
                                        {"varoDefSnmpCommunity", &Groups::communities},
                                        {"varoDefSnmpSystem", &Groups::system},
                                        {"varoDefNtpHost", &Groups::ntp},
                                        {"varoDefDnsWS", &Groups::dns},
                                        {"varoDefDns6", &Groups::dns6},
                                        {"varoDefAcs", &Groups::acs}}) {
        Entries& group = groups.*entries;
        group = {failing(group[0], 9), failed(name, 9)};
    }
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

// The web server.

std::string ran(const std::string& command) { return "system(\"" + command + "\") -> 0"; }

TEST_F(Defaults, WebServerIsSwitchedOnWhereThereIsOne) {
    readComponents();
    platform.product.supportedFeatures.insert("httpserver");
    testing::internal::CaptureStdout();
    journal();
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    const Entries entries = journal();
    testing::internal::GetCapturedStdout();
    journal();
    Groups groups;
    groups.webServer =
        sequence(R"(isFeatureSupported("httpserver") -> 1)",
                 exclusively(ran("mkdir -p " + eventServerDirectory + " &>/dev/null"),
                             ran(eventServerStart), ran(apacheStart),
                             ran("/opt/kalvor/neroot/active/web_em/bin/hassesMsg &"), "sleep(1)",
                             ran("killall  -s CONT /opt/kalvor/neroot/active/web_em/bin/hassesMsg"),
                             "pthread_create() -> 0"));
    EXPECT_THAT(entries, ElementsAreArray(groups.all()));
    bool on = false;
    EXPECT_EQ(entity().networkHttpGet(on), 0);
    EXPECT_TRUE(on);
    journal();
}

std::string webServerFailed(int statusOfGroupBefore) {
    return error("applyDefaultSettings: networkHttpServerSet 1 has failed! Return value: " +
                 std::to_string(statusOfGroupBefore));
}

TEST_F(Defaults, WebServerThatCannotBeSwitchedOnIsReportedAndDoesNotCount) {
    readComponents();
    platform.product.supportedFeatures.insert("httpserver");
    platform.fail("exclusiveLock", 1);
    EXPECT_EQ(entity().applyDefaultSettings(), 1);
    Groups groups;
    groups.webServer = sequence(R"(isFeatureSupported("httpserver") -> 1)",
                                refused("exclusiveLock"), webServerFailed(0));
    EXPECT_THAT(journal(), ElementsAreArray(groups.all()));
}

// The message gives the status of the last call for the group before.

TEST_F(Defaults, WebServersMessageGivesTheLastStatusOfTheAutoConfigurationClient) {
    readComponents();
    platform.product.supportedFeatures.insert("httpserver");
    platform.fail("exclusiveLock", 1);
    platform.fail("varoUpdateAcs", 44, 1, 1);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    EXPECT_EQ(journal().back(), webServerFailed(44));

    platform.fail("varoUpdateAcs", 45, 1);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    EXPECT_EQ(journal().back(), webServerFailed(0));

    platform.fail("varoDefAcs", 46);
    EXPECT_EQ(entity().applyDefaultSettings(), 0);
    EXPECT_EQ(journal().back(), webServerFailed(46));
}

}  // namespace
