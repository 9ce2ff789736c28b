#include "mngctl/commands/changes.h"
#include "mngctl/commands/commands.h"
#include "mngctl/commands/managementInterface.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

namespace mngctl {

namespace {

rpcNetworkInfo read(Session& session) { return session.ask(rpc_network_get_ont_nmg_1); }

/// A board that cannot read the interface answers with zeros, as for one that is off.
std::string describe(const rpcNetworkInfo& info) {
    if (info.ipAddress == 0) {
        return "off, or it cannot be read";
    }
    return fmt::format("{} in VLAN {}", formatNetwork({info.ipAddress, info.netmask}),
                       info.mngVlanId);
}

void show(Session& session) {
    const rpcNetworkInfo info = read(session);
    Json json = describeInterface({info.ipAddress, info.netmask});
    json["vlan"] = info.ipAddress == 0 ? Json() : Json(info.mngVlanId);
    session.print(json, fmt::format("ONT management: {}\n", describe(info)));
}

/// The board refuses the VLAN of its own management port; anything else is the kernel's answer.
std::string explain(Session& session, const rpcNetworkInfo& wanted) {
    std::string cause;
    if (wanted.ipAddress != 0 && readNetworkInfo(session).mngVlanId == wanted.mngVlanId) {
        cause = fmt::format("VLAN {} is that of the management port; ", wanted.mngVlanId);
    }
    return fmt::format("{}ONT management is {}", cause, describe(read(session)));
}

void change(Session& session, const std::string& what, const rpcNetworkInfo& wanted) {
    carryOut({what, request(session, rpc_network_set_ont_nmg_1, wanted)},
             [&] { return explain(session, wanted); });
    readBack(session, show);
}

void set(Session& session, const std::string& address, const std::string& mask, unsigned vlan) {
    const Ipv4Network network = parseInterfaceAddress(address, mask);
    rpcNetworkInfo wanted{};
    wanted.ipAddress = network.address;
    wanted.netmask = network.mask;
    wanted.mngVlanId = vlan;
    change(session, fmt::format("set the ONT management address {}", formatNetwork(network)),
           wanted);
}

void addSet(Command& noun) {
    Command& command =
        noun.addCommand("set", "Give the ONT interface an address and a VLAN, switch it on",
                        {"ont set 198.51.100.1/24 20", "ont set 198.51.100.1 255.255.255.0 20"});
    const Argument& address =
        command.addArgument("ADDRESS", "IPv4 address, with /PREFIX or before MASK");
    const Argument& first =
        command.addArgument("MASK|VLAN", "Mask, if there is no /PREFIX; else the VLAN");
    const Argument& second =
        command.addOptionalArgument("VLAN", "VLAN id, 1 to 4094, other than the management port's");
    command.setAction([&](Session& session) {
        const std::string& last = second.one();
        const bool hasMask = !last.empty();
        const std::string& middle = first.one();
        set(session, address.one(), hasMask ? middle : "", parseVlanId(hasMask ? last : middle));
    });
}

}  // namespace

void addOnt(CommandTree& tree) {
    Command& noun = tree.addNoun("ont", "Management interface of the ONTs",
                                 {"ont show", "ont set 198.51.100.1/24 20", "ont off"});
    noun.addShow("show", "Show its address, mask and VLAN", show);
    addSet(noun);
    noun.addCommand(
        "off", "Take its address away and switch it off", {"ont off"},
        [](Session& session) { change(session, "switch ONT management off", rpcNetworkInfo{}); });
}

}  // namespace mngctl
