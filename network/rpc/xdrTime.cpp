// Filters of the records of clock, time zone and SNTP.

#include "network/rpc/xdrFields.h"

using wire::run;
using wire::xdrFields;

bool_t xdr_rpcNetworkNtpInfo(XDR* xdrs, rpcNetworkNtpInfo* r) {
    return xdrFields(xdrs, wire::flag(r->enabled), r->value);
}

bool_t xdr_rpcNetworkNtpServerResult(XDR* xdrs, rpcNetworkNtpServerResult* r) {
    return xdrFields(xdrs, r->ipAddress, r->value, r->result);
}

bool_t xdr_rpcNetworkTimeResult(XDR* xdrs, rpcNetworkTimeResult* r) {
    return xdrFields(xdrs, r->time, r->result);
}

bool_t xdr_rpcNetworkTimezone(XDR* xdrs, rpcNetworkTimezone* r) {
    return xdrFields(xdrs, r->offset, r->name);
}

bool_t xdr_rpcNetworkSntpTimezone(XDR* xdrs, rpcNetworkSntpTimezone* r) {
    return xdrFields(
        xdrs, r->name,
        run(r->offset, r->dstOffset, r->dstSMonth, r->dstSWeek, r->dstSDayInWeek, r->dstSTime,
            r->dstEMonth, r->dstEWeek, r->dstEDayInWeek, r->dstETime, r->preset));
}

bool_t xdr_rpcSntpSrv(XDR* xdrs, rpcSntpSrv* r) {
    return xdrFields(xdrs, r->ipAddress, r->ntpVersion, r->priority);
}

bool_t xdr_rpcSntpSrvHost(XDR* xdrs, rpcSntpSrvHost* r) {
    return xdrFields(xdrs, r->host, r->ntpVersion, r->priority, r->addressType);
}

bool_t xdr_rpcSntpSrvInfo(XDR* xdrs, rpcSntpSrvInfo* r) {
    return xdrFields(xdrs,
                     run(r->state, r->ipAddress, r->stratum, r->reachability, r->offset, r->delay));
}

bool_t xdr_rpcSntpSrvInfoHost(XDR* xdrs, rpcSntpSrvInfoHost* r) {
    return xdrFields(xdrs, r->state, r->host,
                     run(r->stratum, r->reachability, r->offset, r->delay));
}

bool_t xdr_rpcSntpClientInfo(XDR* xdrs, rpcSntpClientInfo* r) {
    return xdrFields(xdrs,
                     run(r->state, r->mode, r->leapIndicator, r->stratum, r->pollInterval,
                         r->offset, r->referenceAddress, r->delay, r->dispersion),
                     r->lastUpdate);
}

bool_t xdr_rpcSntpClientInfoHost(XDR* xdrs, rpcSntpClientInfoHost* r) {
    return xdrFields(
        xdrs, run(r->state, r->mode, r->leapIndicator, r->stratum, r->pollInterval, r->offset),
        r->referenceHost, r->delay, r->dispersion, r->lastUpdate);
}

bool_t xdr_rpcSntpClientUnicastInfo(XDR* xdrs, rpcSntpClientUnicastInfo* r) {
    return xdrFields(xdrs, r->pollInterval, r->timeout, r->retries);
}

bool_t xdr_rpcSntpInfo(XDR* xdrs, rpcSntpInfo* r) {
    return xdrFields(xdrs, r->client, r->unicast, r->servers);
}

bool_t xdr_rpcSntpInfoHost(XDR* xdrs, rpcSntpInfoHost* r) {
    return xdrFields(xdrs, r->client, r->unicast, r->servers);
}

bool_t xdr_rpcSntpInfoWS(XDR* xdrs, rpcSntpInfoWS* r) {
    return xdrFields(xdrs, r->result, r->info);
}

bool_t xdr_rpcSntpInfoWSHost(XDR* xdrs, rpcSntpInfoWSHost* r) {
    return xdrFields(xdrs, r->result, r->info);
}

bool_t xdr_rpcSntpConfig(XDR* xdrs, rpcSntpConfig* r) {
    return xdrFields(xdrs, r->mode, r->servers);
}

bool_t xdr_rpcSntpConfigHost(XDR* xdrs, rpcSntpConfigHost* r) {
    return xdrFields(xdrs, r->mode, r->servers);
}

bool_t xdr_rpcSntpConfigWS(XDR* xdrs, rpcSntpConfigWS* r) {
    return xdrFields(xdrs, r->result, r->config);
}

bool_t xdr_rpcSntpConfigWSHost(XDR* xdrs, rpcSntpConfigWSHost* r) {
    return xdrFields(xdrs, r->result, r->config);
}

bool_t xdr_rpc_network_set_sntp_timezone_dst_start_1_argument(
    XDR* xdrs, rpc_network_set_sntp_timezone_dst_start_1_argument* r) {
    return xdrFields(xdrs, r->month, r->week, r->dayInWeek, r->time);
}

bool_t xdr_rpc_network_set_sntp_timezone_dst_end_1_argument(
    XDR* xdrs, rpc_network_set_sntp_timezone_dst_end_1_argument* r) {
    return xdrFields(xdrs, r->month, r->week, r->dayInWeek, r->time);
}

bool_t xdr_rpc_network_set_sntp_timezone_1_argument(XDR* xdrs,
                                                    rpc_network_set_sntp_timezone_1_argument* r) {
    return xdrFields(xdrs, r->offset, r->name);
}
