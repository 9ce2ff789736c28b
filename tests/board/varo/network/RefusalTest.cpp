// What the kernel refuses to whoever may not change its addresses and routes.

#include "tests/board/varo/network/Ipv6Test.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

using namespace varotest;

/// Takes the right to change the network from this thread, and gives it back.
class WithoutRight {
public:
    WithoutRight() {
        call(SYS_capget, before);
        auto without = before;
        without[CAP_TO_INDEX(CAP_NET_ADMIN)].effective &= ~CAP_TO_MASK(CAP_NET_ADMIN);
        call(SYS_capset, without);
    }
    ~WithoutRight() { ::syscall(SYS_capset, &header, before.data()); }
    WithoutRight(const WithoutRight&) = delete;
    WithoutRight& operator=(const WithoutRight&) = delete;

private:
    using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    Sets before{};

    void call(long number, Sets& sets) {
        if (::syscall(number, &header, sets.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "capabilities");
        }
    }
};

class Refusal : public Ipv6Test {
protected:
    void SetUp() override {
        Ipv6Test::SetUp();
        ASSERT_EQ(attach("192.0.2.7", "255.255.255.0"), varo::success);
        ASSERT_EQ(addRoute("192.0.2.1"), varo::success);
        ASSERT_EQ(setAddress("2001:db8::7", 64), varo::success);
        ASSERT_EQ(setGateway("fe80::1"), varo::success);
    }

    void expectLine(const std::string& line) const {
        EXPECT_EQ(lines.count(line + ": Operation not permitted"), 1) << line;
    }
};

TEST_F(Refusal, OfTheKernelChangesNothingAndIsLogged) {
    {
        const WithoutRight without;
        EXPECT_EQ(attach("192.0.2.8", "255.255.255.0"), varo::systemFailed);
        EXPECT_EQ(detach("192.0.2.7", "255.255.255.0"), varo::systemFailed);
        EXPECT_EQ(deleteRoute("192.0.2.1"), varo::systemFailed);
        EXPECT_EQ(varoRemoveIpv6Addr(), varo::systemFailed);
        EXPECT_EQ(varoRemoveIpv6Gw(), varo::systemFailed);
    }
    expectLine("3 varoAttachIpToIntf: cannot add the address 192.0.2.8/24 to mng0");
    expectLine("3 varoDettachIpFromIntf: cannot remove the address 192.0.2.7/24 from mng0");
    expectLine("3 varoDeleteRoute: cannot remove the default route via 192.0.2.1");
    expectLine("3 varoRemoveIpv6Addr: cannot remove the address 2001:db8::7/64 from mng0");
    expectLine("3 varoRemoveIpv6Gw: cannot remove the default route via fe80::1 by mng0");
    EXPECT_EQ(stored(), "192.0.2.7|255.255.255.0|192.0.2.1");
    EXPECT_EQ(storedIpv6(), "2001:db8::7|64|fe80::1");
    EXPECT_EQ(addresses(), "192.0.2.7/24");
}

TEST_F(Refusal, ToTakeTheInterfaceUpIsLoggedBesideWhatFailsWithIt) {
    close();
    shell("ip link set mng0 down");
    {
        const WithoutRight without;
        EXPECT_EQ(varoLibInit(), varo::applyFailed);
    }
    expectLine("3 cannot take the interface mng0 up");
}

}  // namespace
