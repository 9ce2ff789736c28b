// Server functions of clock, time zone and SNTP client.

#include "network/boundedCopy.h"
#include "network/exports.h"
#include "network/rpc/services.h"

rpcNetworkResult* rpc_network_set_time_info_1_svc(char* text, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetTimeInfo(text));
}

rpcNetworkTimeResult* rpc_network_get_time_info_1_svc(svc_req*) {
    static rpcNetworkTimeResult result;
    storeStatus(result.result, networkGetTimeInfo(result.time));
    return &result;
}

rpcNetworkResult* rpc_network_set_timezone_offset_1_svc(int offset, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetTimezoneOffset(offset));
}

rpcNetworkResult* rpc_network_set_timezone_name_1_svc(char* name, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetTimezoneName(name));
}

/// A zone's name has up to 199 characters, of which the record carries the first 99.
rpcNetworkTimezone* rpc_network_get_timezone_info_1_svc(svc_req*) {
    static rpcNetworkTimezone result;
    char name[200]{};
    copyBounded(name, result.name);
    networkGetTimezoneInfo(&result.offset, name);
    copyBounded(result.name, name);
    return &result;
}

rpcNetworkResult* rpc_network_set_sntp_timezone_dst_start_1_svc(unsigned int month,
                                                                unsigned int week,
                                                                unsigned int dayInWeek, int time,
                                                                svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetSntpTimezoneDstStart(month, week, dayInWeek, time));
}

rpcNetworkResult* rpc_network_set_sntp_timezone_dst_end_1_svc(unsigned int month, unsigned int week,
                                                              unsigned int dayInWeek, int time,
                                                              svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetSntpTimezoneDstEnd(month, week, dayInWeek, time));
}

rpcNetworkResult* rpc_network_set_sntp_timezone_dst_offset_1_svc(int offset, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetSntpTimezoneDstOffset(offset));
}

rpcNetworkResult* rpc_network_set_sntp_timezone_1_svc(int offset, char* name, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkSetSntpTimezone(offset, name));
}

rpcNetworkSntpTimezone* rpc_network_get_sntp_timezone_info_1_svc(svc_req*) {
    static rpcNetworkSntpTimezone result;
    networkGetSntpTimezoneInfo(&result);
    return &result;
}

rpcNetworkResult* rpc_network_sntp_update_1_svc(rpcSntpConfig* config, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkUpdateSntpConfig(config));
}

rpcNetworkResult* rpc_network_sntp_update_host_1_svc(rpcSntpConfigHost* config, svc_req*) {
    static rpcNetworkResult result;
    return storeStatus(result, networkUpdateSntpConfigHost(config));
}

rpcSntpConfig* rpc_network_sntp_get_1_svc(svc_req*) {
    static rpcSntpConfig result;
    networkGetSntpConfig(&result);
    return &result;
}

rpcSntpConfigWS* rpc_network_sntp_getws_1_svc(svc_req*) {
    static rpcSntpConfigWS result;
    networkGetSntpConfigWS(&result.result, &result.config);
    return &result;
}

rpcSntpConfigWSHost* rpc_network_sntp_getws_host_1_svc(svc_req*) {
    static rpcSntpConfigWSHost result;
    networkGetSntpConfigWSHost(&result.result, &result.config);
    return &result;
}

rpcSntpInfo* rpc_network_sntp_info_1_svc(svc_req*) {
    static rpcSntpInfo result;
    networkGetSntpInfo(&result);
    return &result;
}

rpcSntpInfoWS* rpc_network_sntp_infows_1_svc(svc_req*) {
    static rpcSntpInfoWS result;
    networkGetSntpInfoWS(&result.result, &result.info);
    return &result;
}

rpcSntpInfoWSHost* rpc_network_sntp_infowshost_1_svc(svc_req*) {
    static rpcSntpInfoWSHost result;
    networkGetSntpInfoWSHost(&result.result, &result.info);
    return &result;
}
