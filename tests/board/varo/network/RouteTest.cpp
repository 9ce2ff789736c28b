#include "tests/board/varo/network/NetworkTest.h"

#include <fmt/format.h>

namespace {

using namespace varotest;

class Route : public NetworkTest {
protected:
    void SetUp() override {
        NetworkTest::SetUp();
        ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
    }

    const std::string notThere = fmt::format("result {:d}", int{varo::notThere});
};

TEST_F(Route, IsAddedReadStoredAndDeleted) {
    EXPECT_EQ(route(), notThere);
    EXPECT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(gateways(), "192.0.2.1");
    EXPECT_EQ(route(), "192.0.2.1");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|192.0.2.1");
    EXPECT_EQ(deleteRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(gateways(), "");
    EXPECT_EQ(route(), notThere);
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|");
}

TEST_F(Route, OutsideTheNetworkIsRefusedByTheKernel) {
    EXPECT_EQ(addRoute("198.51.100.1"), varo::systemFailed);
    EXPECT_EQ(lines.count("3 varoAddRoute: cannot add the default route via 198.51.100.1: Network "
                          "is unreachable"),
              1);
    EXPECT_EQ(gateways(), "");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|");
}

TEST_F(Route, ThatIsThereAlreadyIsAddedOnceMore) {
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(gateways(), "192.0.2.1");
}

TEST_F(Route, SecondOneIsRefused) {
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(addRoute("192.0.2.2"), varo::systemFailed);
    EXPECT_EQ(lines.count("cannot add the default route via 192.0.2.2: File exists"), 1);
    EXPECT_EQ(gateways(), "192.0.2.1");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|192.0.2.1");
}

TEST_F(Route, ThatIsNotThereCannotBeDeleted) {
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(deleteRoute("192.0.2.2"), varo::notThere);
    EXPECT_EQ(lines.count("3 varoDeleteRoute: there is no default route via 192.0.2.2"), 1);
    EXPECT_EQ(gateways(), "192.0.2.1");
}

TEST_F(Route, ByAnotherInterfaceIsNotTheBoards) {
    shell(
        "ip link add other0 type veth peer name other1 && ip address add 203.0.113.2/24 dev "
        "other0 && ip link set other0 up && ip link set other1 up && "
        "ip route add default via 203.0.113.1 metric 5");
    EXPECT_EQ(route(), notThere);
    EXPECT_EQ(deleteRoute("203.0.113.1"), varo::notThere);
    EXPECT_EQ(addRoute("192.0.2.1"), varo::success);
    EXPECT_EQ(route(), "192.0.2.1");
    shell("ip link delete other0");
}

TEST_F(Route, AddedBySomebodyElseIsReadAndDeleted) {
    shell("ip route add default via 192.0.2.3 metric 7 proto boot");
    EXPECT_EQ(route(), "192.0.2.3");
    EXPECT_EQ(deleteRoute("192.0.2.3"), varo::success);
    EXPECT_EQ(gateways(), "");
}

TEST_F(Route, ReadsTheOneThatTheKernelPrefers) {
    shell(
        "ip route add default via 192.0.2.3 metric 7 && ip route add default via 192.0.2.4 "
        "metric 3");
    EXPECT_EQ(route(), "192.0.2.4");
}

TEST_F(Route, RecordIsChecked) {
    EXPECT_EQ(varoAddRoute(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoDeleteRoute(nullptr), varo::invalidArgument);
    EXPECT_EQ(varoGetRouteByDst(nullptr), varo::invalidArgument);
    for (const char* gateway : {"0.0.0.0", "127.0.0.1", "224.0.0.5", "255.255.255.255"}) {
        EXPECT_EQ(addRoute(gateway), varo::invalidValue) << gateway;
    }
    varoLib_s_route record{};
    record.destination = ipv4("198.51.100.0");
    record.gateway = ipv4("192.0.2.1");
    EXPECT_EQ(varoAddRoute(&record), varo::invalidValue);
    EXPECT_EQ(varoDeleteRoute(&record), varo::invalidValue);
    EXPECT_EQ(varoGetRouteByDst(&record), varo::notThere);
    EXPECT_EQ(record.gateway, ipv4("192.0.2.1"));
    EXPECT_EQ(lines.count("3 varoAddRoute: only the default route is kept, none to 198.51.100.0"),
              1);
    EXPECT_EQ(lines.count("7 varoGetRouteByDst: there is no route to 198.51.100.0"), 1);
    EXPECT_EQ(route(), notThere);
    EXPECT_EQ(lines.count("7 varoGetRouteByDst: there is no route to everywhere"), 1);
}

TEST_F(Route, DeletedStaysSoAfterARestart) {
    ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
    ASSERT_EQ(deleteRoute("192.0.2.1"), varo::success);
    restart();
    EXPECT_EQ(addresses(), "192.0.2.7/24");
    EXPECT_EQ(gateways(), "");
}

}  // namespace
