#include "tests/board/varo/VaroTest.h"

namespace {

using namespace varotest;

/// A file that somebody made by hand, with the right names but without types.
class HandMadeFile : public ClosedVaroTest {
protected:
    HandMadeFile() {
        sql(file,
            "CREATE TABLE internal_config (id INTEGER PRIMARY KEY, severity);"
            "CREATE TABLE dns (source INTEGER PRIMARY KEY, domain, primary_server, "
            "secondary_server);"
            "CREATE TABLE dns6 (source INTEGER PRIMARY KEY, domain, primary_server, "
            "secondary_server);"
            "PRAGMA user_version = 1");
    }

    void insert(const std::string& values) {
        sql(file, "INSERT OR REPLACE INTO dns VALUES (2, " + values + ")");
    }

    /// The row cannot be read, for this reason, and the record stays as it was.
    void expectUnreadable(const std::string& reason) {
        ASSERT_EQ(varoLibInit(), varo::success);
        varoLib_s_dns record = dnsOf("before");
        int source = 2;
        EXPECT_EQ(varoGetDnsWS(&source, &record), varo::storageFailed);
        EXPECT_THAT(log.take(), ElementsAre("3 varoGetDnsWS: cannot read dns from " +
                                            file.string() + ": " + reason));
        EXPECT_STREQ(record.domain, "before");
        EXPECT_EQ(source, 2);
    }
};

TEST_F(HandMadeFile, IsReadWhenItsValuesAreOfTheRightTypes) {
    insert("'example.net', '192.0.2.1', ''");
    ASSERT_EQ(varoLibInit(), varo::success);
    EXPECT_STREQ(storedDns().domain, "example.net");
    EXPECT_EQ(storedDns().ip_pri, 0xC0000201);
}

TEST_F(HandMadeFile, WithAValueThatTheRecordCannotHoldIsAnError) {
    const std::string noText = "domain: what is stored is not a text";
    const std::string tooLong = "domain: the stored text is longer than 255 bytes";
    for (const auto& [values, reason] : std::vector<std::pair<std::string, std::string>>{
             {"17, '', ''", noText},
             {"NULL, '', ''", noText},
             {"x'6578', '', ''", noText},
             {"CAST(x'610062' AS TEXT), '', ''", "domain: the stored text contains a zero byte"},
             {"'" + std::string(256, 'd') + "', '', ''", tooLong},
             {"printf('%.*c', 5000000, 'd'), '', ''", tooLong},
             {"'', 3221225985, ''", "primary_server: what is stored is not a text"},
             {"'', '', '192.0.2'",
              "secondary_server: the stored text is not a dotted IPv4 address"}}) {
        insert(values);
        expectUnreadable(reason);
        varoLibDestroy();
    }
}

TEST_F(HandMadeFile, IsMendedByTheNextUpdate) {
    insert("17, 18, 19.5");
    ASSERT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(store(2, dnsOf("example.net")), varo::success);
    EXPECT_STREQ(storedDns().domain, "example.net");
}

TEST_F(HandMadeFile, WithASeverityThatIsNoneKeepsTheFactoryThreshold) {
    const std::string noInteger = "severity: what is stored is not an integer";
    for (const auto& [severity, reason] : std::vector<std::pair<std::string, std::string>>{
             {"'high'", noInteger},
             {"3.5", noInteger},
             {"70000", "severity: the stored 70000 is not in -32768 to 32767"},
             {"NULL", noInteger}}) {
        sql(file, "INSERT OR REPLACE INTO internal_config VALUES (1, " + severity + ")");
        EXPECT_EQ(varoLibInit(), varo::storageFailed) << severity;
        EXPECT_THAT(log.take(), ElementsAre("3 varoLibInit: cannot read internal_config from " +
                                            file.string() + ": " + reason));
        varoLib_s_internalConfig record{.severity = 99};
        EXPECT_EQ(varoGetInternalConfig(&record), varo::storageFailed) << severity;
        EXPECT_EQ(record.severity, 99) << severity;
        // The library is open all the same.
        SCOPED_TRACE(severity);
        storedDns();
        varoLibDestroy();
        log.take();
    }
}

}  // namespace
