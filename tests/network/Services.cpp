// Telnet, SSH and FTP server, and the limit on terminal sessions.

#include "network/EntityTest.h"
#include "network/exports.h"
#include "network/journals.h"

#include <string>

namespace {

const std::string telnetRead = "varoGetTelnetSrv() -> 0 {enabled=1 sessions=5 idle=15}";
const std::string telnetFactory = "varoDefTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}";
const std::string sshFactory = "varoDefSshSrv() -> 0 {enabled=1 port=13}";

class Services : public EntityTest {};

// Telnet.

TEST_F(Services, TelnetIsSwitchedByARecordOfFactoryValues) {
    EXPECT_EQ(networkTelnetEnable(0), 0);
    EXPECT_JOURNAL(
        exclusively(telnetFactory, "varoUpdateTelnetSrv({enabled=0 sessions=11 idle=12}) -> 0"));
    platform.factory.telnet.enabled = 0;
    EXPECT_EQ(networkTelnetEnable(-7), 0);
    EXPECT_JOURNAL(exclusively("varoDefTelnetSrv() -> 0 {enabled=0 sessions=11 idle=12}",
                               "varoUpdateTelnetSrv({enabled=1 sessions=11 idle=12}) -> 0"));
}

TEST_F(Services, TelnetIsSwitchedEvenWithoutFactoryValues) {
    platform.fail("varoDefTelnetSrv", 4);
    EXPECT_EQ(networkTelnetEnable(1), 0);
    EXPECT_JOURNAL(exclusively("varoDefTelnetSrv() -> 4",
                               "varoUpdateTelnetSrv({enabled=1 sessions=0 idle=0}) -> 0"));
}

TEST_F(Services, TelnetThatCannotBeSwitchedIsReported) {
    platform.fail("varoUpdateTelnetSrv", 5);
    EXPECT_EQ(networkTelnetEnable(1), -1);
    EXPECT_JOURNAL(exclusively(telnetFactory,
                               "varoUpdateTelnetSrv({enabled=1 sessions=11 idle=12}) -> 5",
                               error("telnetEnable: varoUpdateTelnetSrv has failed!")));
}

TEST_F(Services, TelnetIsOnWhateverNumberSaysSo) {
    for (const int enabled : {1, 2, -1, 0}) {
        platform.services.telnet.enabled = enabled;
        bool on = enabled == 0;
        EXPECT_EQ(networkGetTelnetConfig(&on), 0);
        EXPECT_EQ(on, enabled != 0);
    }
    platform.services.telnet.enabled = 1;
    journal();
    bool on = false;
    EXPECT_EQ(networkGetTelnetConfig(&on), 0);
    EXPECT_JOURNAL(sharing(telnetRead));
}

TEST_F(Services, TelnetThatCannotBeReadLeavesTheAnswerAlone) {
    platform.fail("varoGetTelnetSrv", 5);
    for (const bool before : {true, false}) {
        bool on = before;
        EXPECT_EQ(networkGetTelnetConfig(&on), -1);
        EXPECT_EQ(on, before);
        EXPECT_JOURNAL(sharing("varoGetTelnetSrv() -> 5",
                               error("getTelnetConfig: varoGetTelnetSrv has failed!")));
    }
}

// SSH.

TEST_F(Services, SshIsSwitchedByARecordOfFactoryValues) {
    EXPECT_EQ(networkSshEnable(0), 0);
    EXPECT_JOURNAL(exclusively(sshFactory, "varoUpdateSshSrv({enabled=0 port=13}) -> 0"));
    platform.factory.ssh.enabled = 0;
    EXPECT_EQ(networkSshEnable(256), 0);
    EXPECT_JOURNAL(exclusively("varoDefSshSrv() -> 0 {enabled=0 port=13}",
                               "varoUpdateSshSrv({enabled=1 port=13}) -> 0"));
}

TEST_F(Services, SshIsSwitchedEvenWithoutFactoryValues) {
    platform.fail("varoDefSshSrv", 4);
    EXPECT_EQ(networkSshEnable(1), 0);
    EXPECT_JOURNAL(
        exclusively("varoDefSshSrv() -> 4", "varoUpdateSshSrv({enabled=1 port=0}) -> 0"));
}

TEST_F(Services, SshThatCannotBeSwitchedIsReported) {
    platform.fail("varoUpdateSshSrv", 5);
    EXPECT_EQ(networkSshEnable(1), -1);
    EXPECT_JOURNAL(exclusively(sshFactory, "varoUpdateSshSrv({enabled=1 port=13}) -> 5",
                               error("sshEnable: varoUpdateSshSrv has failed!")));
}

TEST_F(Services, SshIsOnWhateverNumberSaysSo) {
    for (const int enabled : {1, 2, -1, 0}) {
        platform.services.ssh.enabled = enabled;
        bool on = enabled == 0;
        EXPECT_EQ(networkGetSshConfig(&on), 0);
        EXPECT_EQ(on, enabled != 0);
    }
    journal();
    bool on = true;
    EXPECT_EQ(networkGetSshConfig(&on), 0);
    EXPECT_JOURNAL(sharing("varoGetSshSrv() -> 0 {enabled=0 port=2022}"));
}

TEST_F(Services, SshThatCannotBeReadLeavesTheAnswerAlone) {
    platform.fail("varoGetSshSrv", 5);
    for (const bool before : {true, false}) {
        bool on = before;
        EXPECT_EQ(networkGetSshConfig(&on), -1);
        EXPECT_EQ(on, before);
        EXPECT_JOURNAL(
            sharing("varoGetSshSrv() -> 5", error("getSshConfig: varoGetSshSrv has failed!")));
    }
}

// Limit on terminal sessions.

TEST_F(Services, SessionLimitKeepsTheOtherSettings) {
    EXPECT_EQ(networkSetPtyMaxSess(7), 0);
    EXPECT_JOURNAL(
        exclusively(telnetRead, "varoUpdateTelnetSrv({enabled=1 sessions=7 idle=15}) -> 0"));
}

TEST_F(Services, SessionLimitOfZeroIsTheCommandLinesOwn) {
    EXPECT_EQ(networkSetPtyMaxSess(0), 0);
    EXPECT_JOURNAL(exclusively(telnetRead, "CliConfig::settings_t()",
                               "varoUpdateTelnetSrv({enabled=1 sessions=16 idle=15}) -> 0"));
}

TEST_F(Services, SessionLimitHasNoBoundHere) {
    EXPECT_EQ(networkSetPtyMaxSess(0xffffffff), 0);
    EXPECT_JOURNAL(exclusively(
        telnetRead, "varoUpdateTelnetSrv({enabled=1 sessions=4294967295 idle=15}) -> 0"));
}

TEST_F(Services, SessionLimitThatTheLibraryRefusesIsReported) {
    platform.fail("varoUpdateTelnetSrv", -22);
    EXPECT_EQ(networkSetPtyMaxSess(7), -1);
    EXPECT_JOURNAL(
        exclusively(telnetRead, "varoUpdateTelnetSrv({enabled=1 sessions=7 idle=15}) -> -22",
                    error("ptySetMaxSess: varoUpdateTelnetSrv has failed! Return value: -22")));
}

TEST_F(Services, SessionLimitIsNotSetWhenTheServerCannotBeRead) {
    platform.fail("varoGetTelnetSrv", 5);
    EXPECT_EQ(networkSetPtyMaxSess(7), -1);
    EXPECT_JOURNAL(exclusively("varoGetTelnetSrv() -> 5",
                               error("ptySetMaxSess: varoGetTelnetSrv has failed!")));
}

TEST_F(Services, SwitchingTelnetForgetsTheSessionLimit) {
    EXPECT_EQ(networkSetPtyMaxSess(7), 0);
    EXPECT_EQ(networkTelnetEnable(1), 0);
    journal();
    unsigned int maxSessions = 0;
    unsigned int value = 0;
    EXPECT_EQ(networkGetPtyMaxSess(&maxSessions, &value), 0);
    EXPECT_EQ(maxSessions, 11U);
    EXPECT_EQ(value, 12U);
    EXPECT_JOURNAL(sharing("varoGetTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}"));
}

TEST_F(Services, SessionLimitThatCannotBeReadLeavesTheAnswersAlone) {
    platform.fail("varoGetTelnetSrv", 5);
    unsigned int maxSessions = 77;
    unsigned int value = 78;
    EXPECT_EQ(networkGetPtyMaxSess(&maxSessions, &value), -1);
    EXPECT_EQ(maxSessions, 77U);
    EXPECT_EQ(value, 78U);
    EXPECT_JOURNAL(
        sharing("varoGetTelnetSrv() -> 5", error("ptyGetMaxSess: varoGetTelnetSrv has failed!")));
}

// FTP.

TEST_F(Services, FtpIsSwitchedWithoutBeingRead) {
    EXPECT_EQ(networkFtpEnable(1), 0);
    EXPECT_JOURNAL(exclusively("varoUpdateFtpSrv({state=1}) -> 0"));
    EXPECT_EQ(networkFtpEnable(-1), 0);
    EXPECT_JOURNAL(exclusively("varoUpdateFtpSrv({state=1}) -> 0"));
    EXPECT_EQ(networkFtpEnable(0), 0);
    EXPECT_JOURNAL(exclusively("varoUpdateFtpSrv({state=0}) -> 0"));
}

TEST_F(Services, FtpThatCannotBeSwitchedAnswersWithTheLibrarysCodeSilently) {
    for (const int code : {5, -3}) {
        platform.fail("varoUpdateFtpSrv", code);
        EXPECT_EQ(networkFtpEnable(1), code);
        EXPECT_JOURNAL(exclusively("varoUpdateFtpSrv({state=1}) -> " + std::to_string(code)));
    }
}

TEST_F(Services, FtpStateIsZeroWhileItIsOnAndOneWhileItIsOff) {
    EXPECT_EQ(networkGetFtpState(), 1);
    EXPECT_JOURNAL(sharing("varoGetFtpSrv() -> 0 {state=0}"));
    EXPECT_EQ(networkFtpEnable(1), 0);
    journal();
    EXPECT_EQ(networkGetFtpState(), 0);
    EXPECT_JOURNAL(sharing("varoGetFtpSrv() -> 0 {state=1}"));
    platform.services.ftp.state = -2;
    EXPECT_EQ(networkGetFtpState(), 0);
    journal();
}

TEST_F(Services, FtpStateThatCannotBeReadIsTheLibrarysCode) {
    platform.fail("varoGetFtpSrv", 5);
    EXPECT_EQ(networkGetFtpState(), 5);
    EXPECT_JOURNAL(sharing("varoGetFtpSrv() -> 5"));
}

}  // namespace
