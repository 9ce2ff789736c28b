// What every implementation of the configuration library keeps of services, SNMP, SNTP and the time
// zone.

#include "contract/Environment.h"
#include "support/matchers.h"
#include "support/setText.h"
#include "varo/varoLib.h"

#include <string>

namespace {

constexpr int dhcpSource = 1;
constexpr int cliSource = 2;

class ServicesContract : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(varoLibInit(), 0); }

    Environment environment;
};

TEST_F(ServicesContract, ServersKeepWhatTheyAreGiven) {
    varoLib_s_telnetSrv telnet{0, 7, 30};
    EXPECT_EQ(varoUpdateTelnetSrv(&telnet), 0);
    telnet = {};
    EXPECT_EQ(varoGetTelnetSrv(&telnet), 0);
    EXPECT_EQ(telnet.enabled, 0);
    EXPECT_EQ(telnet.maxSessions, 7U);
    EXPECT_EQ(telnet.idleTimeout, 30U);
    varoLib_s_sshSrv ssh{0, 2222};
    EXPECT_EQ(varoUpdateSshSrv(&ssh), 0);
    ssh = {};
    EXPECT_EQ(varoGetSshSrv(&ssh), 0);
    EXPECT_EQ(ssh.port, 2222U);
    for (const int state : {1, 0}) {
        varoLib_s_ftpSrv ftp{state};
        EXPECT_EQ(varoUpdateFtpSrv(&ftp), 0);
        ftp = {-1};
        EXPECT_EQ(varoGetFtpSrv(&ftp), 0);
        EXPECT_EQ(ftp.state, state);
    }
}

TEST_F(ServicesContract, FactoryValuesChangeNothing) {
    varoLib_s_telnetSrv telnet{0, 7, 30};
    EXPECT_EQ(varoUpdateTelnetSrv(&telnet), 0);
    varoLib_s_telnetSrv factory{};
    EXPECT_EQ(varoDefTelnetSrv(&factory), 0);
    EXPECT_GT(factory.maxSessions, 0U);
    EXPECT_EQ(varoGetTelnetSrv(&telnet), 0);
    EXPECT_EQ(telnet.maxSessions, 7U);
    EXPECT_EQ(varoUpdateTelnetSrv(&factory), 0);
}

TEST_F(ServicesContract, TrapManagersAreKnownByAddressAndCommunity) {
    EXPECT_EQ(varoAddSubag("traps", 0xc0000205), 0);
    EXPECT_NE(varoAddSubag("traps", 0xc0000205), 0);
    EXPECT_NE(varoDeleteSubag("traps", 0xc0000206), 0);
    EXPECT_NE(varoDeleteSubag("other", 0xc0000205), 0);
    EXPECT_NE(varoChangeSubag("other", 0xc0000205, "other", 0xc0000207), 0);
    EXPECT_EQ(varoChangeSubag("traps", 0xc0000205, "traps", 0xc0000207), 0);
    EXPECT_EQ(varoChangePortSubag(1162), 0);
    varoLib_s_subag agent{};
    EXPECT_EQ(varoGetSubag(&agent), 0);
    EXPECT_EQ(agent.port, 1162);
    int count = 0;
    for (const auto& manager : agent.managers) {
        if (manager.ipAddress != 0) {
            ++count;
            EXPECT_EQ(manager.ipAddress, 0xc0000207);
            EXPECT_STREQ(manager.community, "traps");
        }
    }
    EXPECT_EQ(count, 1);
    EXPECT_EQ(varoDeleteSubag("traps", 0xc0000207), 0);
}

TEST_F(ServicesContract, TenTrapManagersAreHeld) {
    for (unsigned int host = 1; host <= 10; ++host) {
        EXPECT_EQ(varoAddSubag("traps", 0xc0000200 + host), 0) << host;
    }
    EXPECT_NE(varoAddSubag("traps", 0xc000020b), 0);
}

TEST_F(ServicesContract, CommunitiesAreKnownByName) {
    varoLib_s_snmpCommunity none{};
    EXPECT_EQ(varoUpdateSnmpCommunity(&none), 0);
    EXPECT_EQ(varoAddSnmpCommunity("readers", 1), 0);
    EXPECT_NE(varoAddSnmpCommunity("readers", 2), 0);
    EXPECT_EQ(varoChangeSnmpCommunity("readers", 2), 0);
    EXPECT_NE(varoChangeSnmpCommunity("nobody", 1), 0);
    EXPECT_NE(varoAddSnmpCommunity("wrong", 3), 0);
    varoLib_s_snmpCommunity communities{};
    EXPECT_EQ(varoGetSnmpCommunity(&communities), 0);
    EXPECT_STREQ(communities.communities[0].name, "readers");
    EXPECT_STREQ(communities.communities[0].access, "rw");
    for (const char* name : {"b", "c", "d", "e", "f"}) {
        EXPECT_EQ(varoAddSnmpCommunity(name, 1), 0) << name;
    }
    EXPECT_NE(varoAddSnmpCommunity("seventh", 1), 0);
    EXPECT_EQ(varoDeleteSnmpCommunity("c", 2), 0);
    EXPECT_NE(varoDeleteSnmpCommunity("c", 1), 0);
    EXPECT_EQ(varoAddSnmpCommunity("seventh", 1), 0);
}

TEST_F(ServicesContract, SystemTextsAreSetOneByOne) {
    EXPECT_EQ(varoChangeSnmpSystem("somebody", 1), 0);
    EXPECT_EQ(varoChangeSnmpSystem("somewhere", 2), 0);
    EXPECT_EQ(varoChangeSnmpSystem("something", 3), 0);
    EXPECT_NE(varoChangeSnmpSystem("anything", 4), 0);
    varoLib_s_snmpSystem system{};
    EXPECT_EQ(varoGetSnmpSystem(&system), 0);
    EXPECT_STREQ(system.contact, "somebody");
    EXPECT_STREQ(system.location, "somewhere");
    EXPECT_STREQ(system.name, "something");
}

TEST_F(ServicesContract, SntpServersAreOneListWithTwoViews) {
    rpcSntpConfigHost config{};
    config.mode = 1;
    setText(config.servers[0].host, "ntp.example");
    setText(config.servers[1].host, "192.0.2.1");
    config.servers[1].ntpVersion = 4;
    config.servers[1].addressType = 1;
    EXPECT_EQ(varoUpdateNtpHost(cliSource, &config), 0);
    int source = cliSource;
    rpcSntpConfigHost read{};
    EXPECT_EQ(varoGetNtpHost(&source, &read), 0);
    EXPECT_EQ(source, cliSource);
    EXPECT_EQ(read.mode, 1);
    EXPECT_STREQ(read.servers[0].host, "ntp.example");
    EXPECT_STREQ(read.servers[1].host, "192.0.2.1");
    EXPECT_EQ(read.servers[1].addressType, 1);
}

TEST_F(ServicesContract, AZoneCanBeRenamedAlone) {
    varoLib_s_sntpTimeZone zone{};
    setText(zone.name, "CET");
    zone.offset = 60;
    zone.dstOffset = 60;
    zone.dstSMonth = 3;
    zone.dstSWeek = 5;
    zone.dstSDayInWeek = 7;
    zone.dstSTime = 200;
    zone.dstEMonth = 10;
    zone.dstEWeek = 5;
    zone.dstEDayInWeek = 7;
    zone.dstETime = 300;
    EXPECT_EQ(varoUpdateSntpTimeZone(&zone), 0);
    varoLib_s_sntpTimeZone renamed{};
    setText(renamed.name, "MEZ");
    EXPECT_EQ(varoUpdateSntpTimeZoneAlt(&renamed), 0);
    varoLib_s_sntpTimeZone read{};
    EXPECT_EQ(varoGetSntpTimeZone(&read), 0);
    EXPECT_STREQ(read.name, "MEZ");
    EXPECT_EQ(read.offset, 60);
    EXPECT_EQ(read.dstSMonth, 3);
    EXPECT_EQ(read.dstETime, 300);
}

TEST_F(ServicesContract, TheAutoConfigurationClientHasAFactoryRecordForEachSource) {
    for (const int source : {dhcpSource, cliSource}) {
        varoLib_s_acs acs{};
        EXPECT_EQ(varoDefAcs(&acs, source), 0);
        EXPECT_EQ(varoUpdateAcs(&acs, source), 0);
    }
}

}  // namespace
