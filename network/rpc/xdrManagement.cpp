// Filters of the records of the management services and of the software inventory.

#include "network/rpc/xdrFields.h"

using wire::flag;
using wire::run;
using wire::xdrFields;

bool_t xdr_rpcNetworkHttpInfo(XDR* xdrs, rpcNetworkHttpInfo* r) {
    return xdrFields(xdrs, run(flag(r->httpEnabled), flag(r->httpsEnabled), r->httpsPort),
                     r->httpsProtocol);
}

bool_t xdr_rpcNetworkHttpResult(XDR* xdrs, rpcNetworkHttpResult* r) {
    return xdrFields(xdrs, r->result, flag(r->enabled));
}

bool_t xdr_rpcNetworkSWVersion(XDR* xdrs, rpcNetworkSWVersion* r) {
    return xdrFields(xdrs, r->product, r->buildDirectory, r->buildTime, r->upgradeProduct,
                     r->packageRelease, r->osRelease, r->fileSystem, r->bootLoader,
                     r->recoveryFileSystem);
}

bool_t xdr_rpcNetworkSWVersionComp(XDR* xdrs, rpcNetworkSWVersionComp* r) {
    return xdrFields(xdrs, r->line, r->index);
}

bool_t xdr_rpcNetworkPackageVersion(XDR* xdrs, rpcNetworkPackageVersion* r) {
    return xdrFields(xdrs, r->name, r->release);
}

bool_t xdr_rpcPtyConfig(XDR* xdrs, rpcPtyConfig* r) {
    return xdrFields(xdrs, r->maxSessions, r->value);
}

bool_t xdr_rpcSnmpManager(XDR* xdrs, rpcSnmpManager* r) {
    return xdrFields(xdrs, r->ipAddress, r->community);
}

bool_t xdr_rpcSnmpTrapConfig(XDR* xdrs, rpcSnmpTrapConfig* r) {
    return xdrFields(xdrs, r->managers, r->port);
}

bool_t xdr_rpcSnmpCommunity(XDR* xdrs, rpcSnmpCommunity* r) {
    return xdrFields(xdrs, r->name, r->access);
}

bool_t xdr_rpcSnmpCommunityConfig(XDR* xdrs, rpcSnmpCommunityConfig* r) {
    return xdrFields(xdrs, r->communities);
}

bool_t xdr_rpcSnmpSystemConfig(XDR* xdrs, rpcSnmpSystemConfig* r) {
    return xdrFields(xdrs, r->contact, r->location, r->name);
}

bool_t xdr_rpc_network_snmptrap_add_1_argument(XDR* xdrs, rpc_network_snmptrap_add_1_argument* r) {
    return xdrFields(xdrs, r->community, r->ipAddress, flag(r->flag));
}

bool_t xdr_rpc_network_snmptrap_change_1_argument(XDR* xdrs,
                                                  rpc_network_snmptrap_change_1_argument* r) {
    return xdrFields(xdrs, r->community, r->oldAddress, r->newAddress);
}

bool_t xdr_rpc_network_snmpcommunity_add_1_argument(XDR* xdrs,
                                                    rpc_network_snmpcommunity_add_1_argument* r) {
    return xdrFields(xdrs, r->name, r->access, flag(r->flag));
}

bool_t xdr_rpc_network_snmpcommunity_change_1_argument(
    XDR* xdrs, rpc_network_snmpcommunity_change_1_argument* r) {
    return xdrFields(xdrs, r->name, r->access);
}

bool_t xdr_rpc_network_snmpsystem_change_1_argument(XDR* xdrs,
                                                    rpc_network_snmpsystem_change_1_argument* r) {
    return xdrFields(xdrs, r->text, r->selector);
}
