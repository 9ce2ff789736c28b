// Settings of the SNMP agent: trap managers, communities, system texts. Changes, too, take the
// shared lock: to serialise them is varoLib's business. Nothing is logged here.

#include "framework/relayAgents.h"
#include "network/Network.h"
#include "network/boundedCopy.h"
#include "varo/varoLib.h"

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

namespace {

/// Copies a text into a field that is cleared; what does not fit the smaller of the two is cut.
template <std::size_t fieldSize, std::size_t textSize>
void copyText(char (&field)[fieldSize], const char (&text)[textSize]) {
    copyBounded(field, text, (fieldSize < textSize ? fieldSize : textSize) - 1);
}

template <std::size_t size>
rpcSnmpCommunityAccess accessOf(const char (&text)[size]) {
    if (text[0] == '\0') {
        return rpcSnmpCommunityNone;
    }
    return std::string_view(text, strnlen(text, size)) == "ro" ? rpcSnmpCommunityReadOnly
                                                               : rpcSnmpCommunityReadWrite;
}

/// The relay agents identify the node by the same texts; the DHCP relay agent is told first.
template <class Agent>
void tell(const std::string& text, rpcSnmpSystemSelector selector) {
    switch (selector) {
        case rpcSnmpSystemContact:
            return singleton<Agent>::instance().setSystemContact(text);
        case rpcSnmpSystemLocation:
            return singleton<Agent>::instance().setSystemLocation(text);
        case rpcSnmpSystemName:
            return singleton<Agent>::instance().setSystemName(text);
    }
}

}  // namespace

int Network::snmptrapAdd(const char* community, unsigned int ipAddress, bool add) {
    return withSharedLock([&] {
        return resultOf(add ? varoAddSubag(community, ipAddress)
                            : varoDeleteSubag(community, ipAddress));
    });
}

int Network::snmptrapChange(const char* community, unsigned int oldAddress,
                            unsigned int newAddress) {
    return withSharedLock(
        [&] { return resultOf(varoChangeSubag(community, oldAddress, community, newAddress)); });
}

int Network::snmptrapPort(unsigned int port) {
    return withSharedLock([&] { return resultOf(varoChangePortSubag(port)); });
}

int Network::getSnmptrapConfig(rpcSnmpTrapConfig* config) {
    return withSharedLock([&] {
        varoLib_s_subag agent{};
        if (varoGetSubag(&agent) != 0) {
            return -1;
        }
        *config = {};
        for (std::size_t index = 0; index < std::size(config->managers); ++index) {
            config->managers[index].ipAddress = agent.managers[index].ipAddress;
            copyText(config->managers[index].community, agent.managers[index].community);
        }
        config->port = agent.port;
        return 0;
    });
}

int Network::snmpCommunityAdd(const char* name, rpcSnmpCommunityAccess access, bool add) {
    return withSharedLock([&] {
        return resultOf(add ? varoAddSnmpCommunity(name, access)
                            : varoDeleteSnmpCommunity(name, access));
    });
}

int Network::snmpCommunityChange(const char* name, rpcSnmpCommunityAccess access) {
    return withSharedLock([&] { return resultOf(varoChangeSnmpCommunity(name, access)); });
}

int Network::snmpCommunityGet(rpcSnmpCommunityConfig* config) {
    return withSharedLock([&] {
        varoLib_s_snmpCommunity read{};
        if (varoGetSnmpCommunity(&read) != 0) {
            return -1;
        }
        *config = {};
        for (std::size_t index = 0; index < std::size(config->communities); ++index) {
            copyText(config->communities[index].name, read.communities[index].name);
            config->communities[index].access = accessOf(read.communities[index].access);
        }
        return 0;
    });
}

int Network::snmpSystemChange(const char* text, rpcSnmpSystemSelector selector) {
    return withSharedLock([&] {
        if (varoChangeSnmpSystem(text, selector) != 0) {
            return -1;
        }
        if (text != nullptr) {
            tell<dhcpra>(text, selector);
            tell<pppoeia>(text, selector);
        }
        return 0;
    });
}

int Network::snmpSystemGet(rpcSnmpSystemConfig* config) {
    return withSharedLock([&] {
        varoLib_s_snmpSystem system{};
        if (varoGetSnmpSystem(&system) != 0) {
            return -1;
        }
        *config = {};
        copyText(config->contact, system.contact);
        copyText(config->location, system.location);
        copyText(config->name, system.name);
        return 0;
    });
}
