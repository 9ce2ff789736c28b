// Server functions of remote access, terminal and file-transfer services, web server, SNMP agent
// and software inventory.

#include "network/exports.h"
#include "network/rpc/services.h"

rpcNetworkResult* rpc_network_ftp_enable_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkFtpEnable(on));
}

rpcNetworkResult* rpc_network_is_ftp_enabled_1_svc(svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkGetFtpState());
}

rpcNetworkResult* rpc_network_set_http_sport_1_svc(unsigned int port, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetHttpSPort(port));
}

rpcNetworkResult* rpc_network_set_http_sproto_1_svc(rpcNetworkSprotocol protocol, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetHttpSProto(static_cast<Network::SProtocol>(protocol)));
}

rpcNetworkResult* rpc_network_http_sserver_enable_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkHttpSServerEnable(on != FALSE));
}

rpcNetworkResult* rpc_network_http_server_enable_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkHttpServerEnable(on));
}

rpcNetworkHttpInfo* rpc_network_get_http_info_1_svc(svc_req*) {
    static rpcNetworkHttpInfo result;
    Network::HttpInfo info{result.httpEnabled != FALSE, result.httpsEnabled != FALSE,
                           result.httpsPort, static_cast<Network::SProtocol>(result.httpsProtocol)};
    networkGetHttpInfo(&info);
    result = {info.httpEnabled, info.httpsEnabled, info.httpsPort,
              static_cast<rpcNetworkSprotocol>(info.httpsProtocol)};
    return &result;
}

rpcNetworkResult* rpc_network_http_server_set_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkHttpServerSet(on));
}

rpcNetworkHttpResult* rpc_network_http_get_1_svc(svc_req*) {
    static rpcNetworkHttpResult result;
    bool enabled = result.enabled != FALSE;
    storeStatus(result.result, networkHttpGet(&enabled));
    result.enabled = enabled;
    return &result;
}

rpcNetworkResult* rpc_network_add_ra_rule_1_svc(rpcNetworkIpAddress ipAddress,
                                                rpcNetworkIpAddress netmask, bool_t permit,
                                                unsigned int index, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkAddRARule(ipAddress, netmask, permit, index));
}

rpcNetworkResult* rpc_network_remove_ra_rule_1_svc(unsigned int index, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkRemoveRARule(index));
}

rpcNetworkRemoteAccessResult* rpc_network_iterate_rules_1_svc(unsigned int index, svc_req*) {
    static rpcNetworkRemoteAccessResult result;
    rpcNetworkRemoteAccessRule& wire = result.rule;
    Network::RemoteAccessRule rule{wire.index, wire.ipAddress, wire.netmask, wire.flag != FALSE};
    storeStatus(result.result, networkIterateRules(index, &rule));
    wire = {rule.sequenceNumber, rule.ipAddr, rule.netmask, rule.permit};
    return &result;
}

rpcTelnetConfig* rpc_network_get_telnet_1_svc(svc_req*) {
    static rpcTelnetConfig result;
    bool on = result != FALSE;
    networkGetTelnetConfig(&on);
    result = on;
    return &result;
}

rpcNetworkResult* rpc_network_telnet_enable_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkTelnetEnable(on));
}

rpcSshConfig* rpc_network_get_ssh_1_svc(svc_req*) {
    static rpcSshConfig result;
    bool on = result != FALSE;
    networkGetSshConfig(&on);
    result = on;
    return &result;
}

rpcNetworkResult* rpc_network_ssh_enable_1_svc(bool_t on, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSshEnable(on));
}

rpcPtyConfig* rpc_network_pty_get_max_sess_1_svc(svc_req*) {
    static rpcPtyConfig result;
    networkGetPtyMaxSess(&result.maxSessions, &result.value);
    return &result;
}

rpcNetworkResult* rpc_network_pty_set_max_sess_1_svc(unsigned int maxSessions, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetPtyMaxSess(maxSessions));
}

rpcNetworkResult* rpc_network_snmptrap_add_1_svc(char* community, rpcNetworkIpAddress ipAddress,
                                                 bool_t add, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmptrapAdd(community, ipAddress, add));
}

rpcSnmpTrapConfig* rpc_network_get_snmptrap_1_svc(svc_req*) {
    static rpcSnmpTrapConfig result;
    networkGetSnmptrapConfig(&result);
    return &result;
}

rpcNetworkResult* rpc_network_snmptrap_change_1_svc(char* community, rpcNetworkIpAddress oldAddress,
                                                    rpcNetworkIpAddress newAddress, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmptrapChange(community, oldAddress, newAddress));
}

rpcNetworkResult* rpc_network_snmptrap_port_1_svc(unsigned int port, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmptrapPort(port));
}

rpcNetworkResult* rpc_network_snmpcommunity_add_1_svc(char* name, rpcSnmpCommunityAccess access,
                                                      bool_t add, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmpCommunityAdd(name, access, add));
}

rpcNetworkResult* rpc_network_snmpcommunity_change_1_svc(char* name, rpcSnmpCommunityAccess access,
                                                         svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmpCommunityChange(name, access));
}

rpcSnmpCommunityConfig* rpc_network_snmpcommunity_get_1_svc(svc_req*) {
    static rpcSnmpCommunityConfig result;
    networkSnmpCommunityGet(&result);
    return &result;
}

rpcNetworkResult* rpc_network_snmpsystem_change_1_svc(char* text, rpcSnmpSystemSelector selector,
                                                      svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSnmpSystemChange(text, selector));
}

rpcSnmpSystemConfig* rpc_network_snmpsystem_get_1_svc(svc_req*) {
    static rpcSnmpSystemConfig result;
    networkSnmpSystemGet(&result);
    return &result;
}

rpcNetworkSWVersion* rpc_network_get_sw_data_1_svc(svc_req*) {
    static rpcNetworkSWVersion result;
    networkGetSWData(result.product, result.buildDirectory, result.buildTime, result.upgradeProduct,
                     result.packageRelease, result.osRelease, result.fileSystem, result.bootLoader,
                     result.recoveryFileSystem);
    return &result;
}

/// The index comes back as the exported function left it: the next line's, or -1 at the end.
rpcNetworkSWVersionComp* rpc_network_get_sw_comp_apl_data_1_svc(int index, svc_req*) {
    static rpcNetworkSWVersionComp result;
    networkGetVersionLineApl(result.line, &index);
    result.index = index;
    return &result;
}

rpcNetworkSWVersionComp* rpc_network_get_sw_comp_plat_data_1_svc(int index, svc_req*) {
    static rpcNetworkSWVersionComp result;
    networkGetVersionLinePlat(result.line, &index);
    result.index = index;
    return &result;
}

rpcNetworkPackageVersion* rpc_network_get_package_data_1_svc(svc_req*) {
    static rpcNetworkPackageVersion result;
    networkGetPackageData(result.name, result.version);
    return &result;
}
