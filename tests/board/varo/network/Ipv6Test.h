#pragma once

#include "tests/board/varo/network/DhcpTest.h"

#include <string>

namespace varotest {

/// The same network with IPv6: the far end is 2001:db8::1/64. The library is open, with both DHCP
/// clients switched off.
class Ipv6Test : public DhcpTest {
protected:
    Ipv6Test();
    void SetUp() override;
    void restart();

    static int setAddress(const std::string& address, std::uint32_t prefixLength);
    static int setGateway(const std::string& gateway);
    static varoLib_s_ipv6 read();
    static int switchDhcp6(bool on);

    /// A DHCPv6 server and router on the far end: leases of 2001:db8::100, name server and domain.
    void startServer6(const std::string& leaseTime = "10m");

    /// "2001:db8::7/64 2001:db8::100/128 dynamic", as the kernel orders them; empty for none.
    static std::string globalAddresses();
    /// All of mng0's addresses as the library is to list them.
    static std::string listed();
    /// Gateways of the default routes by way of mng0, joined by spaces, the preferred one first.
    static std::string ipv6Gateways();
    /// Whether the far end gets an answer.
    static bool isReached(const std::string& address);
    /// What is stored, "address|length|gateway".
    std::string storedIpv6() const;
    /// The resolver values in force: "SOURCE PRIMARY SECONDARY DOMAIN".
    static std::string resolver6();
};

}  // namespace varotest
