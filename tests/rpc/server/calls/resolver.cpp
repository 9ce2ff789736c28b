// Calls of host name, domain and name servers.

#include "calls/ProcedureCall.h"

namespace {

constexpr std::uint32_t primary = 0xc0000201;    // 192.0.2.1, 3221225985
constexpr std::uint32_t secondary = 0xc6336402;  // 198.51.100.2, 3325256706

}  // namespace

std::vector<ProcedureCall> callsOfResolver() {
    return {
        statusCall(14, "set_domainname", Argument().text("example.org"),
                   R"(networkSetDomainname("example.org"))"),
        fillCall(15, "get_domainname", "networkGetDomainname()", filled<rpcStringResult>, {0}),
        statusCall(16, "set_hostname", Argument().text("shelf"), R"(networkSetHostname("shelf"))"),
        fillCall(17, "get_hostname", "networkGetHostname()", filled<rpcStringResult>, {0}),
        statusCall(28, "set_dns_servers", Argument().numbers(primary, secondary),
                   "networkSetDnsServers(3221225985, 3325256706)"),
        statusCall(29, "delete_dns_servers", Argument(), "networkDeleteDnsServers()"),
        fillCall(30, "get_dns_servers", "networkGetDnsServers()", filled<rpcNetworkDnsInfo>,
                 {0, 4}),
        fillCall(87, "get_dns_serversws", "networkGetDnsServersWS()", filled<rpcNetworkDnsInfoWS>,
                 {0, 4, 8}),
        fillCall(88, "get_domainnamews", "networkGetDomainnameWS()", filled<rpcNetworkDomainWS>,
                 {0, 4}),
        // The buffers for addresses hold one byte less than the fields.
        fillCall(90, "get_ipv6dns_serversws", "networkGetIPv6DnsServers()",
                 [](Result& result) -> Result& {
                     return result.numbers().characters(100, 99).characters(100, 99);
                 },
                 {0, 4, 104}),
        fillCall(91, "get_ipv6domainnamews", "networkGetIPv6Domainname()",
                 filled<rpcNetworkIPv6Domain>, {0, 4}),
        statusCall(93, "set_ipv6dns_servers", Argument().text("2001:db8::1").text("2001:db8::2"),
                   R"(networkSetIPv6DnsServers("2001:db8::1", "2001:db8::2"))"),
        statusCall(94, "delete_ipv6dns_servers", Argument(), "networkDeleteIPv6DnsServers()"),
        statusCall(95, "set_ipv6domainname", Argument().text("six.example.org"),
                   R"(networkSetIPv6Domainname("six.example.org"))"),
    };
}
