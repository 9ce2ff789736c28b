#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/reportText.h"
#include "support/matchers.h"

#include <string>
#include <vector>

namespace {

using varo::BadReport;
using varo::DhcpEvent;
using varo::DhcpReport;
using varo::udhcpc;

std::string message(const std::vector<std::string>& parts) {
    std::string result;
    for (const std::string& part : parts) {
        result += part + '\0';
    }
    return result;
}

DhcpReport bound(std::vector<std::string> values) {
    values.insert(values.begin(), {"bound", "ip=192.0.2.7", "lease=60"});
    return udhcpc.read(message(values));
}

std::string refusal(const std::vector<std::string>& parts) {
    try {
        udhcpc.read(message(parts));
    } catch (const BadReport& bad) {
        return bad.what();
    }
    return "accepted";
}

TEST(Lease, IsReadFromAReport) {
    const DhcpReport report = udhcpc.read(
        message({"renew", "ip=192.0.2.7", "subnet=255.255.255.0", "router=192.0.2.1 192.0.2.2",
                 "dns=192.0.2.53 198.51.100.53 203.0.113.53", "domain=example.org", "lease=3600",
                 "serverid=192.0.2.1", "unknown=value"}));
    EXPECT_EQ(report.event, DhcpEvent::renew);
    EXPECT_EQ(varo::prefixText(report.lease.prefix), "192.0.2.7/24");
    EXPECT_EQ(report.lease.router, 0xC0000201);
    EXPECT_EQ(report.lease.primaryServer, 0xC0000235);
    EXPECT_EQ(report.lease.secondaryServer, 0xC6336435);
    EXPECT_EQ(report.lease.domain, "example.org");
    EXPECT_EQ(report.lease.seconds, 3600U);
    EXPECT_EQ(report.lease.server, 0xC0000201);
    EXPECT_THAT(report.leftOut, IsEmpty());
}

TEST(Lease, IsNotExpectedWithOtherEvents) {
    EXPECT_EQ(udhcpc.read(message({"deconfig"})).event, DhcpEvent::deconfig);
    EXPECT_EQ(udhcpc.read(message({"nak", "ip=nonsense"})).event, DhcpEvent::nak);
    EXPECT_EQ(udhcpc.read(message({"leasefail"})).event, DhcpEvent::leasefail);
    EXPECT_EQ(udhcpc.read("deconfig").event, DhcpEvent::deconfig) << "without its last zero byte";
}

TEST(Lease, WithoutAMaskHasThatOfItsClass) {
    const auto prefix = [](const std::string& address) {
        return varo::prefixText(
            udhcpc.read(message({"bound", "ip=" + address, "lease=60"})).lease.prefix);
    };
    EXPECT_EQ(prefix("10.1.2.3"), "10.1.2.3/8");
    EXPECT_EQ(prefix("172.16.2.3"), "172.16.2.3/16");
    EXPECT_EQ(prefix("192.0.2.3"), "192.0.2.3/24");
}

TEST(Lease, MayHoldForGood) {
    EXPECT_EQ(udhcpc.read(message({"bound", "ip=192.0.2.7", "lease=4294967295"})).lease.seconds,
              0xFFFFFFFF);
}

TEST(Lease, WithAnAddressOrTimeThatIsNoneIsRefused) {
    EXPECT_EQ(refusal({}), "the report is empty");
    EXPECT_EQ(refusal({"born"}), "there is no event \"born\"");
    EXPECT_EQ(refusal({"bound", "lease=60"}), "the address \"\" is none");
    EXPECT_EQ(refusal({"bound", "ip=192.0.2.300", "lease=60"}),
              "the address \"192.0.2.300\" is none");
    EXPECT_EQ(refusal({"bound", "ip=127.0.0.1", "lease=60"}),
              "127.0.0.1 is not the address of a host");
    EXPECT_EQ(refusal({"bound", "ip=192.0.2.7", "subnet=255.255.0.255", "lease=60"}),
              "the mask 255.255.0.255 has holes");
    EXPECT_EQ(refusal({"bound", "ip=192.0.2.7", "subnet=24", "lease=60"}),
              "the mask \"24\" is none");
    for (const std::string time : {"", "0", "-1", "60s", "4294967296"}) {
        EXPECT_EQ(refusal({"bound", "ip=192.0.2.7", "lease=" + time}),
                  "the lease time \"" + time + "\" is none");
    }
}

TEST(Lease, LeavesOutWhatCannotBeUsed) {
    const DhcpReport report =
        bound({"subnet=255.255.255.0", "router=198.51.100.1 192.0.2.7 x 192.0.2.1",
               "dns=0.0.0.0 192.0.2.53 224.0.0.1", "domain=a b\n\"c\""});
    EXPECT_EQ(report.lease.router, 0xC0000201);
    EXPECT_EQ(report.lease.primaryServer, 0xC0000235);
    EXPECT_EQ(report.lease.secondaryServer, 0U);
    EXPECT_EQ(report.lease.domain, "");
    EXPECT_THAT(report.leftOut,
                ElementsAre("router \"x\"", "router 198.51.100.1, which is no neighbour",
                            "router 192.0.2.7, which is no neighbour", "dns \"0.0.0.0\"",
                            "dns \"224.0.0.1\"", "domain \"a b\\x0a\\x22c\\x22\""));
}

TEST(Lease, LeavesOutADomainThatIsTooLong) {
    EXPECT_EQ(bound({"domain=" + std::string(255, 'd')}).lease.domain, std::string(255, 'd'));
    const DhcpReport report = bound({"domain=" + std::string(256, 'd')});
    EXPECT_EQ(report.lease.domain, "");
    EXPECT_THAT(report.leftOut, ElementsAre("domain \"" + std::string(80, 'd') + "...\""));
}

}  // namespace
