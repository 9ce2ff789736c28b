// Calls of addressing: IPv4, DHCP, gateway, VLAN, IPv6, ARP and the ONT's interface.

#include "calls/ProcedureCall.h"

#include <fmt/core.h>

#include <string>

namespace {

constexpr std::uint32_t address = 0xc0000201;  // 192.0.2.1, 3221225985
constexpr std::uint32_t mask = 0xffffff00;     // 4294967040

/// The ONT's interface travels in the record of the whole network.
const Argument ontArgument = Argument()
                                 .numbers(address, mask)
                                 .characters("\1\2\3\4\5\6", 6)
                                 .characters("\7\10\11\12\13\14", 6)
                                 .numbers(1, 1, 77, 1, 1, 1, 2, 88, 1);

Units ontResult(const Circumstances& found) {
    Result result(found.telling);
    if (found.status != 0 || !found.fills) {
        return result.zeros(23).units();
    }
    return result.numbers(2).zeros(14).numbers().zeros(6).units();
}

ProcedureCall setGateway(std::uint32_t gateway) {
    return statusCall(7, "set_gateway", Argument().number(gateway),
                      fmt::format("networkSetGateway({})", gateway));
}

ProcedureCall setFlags(unsigned int number, const char* procedure, const char* function, int first,
                       int second) {
    return statusCall(number, procedure, Argument().numbers(first, second),
                      fmt::format("{}({}, {})", function, first, second));
}

ProcedureCall setMode(int mode) {
    return statusCall(75, "set_def_vlan_mode", Argument().numbers(200, mode),
                      fmt::format("networkSetDefVlanMode(200, {})", mode));
}

ProcedureCall nextArp(int index) {
    return {3,
            "get_next_arp",
            Argument().number(index),
            Filling::combined,
            fmt::format("networkGetNextArp({})", index),
            [](const Circumstances& found) {
                return Result(found.telling)
                    .numbers()
                    .octets(6)
                    .numbers(4)
                    .value(static_cast<std::uint32_t>(found.status))
                    .units();
            },
            {ProcedureCall::elsewhere}};
}

}  // namespace

std::vector<ProcedureCall> callsOfAddressing() {
    const auto zero = [](const Circumstances&) { return Units{0}; };
    return {
        nextArp(5),
        nextArp(-1),
        statusCall(4, "set_ip", Argument().numbers(address, mask),
                   "networkSetIp(3221225985, 4294967040)"),
        statusCall(5, "set_vlan", Argument().number(4000000000U), "networkSetVlan(4000000000)"),
        fillCall(6, "get_network_info", "networkGetNetworkInfo()", filled<rpcNetworkInfo>, {0}),
        setGateway(address),
        setGateway(0),
        fillCall(8, "get_gateway", "networkGetGateway()",
                 [](Result& result) -> Result& { return result.numbers().zeros(1); }, {0}),
        statusCall(31, "set_protocol", Argument().number(1), "networkSetProtocol(1)"),
        statusCall(31, "set_protocol", Argument().number(0), "networkSetProtocol(0)"),
        setFlags(67, "set_vendor", "networkSetVendor", 1, 0),
        setFlags(67, "set_vendor", "networkSetVendor", 0, 1),
        setFlags(68, "set_option82", "networkSetOption82", 1, 0),
        setFlags(68, "set_option82", "networkSetOption82", 0, 1),
        fillCall(69, "get_ipv6addr", "networkGetIpv6Addr()", filled<rpcNetworkIpv6Data>, {0, 2000}),
        statusCall(70, "set_ipv6addr", Argument().text("2001:db8::1").number(64),
                   R"(networkSetIpv6Addr("2001:db8::1", 64))"),
        statusCall(71, "set_ipv6gw", Argument().text("2001:db8::fffe"),
                   R"(networkSetIpv6Gw("2001:db8::fffe"))"),
        statusCall(72, "remove_ipv6addr", Argument(), "networkRemoveIpv6Addr()"),
        statusCall(73, "remove_ipv6gw", Argument(), "networkRemoveIpv6Gw()"),
        {74, "set_mgmt_vlan_mode", Argument().numbers(100, 2), Filling::none, "", zero},
        {74, "set_mgmt_vlan_mode", Argument().numbers(~0U, -1), Filling::none, "", zero},
        setMode(1),
        setMode(2),
        statusCall(80, "set_ont_nmg", ontArgument, "networkSetOntMng(3221225985, 4294967040, 77)"),
        {81, "get_ont_nmg", Argument(), Filling::fill, "networkGetOntMng()", ontResult, {0, 4, 28}},
        fillCall(92, "get_ipv6proto", "networkGetIPv6Proto()",
                 [](Result& result) -> Result& { return result.flags(); },
                 {ProcedureCall::elsewhere}),
        {96, "set_ipv6proto", Argument().number(1), Filling::discarded, "networkSetIPv6Proto(1)",
         zero},
        {96, "set_ipv6proto", Argument().number(0), Filling::discarded, "networkSetIPv6Proto(0)",
         zero},
    };
}
