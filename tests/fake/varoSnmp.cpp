// The configuration library's calls for the SNMP agent, as far as the product imports them.

#include "fake/wholeRecord.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <iterator>

using fake::dotted;
using fake::Platform;
using fake::quoted;
using fake::refuse;

namespace {

constexpr int readOnly = 1;
constexpr int readWrite = 2;

fake::SnmpAgent& agent() { return Platform::current().snmp; }
const fake::FactorySettings& factory() { return Platform::current().factory; }

std::string shown(const char* text) { return text == nullptr ? "null" : quoted(text); }

template <std::size_t size>
bool fits(const char* text, const char (&)[size]) {
    return text != nullptr && text[0] != '\0' && std::strlen(text) < size;
}

template <std::size_t size>
void put(char (&field)[size], const char* text) {
    std::memset(field, 0, size);
    std::memcpy(field, text, strnlen(text, size - 1));
}

auto* managerOf(const char* community, unsigned int ipAddress) {
    auto& managers = agent().managers.managers;
    const auto found = std::ranges::find_if(managers, [&](const auto& manager) {
        return ipAddress != 0 && community != nullptr && manager.ipAddress == ipAddress &&
               std::strcmp(manager.community, community) == 0;
    });
    return found == std::end(managers) ? nullptr : &*found;
}

auto* freeManager() {
    auto& managers = agent().managers.managers;
    const auto found =
        std::ranges::find(managers, 0U, [](const auto& manager) { return manager.ipAddress; });
    return found == std::end(managers) ? nullptr : &*found;
}

/// The entry of that name; an empty name finds a free one.
auto* communityOf(const char* name) {
    auto& communities = agent().communities.communities;
    const auto found = std::ranges::find_if(communities, [&](const auto& community) {
        return name != nullptr && std::strcmp(community.name, name) == 0;
    });
    return found == std::end(communities) ? nullptr : &*found;
}

/// A call whose arguments are good or not.
template <class Work>
int perform(const char* function, const std::string& arguments, bool isGood, Work work) {
    if (!isGood) {
        return refuse(function, arguments);
    }
    return Platform::current().call(function, arguments, [&] { work(); });
}

}  // namespace

WHOLE_RECORD(Subag, varoLib_s_subag, agent().managers, factory().managers)

int varoAddSubag(const char* community, unsigned int ipAddress) {
    auto* const place = freeManager();
    return perform("varoAddSubag", fmt::format("{}, {}", shown(community), dotted(ipAddress)),
                   place != nullptr && ipAddress != 0 &&
                       fits(community, agent().managers.managers[0].community) &&
                       managerOf(community, ipAddress) == nullptr,
                   [&] {
                       place->ipAddress = ipAddress;
                       put(place->community, community);
                   });
}

int varoDeleteSubag(const char* community, unsigned int ipAddress) {
    auto* const manager = managerOf(community, ipAddress);
    return perform("varoDeleteSubag", fmt::format("{}, {}", shown(community), dotted(ipAddress)),
                   manager != nullptr, [&] { *manager = {}; });
}

int varoChangeSubag(const char* oldCommunity, unsigned int oldAddress, const char* newCommunity,
                    unsigned int newAddress) {
    auto* const manager = managerOf(oldCommunity, oldAddress);
    return perform("varoChangeSubag",
                   fmt::format("{}, {}, {}, {}", shown(oldCommunity), dotted(oldAddress),
                               shown(newCommunity), dotted(newAddress)),
                   manager != nullptr && newAddress != 0, [&] {
                       manager->ipAddress = newAddress;
                       put(manager->community, newCommunity);
                   });
}

int varoChangePortSubag(unsigned int port) {
    return perform("varoChangePortSubag", std::to_string(port), port >= 1 && port <= 65535,
                   [&] { agent().managers.port = static_cast<std::int32_t>(port); });
}

WHOLE_RECORD(SnmpCommunity, varoLib_s_snmpCommunity, agent().communities, factory().communities)

int varoAddSnmpCommunity(const char* name, int access) {
    auto* const place = communityOf("");
    return perform("varoAddSnmpCommunity", fmt::format("{}, {}", shown(name), access),
                   place != nullptr && (access == readOnly || access == readWrite) &&
                       fits(name, agent().communities.communities[0].name) &&
                       communityOf(name) == nullptr,
                   [&] {
                       put(place->name, name);
                       put(place->access, access == readOnly ? "ro" : "rw");
                   });
}

int varoDeleteSnmpCommunity(const char* name, int access) {
    auto* const community = communityOf(name);
    return perform("varoDeleteSnmpCommunity", fmt::format("{}, {}", shown(name), access),
                   community != nullptr && community->name[0] != '\0', [&] { *community = {}; });
}

int varoChangeSnmpCommunity(const char* name, int access) {
    auto* const community = communityOf(name);
    return perform("varoChangeSnmpCommunity", fmt::format("{}, {}", shown(name), access),
                   community != nullptr && community->name[0] != '\0' &&
                       (access == readOnly || access == readWrite),
                   [&] { put(community->access, access == readOnly ? "ro" : "rw"); });
}

WHOLE_RECORD(SnmpSystem, varoLib_s_snmpSystem, agent().system, factory().system)

int varoChangeSnmpSystem(const char* text, int selector) {
    varoLib_s_snmpSystem& system = agent().system;
    char(*const fields[])[32] = {nullptr, &system.contact, &system.location, &system.name};
    const bool isKnown = selector >= 1 && selector < static_cast<int>(std::size(fields));
    return perform("varoChangeSnmpSystem", fmt::format("{}, {}", shown(text), selector),
                   text != nullptr && std::strlen(text) < sizeof system.contact &&
                       (isKnown || agent().takesUnknownSelectors),
                   [&] {
                       if (isKnown) {
                           put(*fields[selector], text);
                       }
                   });
}
