#include "cannedBoard.h"

#include <cstring>

namespace canned {

namespace {

template <class T>
T& as(void* data) {
    return *static_cast<T*>(data);
}

template <std::size_t Size>
void copy(char (&to)[Size], const char* from) {
    std::strncpy(to, from, Size - 1);
}

void refuse(void* result) {
    const int failed = -1;
    std::memcpy(result, &failed, sizeof failed);
}

bool changesSomething(rpcproc_t procedure) {
    switch (procedure) {
        case rpc_network_set_ip:
        case rpc_network_set_gateway:
        case rpc_network_set_protocol:
        case rpc_network_set_vendor:
        case rpc_network_set_option82:
        case rpc_network_add_ra_rule:
        case rpc_network_remove_ra_rule:
        case rpc_network_set_vlan:
        case rpc_network_set_def_vlan_mode:
        case rpc_network_set_ont_nmg:
        case rpc_network_set_domainname:
        case rpc_network_set_hostname:
        case rpc_network_set_dns_servers:
        case rpc_network_delete_dns_servers:
        case rpc_network_set_ipv6dns_servers:
        case rpc_network_delete_ipv6dns_servers:
        case rpc_network_set_ipv6domainname:
        case rpc_network_http_server_set:
        case rpc_network_telnet_enable:
        case rpc_network_ssh_enable:
        case rpc_network_ftp_enable:
        case rpc_network_pty_set_max_sess:
        case rpc_network_set_time_info:
        case rpc_network_set_sntp_timezone:
        case rpc_network_set_sntp_timezone_dst_start:
        case rpc_network_set_sntp_timezone_dst_end:
        case rpc_network_set_sntp_timezone_dst_offset:
        case rpc_network_snmptrap_add:
        case rpc_network_snmptrap_change:
        case rpc_network_snmptrap_port:
        case rpc_network_snmpcommunity_add:
        case rpc_network_snmpcommunity_change:
        case rpc_network_snmpsystem_change:
        case rpc_network_sntp_update_host:
        case rpc_network_set_ipv6addr:
        case rpc_network_set_ipv6gw:
        case rpc_network_remove_ipv6addr:
        case rpc_network_remove_ipv6gw:
            return true;
        default:
            return false;
    }
}

}  // namespace

void answer(State& state, const Behaviour& behaviour, rpcproc_t procedure, void* argument,
            void* result) {
    // As on the board, the host name is never taken.
    if (procedure == rpc_network_set_hostname ||
        (behaviour.refuse && changesSomething(procedure))) {
        return refuse(result);
    }
    if (answerAddressing(state, behaviour, procedure, argument, result) ||
        answerIpv6(state, behaviour, procedure, argument, result) ||
        answerVlan(state, procedure, argument, result) ||
        answerServices(state, procedure, argument, result) ||
        answerSoftware(state, behaviour, procedure, argument, result) ||
        answerSnmp(state, behaviour, procedure, argument, result)) {
        return;
    }
    switch (procedure) {
        case rpc_network_get_domainname:
            // Bytes that are no UTF-8, and a text that fills its array.
            std::memset(result, '\xE9', sizeof(rpcStringResult));
            break;
        case rpc_network_set_dns_servers: {
            const auto& servers = as<rpc_network_set_dns_servers_1_argument>(argument);
            state.dns = {2, servers.primary, servers.secondary};
            break;
        }
        case rpc_network_delete_dns_servers:
            state.dns = {2, 0, 0};
            break;
        case rpc_network_get_dns_serversws:
            as<rpcNetworkDnsInfoWS>(result) = state.dns;
            break;
        case rpc_network_set_domainname:
            state.domain = {2, {}};
            copy(state.domain.domain, as<char*>(argument));
            break;
        case rpc_network_get_domainnamews:
            as<rpcNetworkDomainWS>(result) = state.domain;
            break;
        case rpc_network_set_ipv6dns_servers: {
            const auto& servers = as<rpc_network_set_ipv6dns_servers_1_argument>(argument);
            state.dns6 = {2, {}, {}};
            copy(state.dns6.primary, servers.primary);
            copy(state.dns6.secondary, servers.secondary);
            break;
        }
        case rpc_network_delete_ipv6dns_servers:
            state.dns6 = {1, {}, {}};
            break;
        case rpc_network_get_ipv6dns_serversws:
            as<rpcNetworkIPv6DnsInfo>(result) = state.dns6;
            break;
        case rpc_network_set_ipv6domainname:
            state.domain6 = {2, {}};
            copy(state.domain6.domain, as<char*>(argument));
            break;
        case rpc_network_get_ipv6domainnamews:
            as<rpcNetworkIPv6Domain>(result) = state.domain6;
            break;
        case rpc_network_http_server_set:
            state.webSet = as<bool_t>(argument) != 0;
            break;
        case rpc_network_http_get:
            as<rpcNetworkHttpResult>(result).enabled = state.webSet ? TRUE : FALSE;
            break;
        case rpc_network_sntp_update:
            state.sntp = as<rpcSntpConfig>(argument);
            break;
        case rpc_network_sntp_get:
            as<rpcSntpConfig>(result) = state.sntp;
            break;
        default:
            break;
    }
}

namespace {

bool_t filterNothing(XDR* /*stream*/, bool_t* /*value*/) { return TRUE; }

void sendReply(SVCXPRT* transport, std::string text) {
    controlReply reply{board().behaviour.refuse ? -1 : 0, text.data()};
    std::string reason = "not now";
    if (board().behaviour.refuse) {
        reply.reply = reason.data();
    }
    svc_sendreply(transport, asFilter(xdr_controlReply), &reply);
}

void sendCounters(SVCXPRT* transport) {
    const Board& all = board();
    std::vector<bllRuleCounter> counters;
    for (const auto& rule : all.state.rules) {
        const auto place = static_cast<unsigned>(counters.size() + 1);
        counters.push_back({rule.ipAddress, rule.netmask, rule.flag, place, 0x100000000U * place});
    }
    counters.push_back({0, 0, FALSE, 7, 420});
    if (all.behaviour.counters == "wrong") {
        counters.front().permit = !counters.front().permit;
    }
    const bool failed = all.behaviour.counters == "failed";
    bllRuleCounters answer{failed ? -1 : 0, {static_cast<u_int>(counters.size()), counters.data()}};
    svc_sendreply(transport, asFilter(xdr_bllRuleCounters), &answer);
}

void sendStatus(SVCXPRT* transport) {
    const State& state = board().state;
    std::string shelf = state.shelfId;
    std::string featureNames[] = {"httpserver", "snmp"};
    controlFeature features[] = {{featureNames[0].data(), state.webServer ? TRUE : FALSE},
                                 {featureNames[1].data(), TRUE}};
    std::string entityName = "network";
    std::string entityState = "started";
    controlEntity entities[] = {{entityName.data(), entityState.data()}};
    controlStatus status{};
    status.shelfId = shelf.data();
    status.profileMode = state.profileMode ? TRUE : FALSE;
    status.clearConfigInProgress = state.clearConfig ? TRUE : FALSE;
    status.features.features_len = 2;
    status.features.features_val = features;
    status.entities.entities_len = 1;
    status.entities.entities_val = entities;
    svc_sendreply(transport, asFilter(xdr_controlStatus), &status);
}

/// Decodes the argument, has it handled, and releases it.
template <class Argument, class Filter, class Handle>
void withArgument(SVCXPRT* transport, Filter* filter, const Handle& handle) {
    Argument argument{};
    if (!svc_getargs(transport, asFilter(filter), &argument)) {
        return svcerr_decode(transport);
    }
    handle(argument);
    svc_freeargs(transport, asFilter(filter), &argument);
}

}  // namespace

void dispatchControl(svc_req* request, SVCXPRT* transport) {
    State& state = board().state;
    const bool accept = !board().behaviour.refuse;
    switch (request->rq_proc) {
        case NULLPROC: {
            bool_t nothing = FALSE;
            svc_sendreply(transport, asFilter(filterNothing), &nothing);
            return;
        }
        case BLL_EXTERNAL_MESSAGE:
            return withArgument<controlMessage>(transport, xdr_controlMessage, [&](auto& message) {
                tell(std::string("message ") + message.name + " " + message.value);
                sendReply(transport, std::string(message.name) + " is now " + message.value +
                                         "\nby \x1b[31mnetwork\n");
            });
        case BLL_SET_SHELF_ID:
            return withArgument<char*>(transport, xdr_wrapstring, [&](char* id) {
                tell(std::string("shelf ") + id);
                if (accept) {
                    state.shelfId = id;
                }
                sendReply(transport, "");
            });
        case BLL_SET_FEATURE:
            return withArgument<controlFeature>(transport, xdr_controlFeature, [&](auto& feature) {
                tell(std::string("feature ") + feature.name + (feature.on ? " on" : " off"));
                if (accept) {
                    state.webServer = feature.on != 0;
                }
                sendReply(transport, "");
            });
        case BLL_SET_PROFILE_MODE:
            return withArgument<bool_t>(transport, xdr_bool, [&](bool_t on) {
                tell(on ? "profile on" : "profile off");
                state.profileMode = on != 0;
                sendReply(transport, "");
            });
        case BLL_SET_CLEAR_CONFIG:
            return withArgument<bool_t>(transport, xdr_bool, [&](bool_t start) {
                tell(start ? "clear-config start" : "clear-config finish");
                state.clearConfig = start != 0;
                sendReply(transport, "");
            });
        case BLL_APPLY_DEFAULTS:
            tell("defaults");
            return sendReply(transport, "");
        case BLL_GET_STATUS:
            tell("status");
            return sendStatus(transport);
        case BLL_STOP:
            tell("stop");
            return sendReply(transport, "");
        case BLL_CONTROL_RULE_COUNTERS:
            tell("counters");
            if (board().behaviour.counters == "none") {
                return svcerr_noproc(transport);
            }
            return sendCounters(transport);
        case BLL_CONTROL_VLANS:
            tell("vlans");
            return sendVlans(transport);
        case BLL_CONTROL_DHCP:
            tell("dhcp");
            return sendDhcp(transport);
        default:
            return svcerr_noproc(transport);
    }
}

}  // namespace canned
