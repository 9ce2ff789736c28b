// The DHCP client and its leases, with a real client and a real server.

#include "tests/board/varo/network/DhcpTest.h"

#include <signal.h>

#include <chrono>

namespace {

using namespace varotest;

class LeaseInForce : public DhcpTest {
protected:
    void obtainLease() {
        startServer();
        open();
        ASSERT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
    }
};

constexpr const char* learnt = "1 c0000235 c0000236 example.org";
constexpr const char* nothingLearnt = "2 00000000 00000000 ";

TEST_F(LeaseInForce, IsObtainedInFactoryState) {
    obtainLease();
    EXPECT_TRUE(isDhcpOn());
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
    EXPECT_EQ(route(), "192.0.2.1");
    EXPECT_EQ(resolver(), learnt);
    EXPECT_EQ(stored(), "");
    EXPECT_THAT(clients(), SizeIs(1));
}

TEST_F(LeaseInForce, ResolverValuesOfFrontEndsGoFirst) {
    obtainLease();
    varoLib_s_dns dns{};
    dns.ip_pri = 0xC0000201;
    ASSERT_EQ(varoUpdateDnsWS(2, &dns), varo::success);
    EXPECT_EQ(resolver(), "2 c0000201 00000000 ");
    dns = {};
    ASSERT_EQ(varoUpdateDnsWS(2, &dns), varo::success);
    EXPECT_EQ(resolver(), learnt);
}

TEST_F(LeaseInForce, IsFrozenWhenTheClientIsSwitchedOff) {
    obtainLease();
    EXPECT_EQ(switchDhcp(false), varo::success);
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_EQ(addresses(), "192.0.2.50/24");
    EXPECT_EQ(gateways(), "192.0.2.1");
    EXPECT_EQ(stored(), "192.0.2.50|255.255.255.0|192.0.2.1");
    EXPECT_EQ(resolver(), nothingLearnt);

    stopServer();
    close();
    shell("ip address flush dev mng0");
    open();
    EXPECT_FALSE(isDhcpOn());
    EXPECT_EQ(addresses(), "192.0.2.50/24");
    EXPECT_EQ(gateways(), "192.0.2.1");
    EXPECT_THAT(clients(), IsEmpty());
}

TEST_F(LeaseInForce, ReplacesAnAddressSetByHandOnceItIsObtained) {
    open();
    ASSERT_EQ(switchDhcp(false), varo::success);
    ASSERT_EQ(attach("198.51.100.7", "255.255.255.0"), varo::success);
    ASSERT_EQ(addRoute("198.51.100.1"), varo::success);
    EXPECT_EQ(switchDhcp(true), varo::success);
    EXPECT_EQ(stored(), "||");
    // The client has asked in vain meanwhile.
    EXPECT_TRUE(lines.await("4 alarm: the DHCP server does not respond on mng0"));
    EXPECT_EQ(addresses(), "198.51.100.7/24");
    EXPECT_EQ(gateways(), "198.51.100.1");
    startServer();
    EXPECT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
    EXPECT_EQ(lines.count("alarm over: the DHCP server responds on mng0"), 1);
}

TEST_F(LeaseInForce, OutlivesAClientThatIsKilledAndStartedAgain) {
    obtainLease();
    const auto before = clients();
    ASSERT_THAT(before, SizeIs(1));
    kill(before[0], SIGKILL);
    EXPECT_TRUE(lines.await("4 the DHCP client has ended with signal 9"));
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
    EXPECT_TRUE(eventually([&] { return clients().size() == 1 && clients() != before; }));
    EXPECT_TRUE(eventually([&] { return lines.count("DHCP lease from 192.0.2.1") == 2; }));
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
    EXPECT_EQ(lines.count("is lost"), 0);
}

TEST_F(LeaseInForce, IsObtainedAnewWhenTheInterfaceComesBack) {
    obtainLease();
    stopServer();
    cutCable();
    EXPECT_TRUE(lines.await("the interface mng0 is gone"));
    EXPECT_TRUE(eventually([] { return clients().empty(); }));
    layCable();
    startServer();
    EXPECT_TRUE(eventually([] { return gateways() == "192.0.2.1"; }));
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
}

TEST_F(LeaseInForce, ClientEndsWithTheLibrary) {
    obtainLease();
    close();
    EXPECT_THAT(clients(), IsEmpty());
    // The address keeps the board in reach until its lease ends.
    EXPECT_EQ(addresses(), "192.0.2.50/24 dynamic");
    open();
    EXPECT_TRUE(eventually([&] { return lines.count("DHCP lease from 192.0.2.1") == 2; }));
    EXPECT_THAT(clients(), SizeIs(1));
}

TEST_F(LeaseInForce, NamesVendorClassAndCircuitIdWhenTold) {
    obtainLease();
    EXPECT_THAT(server->output(), Not(HasSubstr("vendor class")));
    const auto before = clients();

    varoLib_s_dhcp record{};
    ASSERT_EQ(varoGetDhcp(&record), varo::success);
    record.updateSelector = 3;
    record.vendorClassEnabled = 1;
    EXPECT_EQ(varoUpdateDhcp(&record), varo::invalidValue);
    EXPECT_EQ(lines.count("3 varoUpdateDhcp: there is no update 3"), 1);
    record.updateSelector = 2;
    record.option82Enabled = 1;
    setText(record.circuitId, "shelf 3:");
    ASSERT_EQ(varoUpdateDhcp(&record), varo::success);
    EXPECT_TRUE(server->awaitOutput("vendor class: test class")) << server->output();
    // Echoed as RFC 3046 wants: sub-option 1, 8 bytes.
    EXPECT_TRUE(server->awaitOutput("82 agent-id  01:08:73:68:65:6c:66:20:33:3a"))
        << server->output();
    EXPECT_TRUE(eventually([&] { return clients().size() == 1 && clients() != before; }));

    const auto second = clients();
    ASSERT_EQ(varoUpdateDhcp(&record), varo::success);
    EXPECT_EQ(clients(), second) << "nothing has changed, the client has no reason to start over";
}

TEST_F(LeaseInForce, AlarmIsRaisedOnceAndCanBeTakenBack) {
    open();
    ASSERT_TRUE(lines.await("4 alarm: the DHCP server does not respond on mng0"));
    EXPECT_EQ(varoDhcpRetreatAlrServNotResponding(), varo::success);
    EXPECT_EQ(lines.count("5 alarm taken back: the DHCP server does not respond"), 1);
    EXPECT_EQ(varoDhcpRetreatAlrServNotResponding(), varo::success);
    EXPECT_EQ(lines.count("alarm taken back"), 1);
}

}  // namespace
