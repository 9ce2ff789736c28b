#include "board/support/Descriptor.h"
#include "tests/board/varo/VaroTest.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <cstring>
#include <stdexcept>

namespace {

using namespace varotest;

/// Sets the address or the mask of an interface.
void set(unsigned long what, const char* name, const char* text) {
    const support::Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    inet_pton(AF_INET, text, &address.sin_addr);
    std::memcpy(&request.ifr_addr, &address, sizeof address);
    if (::ioctl(socket.get(), what, &request) != 0) {
        throw std::runtime_error("cannot set the address");
    }
}

std::string described(const varoLib_s_interface& record) {
    char address[INET_ADDRSTRLEN];
    char mask[INET_ADDRSTRLEN];
    return fmt::format("{}/{}", inet_ntop(AF_INET, &record.ipAddr, address, sizeof address),
                       inet_ntop(AF_INET, &record.netmask, mask, sizeof mask));
}

std::string read(const char* name) {
    varoLib_s_interface record{};
    setText(record.name, name);
    const int result = varoGetInterface(&record);
    return result == 0 ? described(record) : fmt::format("result {}", result);
}

class Interface : public VaroTest {};

TEST_F(Interface, ReadsAddressAndMaskInNetworkByteOrder) {
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNET,
                              [] {
                                  set(SIOCSIFADDR, "lo", "192.0.2.77");
                                  set(SIOCSIFNETMASK, "lo", "255.255.255.192");
                                  return read("lo");
                              }),
              "192.0.2.77/255.255.255.192");
}

TEST_F(Interface, WithoutAnAddressReadsAsZero) {
    // Loopback has none in a new namespace.
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNET, [] { return read("lo"); }), "0.0.0.0/0.0.0.0");
}

TEST_F(Interface, ClearsWhatTheRecordHeldWhenThereIsNoAddress) {
    EXPECT_EQ(inOwnNamespaces(CLONE_NEWNET,
                              [] {
                                  varoLib_s_interface record{};
                                  setText(record.name, "lo");
                                  record.ipAddr = record.netmask = 0xFFFFFFFF;
                                  varoGetInterface(&record);
                                  return described(record);
                              }),
              "0.0.0.0/0.0.0.0");
}

TEST_F(Interface, ThatDoesNotExistIsAnErrorAndLeavesTheRecord) {
    varoLib_s_interface record{};
    setText(record.name, "nosuch0");
    record.ipAddr = 1;
    record.netmask = 2;
    EXPECT_EQ(varoGetInterface(&record), varo::noSuchInterface);
    EXPECT_EQ(record.ipAddr, 1U);
    EXPECT_EQ(record.netmask, 2U);
    EXPECT_STREQ(record.name, "nosuch0");
}

TEST_F(Interface, ThatDoesNotExistIsLoggedAtTheDebugLevelOnly) {
    EXPECT_EQ(read("nosuch0"), fmt::format("result {:d}", int{varo::noSuchInterface}));
    EXPECT_THAT(log.take(), IsEmpty());
    varoLib_s_internalConfig config{.severity = 7};
    ASSERT_EQ(varoUpdateInternalConfig(&config, 7), varo::success);
    read("nosuch0");
    EXPECT_THAT(log.lines(), ElementsAre("7 varoGetInterface: there is no interface \"nosuch0\""));
}

TEST_F(Interface, WithoutANameDoesNotExist) {
    EXPECT_EQ(read(""), fmt::format("result {:d}", int{varo::noSuchInterface}));
}

TEST_F(Interface, RefusesANameThatIsNotTerminated) {
    varoLib_s_interface record{};
    std::memset(record.name, 'x', sizeof record.name);
    EXPECT_EQ(varoGetInterface(&record), varo::invalidValue);
    EXPECT_THAT(log.lines(), ElementsAre("3 varoGetInterface: the interface name is not terminated "
                                         "within its field"));
}

TEST_F(Interface, CannotBeReadWithoutDescriptors) {
    const std::string lines = inOwnNamespaces(0, [&] {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_NOFILE, &none);
        unsigned char mac[6];
        EXPECT_EQ(read("lo"), fmt::format("result {:d}", int{varo::systemFailed}));
        EXPECT_EQ(varoGetIfcMAC("lo", mac), varo::systemFailed);
        return fmt::format("{}", fmt::join(log.lines(), "\n"));
    });
    EXPECT_EQ(lines,
              "3 varoGetInterface: cannot open a socket: Too many open files\n"
              "3 varoGetIfcMAC: cannot talk to the kernel about interfaces: Unspecific failure");
}

}  // namespace
