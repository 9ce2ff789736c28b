#include "tests/board/varo/network/Ipv6Test.h"

#include <fmt/format.h>

#include <sstream>
#include <stdexcept>

namespace varotest {

namespace {

/// The words that follow `key` in each line of an output, joined by spaces.
std::string wordsAfter(const std::string& output, const std::string& key) {
    std::istringstream words(output);
    std::string result;
    for (std::string word; words >> word;) {
        if (word == key && words >> word) {
            result += (result.empty() ? "" : " ") + word;
        }
    }
    return result;
}

}  // namespace

Ipv6Test::Ipv6Test() {
    shell("ip -n lan address add 2001:db8::1/64 dev lan0 nodad");
    configuration.dhcp6Client = {"dhclient"};
    configure();
}

void Ipv6Test::SetUp() {
    open();
    ASSERT_EQ(switchDhcp(false), varo::success);
    ASSERT_EQ(switchDhcp6(false), varo::success);
}

void Ipv6Test::restart() {
    close();
    open();
}

int Ipv6Test::setAddress(const std::string& address, std::uint32_t prefixLength) {
    varoLib_s_ipv6 record{};
    setText(record.ipv6Addr, address);
    record.prefixLen = prefixLength;
    return varoSetIpv6Addr(&record);
}

int Ipv6Test::setGateway(const std::string& gateway) {
    varoLib_s_ipv6 record{};
    setText(record.ipv6Gw, gateway);
    return varoSetIpv6Gw(&record);
}

varoLib_s_ipv6 Ipv6Test::read() {
    varoLib_s_ipv6 record{};
    EXPECT_EQ(varoGetIpv6(&record), varo::success);
    return record;
}

int Ipv6Test::switchDhcp6(bool on) {
    varoLib_s_dhcp6 record{2, on ? 1U : 0U};
    return varoUpdateDhcp6(&record);
}

void Ipv6Test::startServer6(const std::string& leaseTime) {
    startDnsmasq({"--enable-ra", "--dhcp-range=2001:db8::100,2001:db8::100,64," + leaseTime,
                  "--dhcp-option=option6:dns-server,[2001:db8::53]",
                  "--dhcp-option=option6:domain-search,example.org"},
                 "router advertisement on 2001:db8::");
}

std::string Ipv6Test::globalAddresses() {
    std::istringstream output(shell("ip -o -6 address show dev mng0 scope global"));
    std::string result;
    for (std::string line; std::getline(output, line);) {
        result += (result.empty() ? "" : " ") + wordsAfter(line, "inet6");
        if (line.find(" dynamic ") != std::string::npos) {
            result += " dynamic";
        }
    }
    return result;
}

std::string Ipv6Test::listed() {
    return wordsAfter(shell("ip -o -6 address show dev mng0"), "inet6");
}

std::string Ipv6Test::ipv6Gateways() {
    return wordsAfter(shell("ip -6 route show default dev mng0"), "via");
}

bool Ipv6Test::isReached(const std::string& address) {
    try {
        shell("ip netns exec lan ping -c 1 -W 1 " + address);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

std::string Ipv6Test::storedIpv6() const {
    return sql(file, "SELECT address, prefix_length, gateway FROM ipv6");
}

std::string Ipv6Test::resolver6() {
    int source = 0;
    varoLib_s_dns6 dns{};
    EXPECT_EQ(varoGetDns6(&source, &dns), varo::success);
    return fmt::format("{} {} {} {}", source, dns.ipv6_pri, dns.ipv6_sec, dns.domain);
}

}  // namespace varotest
