// The DHCPv6 client and its leases, with a real client and a real server.

#include "tests/board/varo/network/Ipv6Test.h"

#include <signal.h>

namespace {

using namespace varotest;

constexpr const char* lease = "2001:db8::100/128 dynamic";
constexpr const char* learnt = "1 2001:db8::53  example.org";
constexpr const char* nothingLearnt = "2   ";

class Ipv6Lease : public Ipv6Test {
protected:
    void obtainLease() {
        startServer6();
        ASSERT_EQ(switchDhcp6(true), varo::success);
        ASSERT_TRUE(eventually([] { return globalAddresses() == lease; })) << globalAddresses();
    }

    void startClient(const std::vector<std::string>& command) {
        close();
        configuration.dhcp6Client = command;
        configure();
        open();
        ASSERT_EQ(switchDhcp6(true), varo::success);
    }

    /// Runs this shell script as the client from now on; say NAME=VALUE... in it reports.
    void runClient(const std::string& steps) {
        const std::string script = (directory.path() / "client6").string();
        // dhclient's arguments: -6 -d --no-pid -cf FILE -lf FILE -sf SCRIPT -e VARIABLE INTERFACE.
        writeFile(script,
                  "say() { env -i \"VARO_DHCP_EVENTS=9\" \"$@\" \"$SCRIPT\"; }\nSCRIPT=$9\n" +
                      steps + "while :; do sleep 1; done\n");
        startClient({"sh", script});
    }
};

TEST_F(Ipv6Lease, IsObtainedAndReachedByWayOfTheAdvertisedNetwork) {
    obtainLease();
    const varoLib_s_ipv6 record = read();
    EXPECT_STREQ(record.ipv6Addr, "2001:db8::100");
    EXPECT_EQ(record.prefixLen, 128U);
    EXPECT_THAT(record.ipv6AddrList, HasSubstr("2001:db8::100/128"));
    EXPECT_TRUE(eventually([] { return std::string(read().ipv6Gw).starts_with("fe80::"); }));
    EXPECT_EQ(resolver6(), learnt);
    EXPECT_EQ(storedIpv6(), "");
    EXPECT_THAT(clients(), SizeIs(1));
    EXPECT_EQ(lines.count("5 DHCPv6 lease: 2001:db8::100 for 600 s"), 1) << lines.all();
    EXPECT_TRUE(eventually([] { return isReached("2001:db8::100"); }));
}

TEST_F(Ipv6Lease, GoesWithItsResolverValuesWhenTheClientIsSwitchedOff) {
    obtainLease();
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    EXPECT_EQ(switchDhcp6(false), varo::success);
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_EQ(globalAddresses(), "2001:db8::7/64");
    EXPECT_EQ(resolver6(), nothingLearnt);
    EXPECT_STREQ(read().ipv6Addr, "2001:db8::7");
}

TEST_F(Ipv6Lease, StandsBesideTheAddressSetByHand) {
    ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
    startServer6();
    ASSERT_EQ(switchDhcp6(true), varo::success);
    EXPECT_TRUE(eventually([] {
        return std::string(read().ipv6AddrList).find("2001:db8::100/128") != std::string::npos;
    }));
    EXPECT_STREQ(read().ipv6Addr, "2001:db8::7");
    EXPECT_THAT(globalAddresses(), HasSubstr("2001:db8::7/64"));
    EXPECT_EQ(varoRemoveIpv6Addr(), varo::success);
    EXPECT_STREQ(read().ipv6Addr, "2001:db8::100");
}

TEST_F(Ipv6Lease, OfTheAddressSetByHandLeavesItAsItIs) {
    ASSERT_EQ(setAddress("2001:db8::100", 64), varo::success);
    startServer6();
    ASSERT_EQ(switchDhcp6(true), varo::success);
    EXPECT_TRUE(lines.await("DHCPv6 lease: 2001:db8::100"));
    EXPECT_TRUE(eventually([] { return resolver6() == learnt; }));
    EXPECT_EQ(globalAddresses(), "2001:db8::100/64");
    EXPECT_EQ(switchDhcp6(false), varo::success);
    EXPECT_EQ(globalAddresses(), "2001:db8::100/64");
}

TEST_F(Ipv6Lease, IsKeptByTheKernelAndTakenOverByTheNextProcess) {
    obtainLease();
    close();
    EXPECT_THAT(clients(), IsEmpty());
    EXPECT_EQ(globalAddresses(), lease);
    open();
    EXPECT_TRUE(eventually([&] { return lines.count("DHCPv6 lease: 2001:db8::100") == 2; }))
        << lines.all();
    EXPECT_EQ(globalAddresses(), lease);
}

TEST_F(Ipv6Lease, OfAFormerProcessIsNotThatOfAClientSwitchedOff) {
    obtainLease();
    close();
    open();
    EXPECT_EQ(switchDhcp6(false), varo::success);
    EXPECT_EQ(globalAddresses(), "");
}

TEST_F(Ipv6Lease, OutlivesAClientThatIsKilledAndStartedAgain) {
    obtainLease();
    const auto before = clients();
    ASSERT_THAT(before, SizeIs(1));
    kill(before[0], SIGKILL);
    EXPECT_TRUE(lines.await("4 the DHCPv6 client has ended with signal 9"));
    EXPECT_EQ(globalAddresses(), lease);
    EXPECT_TRUE(eventually([&] { return lines.count("DHCPv6 lease: 2001:db8::100") == 2; }))
        << lines.all();
    EXPECT_EQ(globalAddresses(), lease);
}

TEST_F(Ipv6Lease, IsObtainedAnewWhenTheInterfaceWasDown) {
    obtainLease();
    shell("ip link set mng0 down");
    EXPECT_TRUE(eventually([] { return clients().empty(); }));
    EXPECT_EQ(globalAddresses(), "");
    shell("ip link set mng0 up");
    EXPECT_TRUE(eventually([] { return globalAddresses() == lease; })) << lines.all();
}

TEST_F(Ipv6Lease, IsObtainedAnewAfterAShortInterruption) {
    obtainLease();
    shell("ip link set mng0 down; ip link set mng0 up");
    EXPECT_TRUE(eventually([] { return globalAddresses() == lease; })) << lines.all();
}

TEST_F(Ipv6Lease, ClientWaitsForTheCarrier) {
    shell("ip -n lan link set lan0 down");
    ASSERT_EQ(switchDhcp6(true), varo::success);
    EXPECT_TRUE(eventually([] { return clients().empty(); }));
    shell("ip -n lan link set lan0 up && ip -n lan address replace 2001:db8::1/64 dev lan0 nodad");
    startServer6();
    EXPECT_TRUE(eventually([] { return globalAddresses() == lease; })) << lines.all();
}

TEST_F(Ipv6Lease, ReportThatIsNotUsableChangesNothing) {
    runClient(
        "say reason=BOUND6 new_ip6_address=2001:db8::100 new_max_life=60 new_preferred_life=60 "
        "new_dhcp6_name_servers=x\n"
        "say reason=RENEW6 new_ip6_address=ff02::1 new_max_life=60 new_preferred_life=60\n"
        "say reason=RENEW6 new_ip6_address=2001:db8::101 new_max_life=soon\n"
        "say reason=NONSENSE\n"
        "say reason=EXPIRE6 old_ip6_address=2001:db8::99\n");
    EXPECT_TRUE(lines.await("4 the DHCPv6 lease of 2001:db8::99 has ended")) << lines.all();
    EXPECT_EQ(lines.count("3 a report of the DHCPv6 client is not usable: "), 3) << lines.all();
    EXPECT_EQ(lines.count("4 left out of the DHCPv6 lease: name server \"x\""), 1) << lines.all();
    EXPECT_EQ(globalAddresses(), lease);
}

TEST_F(Ipv6Lease, ThatEndsGoesWithItsResolverValues) {
    const std::string end = (directory.path() / "end").string();
    runClient(
        "say reason=BOUND6 new_ip6_address=2001:db8::100 new_max_life=60 new_preferred_life=60 "
        "new_dhcp6_name_servers=2001:db8::53\n"
        "while [ ! -e " +
        end + " ]; do sleep 0.05; done\nsay reason=EXPIRE6 old_ip6_address=2001:db8::100\n");
    ASSERT_TRUE(eventually([] { return globalAddresses() == lease; })) << lines.all();
    EXPECT_EQ(resolver6(), "1 2001:db8::53  ");
    writeFile(end, "");
    EXPECT_TRUE(eventually([] { return globalAddresses().empty(); }));
    EXPECT_TRUE(eventually([] { return resolver6() == nothingLearnt; }));
}

TEST_F(Ipv6Lease, ClientThatCannotBeRunIsNamed) {
    startClient({"no-such-client"});
    EXPECT_TRUE(
        lines.await("the DHCPv6 client has ended with status 127: cannot run no-such-client: No "
                    "such file or directory"));
}

}  // namespace
