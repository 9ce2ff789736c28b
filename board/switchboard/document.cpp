#include "board/switchboard/document.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <limits>
#include <string_view>
#include <utility>

namespace switchboard {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint64_t documentVersion = 1;

std::uint64_t numberOf(const Json& object, const char* name, std::uint64_t highest) {
    const Json& value = object.at(name);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > highest) {
        throw std::runtime_error(fmt::format("{} is no number up to {}", name, highest));
    }
    return value.get<std::uint64_t>();
}

VlanId vlanOf(const Json& object, const char* name) {
    return static_cast<VlanId>(numberOf(object, name, highestVlan));
}

int portOf(const Json& object, const char* name) {
    return static_cast<int>(numberOf(object, name, std::numeric_limits<int>::max()));
}

const Json& listOf(const Json& object, const char* name) {
    const Json& value = object.at(name);
    if (!value.is_array()) {
        throw std::runtime_error(fmt::format("{} is no list", name));
    }
    return value;
}

std::array<unsigned char, 6> addressOf(const Json& list) {
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

std::set<int> portsOf(const Json& list) {
    std::set<int> ports;
    for (const Json& port : list) {
        ports.insert(portOf(Json{{"port", port}}, "port"));
    }
    return ports;
}

VlanState stateOf(const Json& document) {
    VlanState state;
    for (const Json& each : listOf(document, "vlans")) {
        const VlanId vlan = vlanOf(each, "id");
        if (!state.members.emplace(vlan, portsOf(listOf(each, "ports"))).second) {
            throw std::runtime_error(fmt::format("VLAN {} is listed twice", vlan));
        }
    }
    for (const Json& each : listOf(document, "pvids")) {
        state.pvids[portOf(each, "port")] = vlanOf(each, "vlan");
    }
    const Json& defaultVlan = document.at("defaultVlan");
    state.defaultVlan = vlanOf(defaultVlan, "id");
    state.defaultNative = defaultVlan.at("native").get<bool>();
    state.managementVlan = vlanOf(document, "managementVlan");
    if (const Json& entry = document.at("managementEntry"); !entry.is_null()) {
        state.managementEntry = StaticEntry{portOf(entry, "port"), vlanOf(entry, "vlan"),
                                            addressOf(listOf(entry, "address"))};
    }
    return state;
}

}  // namespace

std::string formatState(const VlanState& state) {
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
        {"version", documentVersion},
        {"vlans", std::move(vlans)},
        {"pvids", std::move(pvids)},
        {"defaultVlan", {{"id", state.defaultVlan}, {"native", state.defaultNative}}},
        {"managementVlan", state.managementVlan},
        {"managementEntry", std::move(entry)},
    };
    return document.dump() + "\n";
}

VlanDatabase parseState(const std::string& text) {
    const Json document = Json::parse(text);
    const auto version = numberOf(document, "version", std::numeric_limits<std::uint64_t>::max());
    if (version > documentVersion) {
        throw NewerDocument(fmt::format("it has version {}, this release knows version {}", version,
                                        documentVersion));
    }
    return VlanDatabase(stateOf(document));
}

}  // namespace switchboard
