// Server functions of host name, domain and name servers.

#include "network/exports.h"
#include "network/rpc/services.h"

rpcNetworkResult* rpc_network_set_domainname_1_svc(char* domainname, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetDomainname(domainname));
}

rpcStringResult* rpc_network_get_domainname_1_svc(svc_req*) {
    static rpcStringResult result;
    networkGetDomainname(result.text);
    return &result;
}

rpcNetworkDomainWS* rpc_network_get_domainnamews_1_svc(svc_req*) {
    static rpcNetworkDomainWS result;
    networkGetDomainnameWS(&result.result, result.domain);
    return &result;
}

rpcNetworkResult* rpc_network_set_hostname_1_svc(char* hostname, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetHostname(hostname));
}

rpcStringResult* rpc_network_get_hostname_1_svc(svc_req*) {
    static rpcStringResult result;
    networkGetHostname(result.text);
    return &result;
}

rpcNetworkResult* rpc_network_set_dns_servers_1_svc(rpcNetworkIpAddress primary,
                                                    rpcNetworkIpAddress secondary, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetDnsServers(primary, secondary));
}

rpcNetworkResult* rpc_network_delete_dns_servers_1_svc(svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkDeleteDnsServers());
}

rpcNetworkDnsInfo* rpc_network_get_dns_servers_1_svc(svc_req*) {
    static rpcNetworkDnsInfo result;
    networkGetDnsServers(&result.primary, &result.secondary);
    return &result;
}

rpcNetworkDnsInfoWS* rpc_network_get_dns_serversws_1_svc(svc_req*) {
    static rpcNetworkDnsInfoWS result;
    networkGetDnsServersWS(&result.result, &result.primary, &result.secondary);
    return &result;
}

rpcNetworkIPv6DnsInfo* rpc_network_get_ipv6dns_serversws_1_svc(svc_req*) {
    static rpcNetworkIPv6DnsInfo result;
    networkGetIPv6DnsServers(&result.result, result.primary, result.secondary);
    return &result;
}

rpcNetworkIPv6Domain* rpc_network_get_ipv6domainnamews_1_svc(svc_req*) {
    static rpcNetworkIPv6Domain result;
    networkGetIPv6Domainname(&result.result, result.domain);
    return &result;
}

rpcNetworkResult* rpc_network_set_ipv6dns_servers_1_svc(char* primary, char* secondary, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetIPv6DnsServers(primary, secondary));
}

rpcNetworkResult* rpc_network_delete_ipv6dns_servers_1_svc(svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkDeleteIPv6DnsServers());
}

rpcNetworkResult* rpc_network_set_ipv6domainname_1_svc(char* domainname, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetIPv6Domainname(domainname));
}
