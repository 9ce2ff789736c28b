#include "board/varo/link/dhcpEvent.h"
#include "board/varo/link/linkLocalAddress.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <chrono>
#include <cstdlib>

namespace {

using varo::awaitLinkLocalAddress;

class LinkLocalAddress : public testing::Test {
protected:
    LinkLocalAddress() {
        shell("ip link add mng0 type veth peer name lan0 netns lan && ip -n lan link set lan0 up");
    }
    ~LinkLocalAddress() override { shell("ip link delete mng0"); }

    static std::string tentative() { return shell("ip -6 -o address show dev mng0 tentative"); }
};

TEST_F(LinkLocalAddress, IsAwaitedUntilItIsNoLongerTentative) {
    shell("ip link set mng0 up");
    ASSERT_NE(tentative(), "");
    EXPECT_TRUE(awaitLinkLocalAddress("mng0"));
    EXPECT_EQ(tentative(), "");
    EXPECT_TRUE(awaitLinkLocalAddress("mng0"));
}

TEST_F(LinkLocalAddress, IsNeitherAnotherAddressNorThatOfAnotherInterface) {
    // The other end has one.
    shell(
        "ip link set mng0 addrgenmode none && ip link set mng0 up && "
        "ip address add 2001:db8::7/64 dev mng0 nodad && "
        "ip link add other0 type veth peer name other1 && ip link set other0 up && "
        "ip link set other1 up");
    ASSERT_TRUE(awaitLinkLocalAddress("other0"));
    const auto begin = std::chrono::steady_clock::now();
    ::setenv("reason", "PREINIT6", 1);
    ::setenv("interface", "mng0", 1);
    testing::internal::CaptureStderr();
    const char* const arguments[] = {"dhclient-script", nullptr};
    // Its client goes on without.
    EXPECT_EQ(varo::passDhcpEvent(arguments), EXIT_SUCCESS);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "mng0 has no link-local address yet\n");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    ::unsetenv("reason");
    ::unsetenv("interface");
    shell("ip link delete other0");
}

}  // namespace
