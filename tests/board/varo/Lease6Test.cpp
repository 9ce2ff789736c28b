#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/reportText.h"
#include "support/matchers.h"

#include <string>
#include <vector>

namespace {

std::string message(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += part + '\0';
    }
    return text;
}

/// A report that is as it should be, but for what is given beside it.
varo::Dhcp6Report granted(std::vector<std::string> more) {
    more.insert(more.begin(), "BOUND6");
    // The first of a name counts.
    for (const char* const value :
         {"new_ip6_address=2001:db8::100", "new_max_life=7500", "new_preferred_life=7200"}) {
        more.emplace_back(value);
    }
    return varo::dhclient.read(message(more));
}

std::string refusal(const std::string& text) {
    try {
        varo::dhclient.read(text);
    } catch (const varo::BadReport& bad) {
        return bad.what();
    }
    return "nothing";
}

TEST(Lease6, IsRead) {
    for (const char* const event : {"BOUND6", "RENEW6", "REBIND6"}) {
        const auto report = varo::dhclient.read(message(
            {event, "new_ip6_address=2001:DB8::100", "new_max_life=7500", "new_preferred_life=7200",
             "new_dhcp6_name_servers=2001:DB8::53 2001:db8::54 ::2:3:4",
             "new_dhcp6_domain_search=example.org. b.example."}));
        EXPECT_EQ(report.event, varo::Dhcp6Event::granted);
        EXPECT_EQ(varo::ipv6Text(report.lease.address), "2001:db8::100");
        EXPECT_EQ(report.lease.valid, 7500U);
        EXPECT_EQ(report.lease.preferred, 7200U);
        EXPECT_EQ(report.lease.primaryServer, "2001:db8::53");
        EXPECT_EQ(report.lease.secondaryServer, "2001:db8::54");
        EXPECT_EQ(report.lease.domain, "example.org");
        EXPECT_FALSE(report.ended);
        EXPECT_THAT(report.leftOut, IsEmpty());
    }
}

TEST(Lease6, TellsWhichAddressItReplaces) {
    EXPECT_FALSE(granted({"old_ip6_address=2001:db8::100"}).ended);
    const auto report = granted({"old_ip6_address=2001:db8::99"});
    ASSERT_TRUE(report.ended);
    EXPECT_EQ(varo::ipv6Text(*report.ended), "2001:db8::99");
}

TEST(Lease6, Ends) {
    for (const char* const event : {"EXPIRE6", "RELEASE6", "STOP6"}) {
        const auto report = varo::dhclient.read(message({event, "old_ip6_address=2001:db8::100"}));
        EXPECT_EQ(report.event, varo::Dhcp6Event::ended);
        ASSERT_TRUE(report.ended);
        EXPECT_EQ(varo::ipv6Text(*report.ended), "2001:db8::100");
    }
    EXPECT_FALSE(varo::dhclient.read(message({"STOP6"})).ended);
}

TEST(Lease6, HasEventsThatChangeNothing) {
    for (const char* const event : {"PREINIT6", "DEPREF6", "FAIL6"}) {
        EXPECT_EQ(varo::dhclient.read(message({event})).event, varo::Dhcp6Event::other);
    }
}

TEST(Lease6, IsPreferredNoLongerThanItIsValid) {
    EXPECT_EQ(granted({"new_max_life=100"}).lease.preferred, 100U);
    EXPECT_EQ(granted({"new_max_life=4294967295"}).lease.valid, 4294967295U);
    EXPECT_EQ(granted({"new_preferred_life=0"}).lease.preferred, 0U);
}

TEST(Lease6, BadValuesBesideTheAddressAreLeftOut) {
    const auto report = granted({"new_dhcp6_name_servers=ff02::1 192.0.2.1 2001:db8::54 \x1b[2J",
                                 "new_dhcp6_domain_search=a\nb.example."});
    EXPECT_EQ(report.lease.primaryServer, "2001:db8::54");
    EXPECT_EQ(report.lease.secondaryServer, "");
    EXPECT_EQ(report.lease.domain, "");
    EXPECT_THAT(report.leftOut,
                ElementsAre("name server \"ff02::1\"", "name server \"192.0.2.1\"",
                            "name server \"\\x1b[2J\"", "domain \"a\\x0ab.example.\""));
    EXPECT_THAT(granted({"new_dhcp6_domain_search=" + std::string(300, 'd')}).leftOut,
                ElementsAre(HasSubstr("domain \"ddd")));
    EXPECT_EQ(granted({"new_dhcp6_domain_search=."}).lease.domain, "");
}

TEST(Lease6, WithoutAUsableAddressOrLifetimeIsRefused) {
    const auto with = [](const std::string& address, const std::string& valid,
                         const std::string& preferred) {
        return refusal(message({"BOUND6", "new_ip6_address=" + address, "new_max_life=" + valid,
                                "new_preferred_life=" + preferred}));
    };
    EXPECT_EQ(with("2001:db8::1", "10", "10"), "nothing");
    EXPECT_EQ(with("192.0.2.1", "10", "10"), "the address \"192.0.2.1\" is none");
    EXPECT_EQ(with("", "10", "10"), "the address \"\" is none");
    for (const char* const address : {"::1", "ff02::1", "fe80::1"}) {
        EXPECT_EQ(with(address, "10", "10"),
                  std::string(address) + " is not the address of a host beyond the link");
    }
    EXPECT_EQ(with("2001:db8::1", "0", "0"), "2001:db8::1 is granted for no time");
    for (const char* const seconds : {"", "-1", "x", "10 ", "4294967296"}) {
        EXPECT_EQ(with("2001:db8::1", seconds, "1"),
                  "the valid lifetime \"" + std::string(seconds) + "\" is none");
        EXPECT_EQ(with("2001:db8::1", "1", seconds),
                  "the preferred lifetime \"" + std::string(seconds) + "\" is none");
    }
    EXPECT_EQ(refusal(""), "the report is empty");
    EXPECT_EQ(refusal(message({"BOUND"})), "there is no event \"BOUND\"");
}

}  // namespace
