#include "mngctl/commands/consent.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

TEST(WayIn, IsReadFromTheTwoEndsOfTheConnection) {
    for (const char* const text :
         {"198.51.100.7 50022 192.0.2.10 22", "::ffff:198.51.100.7 50022 ::ffff:192.0.2.10 22"}) {
        const auto way = parseWayIn(text);
        ASSERT_TRUE(way) << text;
        EXPECT_EQ(way->client, 0xC6336407U);
        EXPECT_EQ(way->server, 0xC000020AU);
    }
}

TEST(WayIn, IsNoneOfIpv4Otherwise) {
    for (const char* const text :
         {"", "198.51.100.7", "198.51.100.7 50022 192.0.2.10", "2001:db8::7 50022 2001:db8::1 22",
          "client 50022 192.0.2.10 22", "198.51.100.7 50022 server 22"}) {
        EXPECT_FALSE(parseWayIn(text)) << text;
    }
}

TEST(WayIn, ComesFromTheEnvironment) {
    EXPECT_FALSE(wayIn());
    const Variable connection("SSH_CONNECTION", "198.51.100.7 50022 192.0.2.10 22");
    ASSERT_TRUE(wayIn());
    EXPECT_EQ(wayIn()->client, 0xC6336407U);
}

}  // namespace
}  // namespace mngctl::test
