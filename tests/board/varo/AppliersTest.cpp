#include "tests/board/varo/VaroTest.h"

#include <stdexcept>

namespace {

using namespace varotest;

/// A machine that notes what is put into force on it.
class Appliers : public ClosedVaroTest {
protected:
    Appliers() {
        varo::Configuration configuration{state, {}, log.receiver()};
        varo::Appliers& appliers = configuration.appliers;
        appliers.telnet = [this](const varoLib_s_telnetSrv& server) {
            note("telnet " + std::to_string(server.maxSessions));
        };
        appliers.ssh = [this](const varoLib_s_sshSrv& server) {
            note("ssh " + std::to_string(server.port));
        };
        appliers.ftp = [this](const varoLib_s_ftpSrv& server) {
            note("ftp " + std::to_string(server.state));
        };
        appliers.trapManagers = [this](const varoLib_s_subag& agent) {
            note("traps " + std::to_string(agent.port) + " " + agent.managers[0].community);
        };
        appliers.snmpCommunities = [this](const varoLib_s_snmpCommunity& all) {
            note(std::string("communities ") + all.communities[0].name);
        };
        appliers.snmpSystem = [this](const varoLib_s_snmpSystem& system) {
            note(std::string("system ") + system.name);
        };
        appliers.timeZone = [this](const varoLib_s_sntpTimeZone& zone) {
            note(std::string("zone ") + zone.name + " " + std::to_string(zone.preset));
        };
        appliers.ntp = [this](const rpcSntpConfigHost& config) {
            note(std::string("ntp ") + config.servers[0].host);
        };
        appliers.acs = [this](const varoLib_s_acs& acs) {
            note("acs " + std::to_string(acs.enabled) + " from " + std::to_string(acs.source));
        };
        varo::configure(configuration);
    }

    void note(const std::string& line) {
        if (line.starts_with(broken)) {
            throw std::runtime_error("it is broken");
        }
        applied.push_back(line);
    }

    std::vector<std::string> take() { return std::exchange(applied, {}); }

    std::string broken = "none";
    std::vector<std::string> applied;
};

const std::vector<std::string> factoryValues{"telnet 5",    "ssh 22",       "ftp 0",
                                             "traps 162 ",  "communities ", "system ",
                                             "zone NONE 1", "ntp ",         "acs 0 from 2"};

TEST_F(Appliers, AreHandedTheValuesInForceWhenTheStoreIsOpened) {
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(take(), factoryValues);
}

TEST_F(Appliers, AreHandedEveryChange) {
    ASSERT_EQ(varoLibInit(), varo::success);
    take();
    varoLib_s_telnetSrv telnet{1, 9, 0};
    varoLib_s_sshSrv ssh{1, 2222};
    varoLib_s_ftpSrv ftp{1};
    EXPECT_EQ(varoUpdateTelnetSrv(&telnet), varo::success);
    EXPECT_EQ(varoUpdateSshSrv(&ssh), varo::success);
    EXPECT_EQ(varoUpdateFtpSrv(&ftp), varo::success);
    EXPECT_THAT(take(), ElementsAre("telnet 9", "ssh 2222", "ftp 1"));
    EXPECT_EQ(varoAddSubag("trap", 0xC0000201), varo::success);
    EXPECT_EQ(varoChangePortSubag(1162), varo::success);
    EXPECT_EQ(varoAddSnmpCommunity("name", 1), varo::success);
    EXPECT_EQ(varoChangeSnmpSystem("node", 3), varo::success);
    EXPECT_THAT(take(), ElementsAre("traps 162 trap", "traps 1162 trap", "communities name",
                                    "system node"));
    varoLib_s_sntpTimeZone zone{};
    setText(zone.name, "UTC");
    EXPECT_EQ(varoUpdateSntpTimeZoneAlt(&zone), varo::success);
    EXPECT_THAT(take(), ElementsAre("zone UTC 0"));
}

TEST_F(Appliers, AreHandedTheSourceInForce) {
    ASSERT_EQ(varoLibInit(), varo::success);
    take();
    rpcSntpConfigHost byHand{};
    setText(byHand.servers[0].host, "cli.example.net");
    rpcSntpConfigHost learnt{};
    setText(learnt.servers[0].host, "dhcp.example.net");
    EXPECT_EQ(varoUpdateNtpHost(1, &learnt), varo::success);
    EXPECT_EQ(varoUpdateNtpHost(2, &byHand), varo::success);
    EXPECT_EQ(varoUpdateNtpHost(1, &learnt), varo::success);
    EXPECT_THAT(take(),
                ElementsAre("ntp dhcp.example.net", "ntp cli.example.net", "ntp cli.example.net"));
    varoLib_s_acs acs{1, 1};
    EXPECT_EQ(varoUpdateAcs(&acs, 1), varo::success);
    acs = {1, 2};
    EXPECT_EQ(varoUpdateAcs(&acs, 2), varo::success);
    EXPECT_THAT(take(), ElementsAre("acs 1 from 1", "acs 1 from 2"));
}

TEST_F(Appliers, AreNotHandedWhatWasRefused) {
    ASSERT_EQ(varoLibInit(), varo::success);
    take();
    varoLib_s_telnetSrv telnet{1, 65, 0};
    EXPECT_EQ(varoUpdateTelnetSrv(&telnet), varo::invalidValue);
    EXPECT_EQ(varoDeleteSubag("trap", 1), varo::notThere);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(Appliers, ThatFailLeaveTheValueStoredAndSaySo) {
    ASSERT_EQ(varoLibInit(), varo::success);
    broken = "ssh";
    varoLib_s_sshSrv ssh{1, 2222};
    EXPECT_EQ(varoUpdateSshSrv(&ssh), varo::applyFailed);
    EXPECT_THAT(log.take(), ElementsAre("3 varoUpdateSshSrv: the SSH settings are stored, but not "
                                        "in force: it is broken"));
    varoLib_s_sshSrv stored{};
    EXPECT_EQ(varoGetSshSrv(&stored), varo::success);
    EXPECT_EQ(stored.port, 2222U);
}

TEST_F(Appliers, ThatFailDoNotKeepTheOthersFromBeingCalled) {
    broken = "t";
    EXPECT_EQ(varoLibInit(), varo::applyFailed);
    EXPECT_EQ(take().size(), factoryValues.size() - 2);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoLib: the telnet settings are stored, but not in force: it is "
                            "broken",
                            "3 varoLibInit: the trap manager settings are stored, but not in "
                            "force: it is broken"));
    // The library is open all the same.
    varoLib_s_sshSrv ssh{};
    EXPECT_EQ(varoGetSshSrv(&ssh), varo::success);
}

}  // namespace
