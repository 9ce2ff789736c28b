#include "tests/board/varo/VaroTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace varotest;
using testing::ElementsAre;

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
        sql(file, "INSERT INTO dns VALUES (2, " + values + ")");
    }

    /// The row cannot be read, for this reason, and the record stays as it was.
    void expectUnreadable(const std::string& reason) {
        ASSERT_EQ(varoLibInit(), varo::success);
        varoLib_s_dns record{};
        setText(record.domain, "before");
        int source = 2;
        EXPECT_EQ(varoGetDnsWS(&source, &record), varo::storageFailed);
        EXPECT_THAT(log.lines(), ElementsAre("3 varoGetDnsWS: cannot read dns from " +
                                             file.string() + ": " + reason));
        EXPECT_STREQ(record.domain, "before");
        EXPECT_EQ(source, 2);
    }
};

TEST_F(HandMadeFile, IsReadWhenItsValuesAreOfTheRightTypes) {
    insert("'example.net', '192.0.2.1', ''");
    ASSERT_EQ(varoLibInit(), varo::success);
    varoLib_s_dns record{};
    int source = 2;
    EXPECT_EQ(varoGetDnsWS(&source, &record), varo::success);
    EXPECT_STREQ(record.domain, "example.net");
    EXPECT_EQ(record.ip_pri, 0xC0000201);
}

TEST_F(HandMadeFile, WithAnIntegerForATextIsAnError) {
    insert("17, '', ''");
    expectUnreadable("domain: what is stored is not a text");
}

TEST_F(HandMadeFile, WithNullForATextIsAnError) {
    insert("NULL, '', ''");
    expectUnreadable("domain: what is stored is not a text");
}

TEST_F(HandMadeFile, WithABlobForATextIsAnError) {
    insert("x'6578', '', ''");
    expectUnreadable("domain: what is stored is not a text");
}

TEST_F(HandMadeFile, WithAZeroByteInATextIsAnError) {
    insert("CAST(x'610062' AS TEXT), '', ''");
    expectUnreadable("domain: the stored text contains a zero byte");
}

TEST_F(HandMadeFile, WithATextThatDoesNotFitIsAnError) {
    insert("'" + std::string(256, 'd') + "', '', ''");
    expectUnreadable("domain: the stored text is longer than 255 bytes");
}

TEST_F(HandMadeFile, WithAHugeTextIsAnError) {
    insert("printf('%.*c', 5000000, 'd'), '', ''");
    expectUnreadable("domain: the stored text is longer than 255 bytes");
}

TEST_F(HandMadeFile, WithAnAddressAsANumberIsAnError) {
    insert("'', 3221225985, ''");
    expectUnreadable("primary_server: what is stored is not a text");
}

TEST_F(HandMadeFile, WithATextThatIsNoAddressIsAnError) {
    insert("'', '', '192.0.2'");
    expectUnreadable("secondary_server: the stored text is not a dotted IPv4 address");
}

TEST_F(HandMadeFile, IsMendedByTheNextUpdate) {
    insert("17, 18, 19.5");
    ASSERT_EQ(varoLibInit(), varo::success);
    varoLib_s_dns record{};
    setText(record.domain, "example.net");
    EXPECT_EQ(varoUpdateDnsWS(2, &record), varo::success);
    int source = 2;
    record = {};
    EXPECT_EQ(varoGetDnsWS(&source, &record), varo::success);
    EXPECT_STREQ(record.domain, "example.net");
}

TEST_F(HandMadeFile, WithASeverityThatIsNoneKeepsTheFactoryThreshold) {
    for (const char* severity : {"'high'", "3.5", "70000", "NULL"}) {
        sql(file,
            std::string("INSERT OR REPLACE INTO internal_config VALUES (1, ") + severity + ")");
        EXPECT_EQ(varoLibInit(), varo::storageFailed) << severity;
        EXPECT_THAT(log.take(), ElementsAre(testing::HasSubstr("varoLibInit: cannot read "
                                                               "internal_config from")))
            << severity;
        varoLib_s_internalConfig record{.severity = 99};
        EXPECT_EQ(varoGetInternalConfig(&record), varo::storageFailed) << severity;
        EXPECT_EQ(record.severity, 99) << severity;
        // The library is open all the same.
        varoLib_s_dns dns{};
        int source = 2;
        EXPECT_EQ(varoGetDnsWS(&source, &dns), varo::success) << severity;
        varoLibDestroy();
        log.take();
    }
}

}  // namespace
