// Telnet, SSH and FTP server, and the limit on terminal sessions.

#include "network/EntityTest.h"
#include "network/exports.h"

#include <string>

namespace {

const std::string telnetRead = "varoGetTelnetSrv() -> 0 {enabled=1 sessions=5 idle=15}";

using Services = EntityTest;

// Telnet and SSH, of which each is switched by a record of factory values.

struct Server {
    std::string call;  ///< how the calls of its record end
    int (*enable)(int on);
    int (*read)(bool* on);
    std::string notSwitched;  ///< message
    std::string notRead;      ///< message
    std::string stored;       ///< what its record holds but the switch
    std::string factory;      ///< likewise
    std::string nothing;      ///< likewise, all of it zero
    /// The switches in force and of the factory.
    std::int32_t& (*inForce)(fake::Platform&);
    std::int32_t& (*ofTheFactory)(fake::Platform&);
};

const Server servers[] = {
    {"TelnetSrv", networkTelnetEnable, networkGetTelnetConfig,
     "telnetEnable: varoUpdateTelnetSrv has failed!",
     "getTelnetConfig: varoGetTelnetSrv has failed!", " sessions=5 idle=15", " sessions=11 idle=12",
     " sessions=0 idle=0",
     [](fake::Platform& board) -> std::int32_t& { return board.services.telnet.enabled; },
     [](fake::Platform& board) -> std::int32_t& { return board.factory.telnet.enabled; }},
    {"SshSrv", networkSshEnable, networkGetSshConfig, "sshEnable: varoUpdateSshSrv has failed!",
     "getSshConfig: varoGetSshSrv has failed!", " port=2022", " port=13", " port=0",
     [](fake::Platform& board) -> std::int32_t& { return board.services.ssh.enabled; },
     [](fake::Platform& board) -> std::int32_t& { return board.factory.ssh.enabled; }},
};

class TerminalServer : public Services, public testing::WithParamInterface<Server> {
protected:
    const Server& server = GetParam();
    const std::string get = "varoGet" + server.call;
    const std::string def = "varoDef" + server.call;
    const std::string update = "varoUpdate" + server.call;

    std::string factoryRead(int on) const { return def + "() -> 0 " + record(on, server.factory); }
    std::string written(int on, const std::string& rest, int status = 0) const {
        return update + "(" + record(on, rest) + ") -> " + std::to_string(status);
    }
    static std::string record(int on, const std::string& rest) {
        return "{enabled=" + std::to_string(on) + rest + "}";
    }
};

INSTANTIATE_TEST_SUITE_P(, TerminalServer, testing::ValuesIn(servers),
                         [](const auto& server) { return server.param.call; });

TEST_P(TerminalServer, IsSwitchedByARecordOfFactoryValues) {
    EXPECT_EQ(server.enable(0), 0);
    EXPECT_JOURNAL(exclusively(factoryRead(1), written(0, server.factory)));
    server.ofTheFactory(platform) = 0;
    for (const int on : {-7, 256}) {
        EXPECT_EQ(server.enable(on), 0);
        EXPECT_JOURNAL(exclusively(factoryRead(0), written(1, server.factory)));
    }
}

TEST_P(TerminalServer, IsSwitchedEvenWithoutFactoryValues) {
    platform.fail(def, 4);
    EXPECT_EQ(server.enable(1), 0);
    EXPECT_JOURNAL(exclusively(def + "() -> 4", written(1, server.nothing)));
}

TEST_P(TerminalServer, ThatCannotBeSwitchedIsReported) {
    platform.fail(update, 5);
    EXPECT_EQ(server.enable(1), -1);
    EXPECT_JOURNAL(
        exclusively(factoryRead(1), written(1, server.factory, 5), error(server.notSwitched)));
}

TEST_P(TerminalServer, IsOnWhateverNumberSaysSo) {
    for (const int enabled : {1, 2, -1, 0}) {
        server.inForce(platform) = enabled;
        bool on = enabled == 0;
        EXPECT_EQ(server.read(&on), 0);
        EXPECT_EQ(on, enabled != 0);
        EXPECT_JOURNAL(sharing(get + "() -> 0 " + record(enabled, server.stored)));
    }
}

TEST_P(TerminalServer, ThatCannotBeReadLeavesTheAnswerAlone) {
    platform.fail(get, 5);
    for (const bool before : {true, false}) {
        bool on = before;
        EXPECT_EQ(server.read(&on), -1);
        EXPECT_EQ(on, before);
        EXPECT_JOURNAL(sharing(get + "() -> 5", error(server.notRead)));
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
