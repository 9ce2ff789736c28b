// Rows of the host name, the domain and the name servers.

#include "network/exports.h"
#include "network/operations.h"

std::vector<Operation> resolverOperations() {
    return {
        Operation(EXPORTED(networkSetDomainname, "a.example"),
                  "exclusiveLock varoGetDnsWS=0 varoUpdateDnsWS ~"),
        Operation(EXPORTED(networkGetDomainname, buffers.texts[0]), "sharedLock varoGetDnsWS ~"),
        Operation(EXPORTED(networkGetDomainnameWS, &buffers.number, buffers.texts[0]),
                  "sharedLock varoGetDnsWS ~"),
        Operation(EXPORTED(networkSetDnsServers, 1, 2),
                  "exclusiveLock varoGetDnsWS=0 varoUpdateDnsWS ~"),
        Operation(EXPORTED(networkDeleteDnsServers),
                  "exclusiveLock varoGetDnsWS=0 varoUpdateDnsWS ~"),
        Operation(EXPORTED(networkGetDnsServers, &buffers.numbers[0], &buffers.numbers[1]),
                  "sharedLock varoGetDnsWS ~"),
        Operation(EXPORTED(networkGetDnsServersWS, &buffers.number, &buffers.numbers[0],
                           &buffers.numbers[1]),
                  "sharedLock varoGetDnsWS ~"),
        Operation(EXPORTED(networkSetIPv6Domainname, "a.example"),
                  "exclusiveLock varoGetDns6=0 varoUpdateDns6 ~"),
        Operation(EXPORTED(networkGetIPv6Domainname, &buffers.number, buffers.texts[0]),
                  "sharedLock varoGetDns6 ~"),
        Operation(EXPORTED(networkSetIPv6DnsServers, "::1", "::2"),
                  "exclusiveLock varoGetDns6=0 varoUpdateDns6 ~"),
        Operation(EXPORTED(networkDeleteIPv6DnsServers),
                  "exclusiveLock varoGetDns6=0 varoUpdateDns6 ~"),
        Operation(
            EXPORTED(networkGetIPv6DnsServers, &buffers.number, buffers.texts[0], buffers.texts[1]),
            "sharedLock varoGetDns6 ~"),
        Operation(EXPORTED(networkSetHostname, "board"), "").returns(-1),
        Operation(EXPORTED(networkGetHostname, buffers.texts[0]), "").returns(-1),
    };
}
