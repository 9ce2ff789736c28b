#include "tests/board/varo/VaroTest.h"

#include <fmt/format.h>

#include <climits>

namespace {

using namespace varotest;

/// The values of a record, in its order.
std::string shown(const varoLib_s_telnetSrv& server) {
    return fmt::format("{} {} {}", server.enabled, server.maxSessions, server.idleTimeout);
}
std::string shown(const varoLib_s_sshSrv& server) {
    return fmt::format("{} {}", server.enabled, server.port);
}
std::string shown(const varoLib_s_ftpSrv& server) { return fmt::format("{}", server.state); }

class Services : public VaroTest {
protected:
    static std::string telnet() { return shown(readBy(varoGetTelnetSrv)); }
    static std::string ssh() { return shown(readBy(varoGetSshSrv)); }
    static std::string ftp() { return shown(readBy(varoGetFtpSrv)); }

    static int setTelnet(int enabled, unsigned int sessions, unsigned int minutes) {
        varoLib_s_telnetSrv record{enabled, sessions, minutes};
        return varoUpdateTelnetSrv(&record);
    }

    static int setSsh(int enabled, unsigned int port) {
        varoLib_s_sshSrv record{enabled, port};
        return varoUpdateSshSrv(&record);
    }

    static int setFtp(int state) {
        varoLib_s_ftpSrv record{state};
        return varoUpdateFtpSrv(&record);
    }
};

TEST_F(Services, OffersEncryptedTerminalsOnlyFromTheFactory) {
    EXPECT_EQ(telnet(), "0 5 10");
    EXPECT_EQ(ssh(), "1 22");
    EXPECT_EQ(ftp(), "0");
}

TEST_F(Services, KeepsWhatIsSetOverARestart) {
    EXPECT_EQ(setTelnet(1, 64, 0), varo::success);
    EXPECT_EQ(setSsh(0, 65535), varo::success);
    EXPECT_EQ(setFtp(1), varo::success);
    ASSERT_EQ(restart(), varo::success);
    EXPECT_EQ(telnet(), "1 64 0");
    EXPECT_EQ(ssh(), "0 65535");
    EXPECT_EQ(ftp(), "1");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Services, TakesTheSmallestValues) {
    EXPECT_EQ(setTelnet(0, 1, 0), varo::success);
    EXPECT_EQ(setTelnet(0, 1, 1440), varo::success);
    EXPECT_EQ(setSsh(0, 1), varo::success);
}

TEST_F(Services, RefusesTelnetValuesOutOfRangeAndKeepsTheOldOnes) {
    ASSERT_EQ(setTelnet(1, 7, 20), varo::success);
    EXPECT_EQ(setTelnet(2, 7, 20), varo::invalidValue);
    EXPECT_EQ(setTelnet(-1, 7, 20), varo::invalidValue);
    EXPECT_EQ(setTelnet(0, 0, 20), varo::invalidValue);
    EXPECT_EQ(setTelnet(0, 65, 20), varo::invalidValue);
    EXPECT_EQ(setTelnet(0, UINT_MAX, 20), varo::invalidValue);
    EXPECT_EQ(setTelnet(0, 8, 1441), varo::invalidValue);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoUpdateTelnetSrv: enabled: 2 is not in 0 to 1",
                            "3 varoUpdateTelnetSrv: enabled: -1 is not in 0 to 1",
                            "3 varoUpdateTelnetSrv: maximum sessions: 0 is not in 1 to 64",
                            "3 varoUpdateTelnetSrv: maximum sessions: 65 is not in 1 to 64",
                            "3 varoUpdateTelnetSrv: maximum sessions: 4294967295 is not in 1 to 64",
                            "3 varoUpdateTelnetSrv: idle timeout: 1441 is not in 0 to 1440"));
    EXPECT_EQ(telnet(), "1 7 20");
}

TEST_F(Services, RefusesSshAndFtpValuesOutOfRangeAndKeepsTheOldOnes) {
    EXPECT_EQ(setSsh(2, 22), varo::invalidValue);
    EXPECT_EQ(setSsh(0, 0), varo::invalidValue);
    EXPECT_EQ(setSsh(0, 65536), varo::invalidValue);
    EXPECT_EQ(setFtp(2), varo::invalidValue);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoUpdateSshSrv: enabled: 2 is not in 0 to 1",
                                         "3 varoUpdateSshSrv: port: 0 is not in 1 to 65535",
                                         "3 varoUpdateSshSrv: port: 65536 is not in 1 to 65535",
                                         "3 varoUpdateFtpSrv: state: 2 is not in 0 to 1"));
    EXPECT_EQ(ssh(), "1 22");
    EXPECT_EQ(ftp(), "0");
}

TEST_F(Services, FillsFactoryValuesAndStoresNothing) {
    ASSERT_EQ(setTelnet(1, 7, 20), varo::success);
    ASSERT_EQ(setSsh(0, 2222), varo::success);
    ASSERT_EQ(setFtp(1), varo::success);
    EXPECT_EQ(shown(readBy(varoDefTelnetSrv)), "0 5 10");
    EXPECT_EQ(shown(readBy(varoDefSshSrv)), "1 22");
    EXPECT_EQ(shown(readBy(varoDefFtpSrv)), "0");
    EXPECT_EQ(telnet(), "1 7 20");
    EXPECT_EQ(ssh(), "0 2222");
    EXPECT_EQ(ftp(), "1");
}

TEST_F(Services, RefusesNullRecords) {
    for (const auto call : {varoGetTelnetSrv, varoUpdateTelnetSrv, varoDefTelnetSrv}) {
        EXPECT_EQ(call(nullptr), varo::invalidArgument);
    }
    for (const auto call : {varoGetSshSrv, varoUpdateSshSrv, varoDefSshSrv}) {
        EXPECT_EQ(call(nullptr), varo::invalidArgument);
    }
    for (const auto call : {varoGetFtpSrv, varoUpdateFtpSrv, varoDefFtpSrv}) {
        EXPECT_EQ(call(nullptr), varo::invalidArgument);
    }
}

TEST_F(Services, AnswersNotOpenOnceClosed) {
    varoLibDestroy();
    varoLib_s_telnetSrv record{1, 9, 9};
    EXPECT_EQ(varoGetTelnetSrv(&record), varo::notOpen);
    EXPECT_EQ(varoUpdateTelnetSrv(&record), varo::notOpen);
    EXPECT_EQ(record.maxSessions, 9U);
}

class Acs : public VaroTest {
protected:
    static int update(int enabled, int inRecord, int source) {
        varoLib_s_acs record{enabled, inRecord};
        return varoUpdateAcs(&record, source);
    }

    std::string stored() const {
        return sql(file, "SELECT source, enabled FROM acs ORDER BY source");
    }
};

TEST_F(Acs, IsOffFromTheFactoryForEachSource) {
    for (const int source : {1, 2}) {
        auto record =
            filledBy<varoLib_s_acs>([&](auto& filled) { return varoDefAcs(&filled, source); });
        EXPECT_EQ(record.enabled, 0);
        EXPECT_EQ(record.source, source);
        EXPECT_EQ(varoUpdateAcs(&record, source), varo::success);
    }
    EXPECT_EQ(stored(), "1|0\n2|0");
}

TEST_F(Acs, KeepsTheRecordOfEachSource) {
    EXPECT_EQ(update(1, 1, 1), varo::success);
    EXPECT_EQ(update(0, 2, 2), varo::success);
    EXPECT_EQ(stored(), "1|1\n2|0");
}

TEST_F(Acs, RefusesBadValuesAndStoresNothing) {
    EXPECT_EQ(update(2, 2, 2), varo::invalidValue);
    EXPECT_EQ(update(1, 1, 2), varo::invalidValue);
    EXPECT_EQ(update(1, 0, 0), varo::noSuchSource);
    EXPECT_EQ(update(1, 3, 3), varo::noSuchSource);
    EXPECT_EQ(varoUpdateAcs(nullptr, 2), varo::invalidArgument);
    EXPECT_EQ(varoDefAcs(nullptr, 2), varo::invalidArgument);
    varoLib_s_acs record{7, 7};
    EXPECT_EQ(varoDefAcs(&record, 0), varo::noSuchSource);
    EXPECT_EQ(record.enabled, 7);
    EXPECT_THAT(log.lines(),
                ElementsAre("3 varoUpdateAcs: enabled: 2 is not in 0 to 1",
                            "3 varoUpdateAcs: source: 1 in the record, 2 in the call",
                            "3 varoUpdateAcs: there is no configuration source 0",
                            "3 varoUpdateAcs: there is no configuration source 3",
                            "3 varoUpdateAcs: null pointer", "3 varoDefAcs: null pointer",
                            "3 varoDefAcs: there is no configuration source 0"));
    EXPECT_EQ(stored(), "");
}

}  // namespace
