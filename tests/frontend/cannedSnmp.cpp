#include "cannedBoard.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace canned {

namespace {

constexpr unsigned cliSource = 2;

bool settle(void* result, bool isDone) {
    if (!isDone) {
        refuse(result);
    }
    return true;
}

bool changeSystem(rpcSnmpSystemConfig& system,
                  const rpc_network_snmpsystem_change_1_argument& given) {
    switch (given.selector) {
        case rpcSnmpSystemContact:
            copy(system.contact, given.text);
            return true;
        case rpcSnmpSystemLocation:
            copy(system.location, given.text);
            return true;
        case rpcSnmpSystemName:
            copy(system.name, given.text);
            return true;
    }
    return false;
}

rpcSnmpCommunity* findCommunity(rpcSnmpCommunityConfig& config, const char* name) {
    const auto found = std::find_if(
        std::begin(config.communities), std::end(config.communities),
        [&](const rpcSnmpCommunity& each) { return std::strcmp(each.name, name) == 0; });
    return found == std::end(config.communities) ? nullptr : found;
}

bool changeCommunity(rpcSnmpCommunityConfig& config,
                     const rpc_network_snmpcommunity_add_1_argument& given) {
    rpcSnmpCommunity* const known = findCommunity(config, given.name);
    if (!given.flag) {
        if (known != nullptr) {
            *known = {{}, rpcSnmpCommunityNone};
        }
        return known != nullptr;
    }
    rpcSnmpCommunity* const place = findCommunity(config, "");
    if (known != nullptr || place == nullptr) {
        return false;
    }
    copy(place->name, given.name);
    place->access = given.access;
    return true;
}

rpcSnmpManager* findManager(rpcSnmpTrapConfig& config, unsigned address, const char* community) {
    const auto found = std::find_if(
        std::begin(config.managers), std::end(config.managers), [&](const rpcSnmpManager& each) {
            return each.ipAddress == address && std::strcmp(each.community, community) == 0;
        });
    return found == std::end(config.managers) ? nullptr : found;
}

bool changeManager(rpcSnmpTrapConfig& config, const rpc_network_snmptrap_add_1_argument& given) {
    rpcSnmpManager* const known = findManager(config, given.ipAddress, given.community);
    if (!given.flag) {
        if (known != nullptr) {
            *known = {};
        }
        return known != nullptr;
    }
    rpcSnmpManager* const place = findManager(config, 0, "");
    if (known != nullptr || place == nullptr) {
        return false;
    }
    place->ipAddress = given.ipAddress;
    copy(place->community, given.community);
    return true;
}

bool moveManager(rpcSnmpTrapConfig& config, const rpc_network_snmptrap_change_1_argument& given) {
    rpcSnmpManager* const known = findManager(config, given.oldAddress, given.community);
    if (known != nullptr) {
        known->ipAddress = given.newAddress;
    }
    return known != nullptr;
}

/// Synchronised to the first server; the others do not answer.
rpcSntpInfoHost infoOf(const rpcSntpConfigHost& config) {
    rpcSntpInfoHost info{};
    info.client.mode = config.mode;
    info.client.leapIndicator = 3;
    for (std::size_t i = 0; i < std::size(config.servers); ++i) {
        copy(info.servers[i].host, config.servers[i].host);
    }
    if (config.mode == 0 || config.servers[0].host[0] == '\0') {
        return info;
    }
    for (rpcSntpSrvInfoHost& server : info.servers) {
        server.state = server.host[0] == '\0' ? 0 : 1;
    }
    copy(info.servers[0].host, config.servers[0].host);
    info.servers[0].state = 3;
    info.servers[0].stratum = 10;
    info.servers[0].reachability = 0x1F;
    info.servers[0].offset = -6;
    info.servers[0].delay = 12;
    info.client.state = 2;
    info.client.leapIndicator = 0;
    info.client.stratum = 11;
    info.client.pollInterval = 64;
    info.client.offset = 5;
    info.client.delay = 13;
    info.client.dispersion = 102;
    copy(info.client.referenceHost, config.servers[0].host);
    copy(info.client.lastUpdate, "2031-02-03 04:05:06");
    return info;
}

}  // namespace

bool answerSnmp(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_snmpsystem_get:
            return give<rpcSnmpSystemConfig>(result, state.snmpSystem);
        case rpc_network_snmpsystem_change:
            return settle(result,
                          changeSystem(state.snmpSystem,
                                       as<rpc_network_snmpsystem_change_1_argument>(argument)));
        case rpc_network_snmpcommunity_get:
            return give<rpcSnmpCommunityConfig>(result, state.snmpCommunities);
        case rpc_network_snmpcommunity_add:
            return settle(result,
                          changeCommunity(state.snmpCommunities,
                                          as<rpc_network_snmpcommunity_add_1_argument>(argument)));
        case rpc_network_snmpcommunity_change: {
            const auto& given = as<rpc_network_snmpcommunity_change_1_argument>(argument);
            rpcSnmpCommunity* const known = findCommunity(state.snmpCommunities, given.name);
            if (known != nullptr) {
                known->access = given.access;
            }
            return settle(result, known != nullptr);
        }
        case rpc_network_get_snmptrap:
            return give<rpcSnmpTrapConfig>(result, state.snmpTraps);
        case rpc_network_snmptrap_add:
            return settle(result, changeManager(state.snmpTraps,
                                                as<rpc_network_snmptrap_add_1_argument>(argument)));
        case rpc_network_snmptrap_change:
            return settle(
                result,
                moveManager(state.snmpTraps, as<rpc_network_snmptrap_change_1_argument>(argument)));
        case rpc_network_snmptrap_port:
            return take<int>(state.snmpTraps.port, argument);
        case rpc_network_sntp_getws_host:
            as<rpcSntpConfigWSHost>(result) = {cliSource, state.ntp};
            return true;
        case rpc_network_sntp_update_host:
            return take<rpcSntpConfigHost>(state.ntp, argument);
        case rpc_network_sntp_infowshost:
            if (board().behaviour.ntp != "unknown") {
                as<rpcSntpInfoWSHost>(result) = {cliSource, infoOf(state.ntp)};
            }
            return true;
        default:
            return false;
    }
}

}  // namespace canned
