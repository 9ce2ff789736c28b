#include "board/switchboard/Switch.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <limits>
#include <string_view>
#include <utility>

namespace switchboard {

namespace {

using nlohmann::json;
using support::numberIn;

constexpr std::uint64_t thisVersion = 1;

VlanId vlanOf(const json& object, const char* name) {
    return static_cast<VlanId>(numberIn(object, name, highestVlan));
}

int portOf(const json& object, const char* name) {
    return static_cast<int>(numberIn(object, name, std::numeric_limits<int>::max()));
}

const json& listOf(const json& object, const char* name) {
    const json& value = object.at(name);
    if (!value.is_array()) {
        throw std::runtime_error(fmt::format("{} is no list", name));
    }
    return value;
}

std::array<unsigned char, 6> addressOf(const json& list) {
    std::array<unsigned char, 6> address{};
    if (list.size() != address.size()) {
        throw std::runtime_error("an Ethernet address has 6 octets");
    }
    for (std::size_t i = 0; i < address.size(); ++i) {
        if (!list[i].is_number_unsigned() || list[i].get<std::uint64_t>() > 0xff) {
            throw std::runtime_error("an octet is no number up to 255");
        }
        address[i] = list[i].get<unsigned char>();
    }
    return address;
}

std::set<int> portsOf(const json& list) {
    std::set<int> ports;
    for (const json& port : list) {
        ports.insert(portOf(json{{"port", port}}, "port"));
    }
    return ports;
}

VlanState stateOf(const json& document) {
    VlanState state;
    for (const json& each : listOf(document, "vlans")) {
        const VlanId vlan = vlanOf(each, "id");
        if (!state.members.emplace(vlan, portsOf(listOf(each, "ports"))).second) {
            throw std::runtime_error(fmt::format("VLAN {} is listed twice", vlan));
        }
    }
    for (const json& each : listOf(document, "pvids")) {
        state.pvids[portOf(each, "port")] = vlanOf(each, "vlan");
    }
    const json& defaultVlan = document.at("defaultVlan");
    state.defaultVlan = vlanOf(defaultVlan, "id");
    state.defaultNative = defaultVlan.at("native").get<bool>();
    state.managementVlan = vlanOf(document, "managementVlan");
    if (const json& entry = document.at("managementEntry"); !entry.is_null()) {
        state.managementEntry = StaticEntry{portOf(entry, "port"), vlanOf(entry, "vlan"),
                                            addressOf(listOf(entry, "address"))};
    }
    return state;
}

std::string formatState(const VlanDatabase& database) {
    // In the order in which people read them.
    using Json = nlohmann::ordered_json;
    const VlanState& state = database.state();
    Json vlans = Json::array();
    for (const auto& [vlan, ports] : state.members) {
        vlans.push_back({{"id", vlan}, {"ports", ports}});
    }
    Json pvids = Json::array();
    for (const auto& [port, vlan] : state.pvids) {
        pvids.push_back({{"port", port}, {"vlan", vlan}});
    }
    Json entry;
    if (state.managementEntry) {
        entry = {{"port", state.managementEntry->port},
                 {"vlan", state.managementEntry->vlan},
                 {"address", state.managementEntry->address}};
    }
    const Json document{
        {"version", thisVersion},
        {"vlans", std::move(vlans)},
        {"pvids", std::move(pvids)},
        {"defaultVlan", {{"id", state.defaultVlan}, {"native", state.defaultNative}}},
        {"managementVlan", state.managementVlan},
        {"managementEntry", std::move(entry)},
    };
    return document.dump() + "\n";
}

VlanDatabase parseState(const std::string& text) {
    return VlanDatabase(stateOf(support::parseDocument(text, thisVersion)));
}

}  // namespace

const support::StateFormat<VlanDatabase> switchFormat{
    .fileName = "switch.json",
    .damageText = "{file} is damaged ({reason}): it is kept as {kept}, and factory values are used",
    .parse = parseState,
    .format = formatState,
};

}  // namespace switchboard
