#include "cannedBoard.h"

namespace canned {

bool answerResolver(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_get_domainname:
            // Bytes that are no UTF-8, and a text that fills its array.
            std::memset(result, '\xE9', sizeof(rpcStringResult));
            return true;
        case rpc_network_set_dns_servers: {
            const auto& servers = as<rpc_network_set_dns_servers_1_argument>(argument);
            state.dns = {2, servers.primary, servers.secondary};
            return true;
        }
        case rpc_network_delete_dns_servers:
            state.dns = {2, 0, 0};
            return true;
        case rpc_network_get_dns_serversws:
            return give<rpcNetworkDnsInfoWS>(result, state.dns);
        case rpc_network_set_domainname:
            state.domain = {2, {}};
            copy(state.domain.domain, as<char*>(argument));
            return true;
        case rpc_network_get_domainnamews:
            return give<rpcNetworkDomainWS>(result, state.domain);
        case rpc_network_set_ipv6dns_servers: {
            const auto& servers = as<rpc_network_set_ipv6dns_servers_1_argument>(argument);
            state.dns6 = {2, {}, {}};
            copy(state.dns6.primary, servers.primary);
            copy(state.dns6.secondary, servers.secondary);
            return true;
        }
        case rpc_network_delete_ipv6dns_servers:
            state.dns6 = {1, {}, {}};
            return true;
        case rpc_network_get_ipv6dns_serversws:
            return give<rpcNetworkIPv6DnsInfo>(result, state.dns6);
        case rpc_network_set_ipv6domainname:
            state.domain6 = {2, {}};
            copy(state.domain6.domain, as<char*>(argument));
            return true;
        case rpc_network_get_ipv6domainnamews:
            return give<rpcNetworkIPv6Domain>(result, state.domain6);
        case rpc_network_http_server_set:
            return take<bool_t>(state.webSet, argument);
        case rpc_network_http_get:
            as<rpcNetworkHttpResult>(result).enabled = state.webSet ? TRUE : FALSE;
            return true;
        case rpc_network_sntp_update:
            return take<rpcSntpConfig>(state.sntp, argument);
        case rpc_network_sntp_get:
            return give<rpcSntpConfig>(result, state.sntp);
        default:
            return false;
    }
}

}  // namespace canned
