// Fakes of the exported functions of host name, domain and name servers.

#include "exported/ExportedCall.h"
#include "network/exports.h"

int networkSetDomainname(const char* domainname) {
    return ExportedCall("networkSetDomainname", domainname).end();
}

int networkSetIPv6Domainname(const char* domainname) {
    return ExportedCall("networkSetIPv6Domainname", domainname).end();
}

int networkGetDomainname(char* domainname) {
    return ExportedCall("networkGetDomainname").fill(OutputText{domainname, 100}).end();
}

int networkGetDomainnameWS(int* dnsSource, char* domainname) {
    return ExportedCall("networkGetDomainnameWS")
        .fill(dnsSource, OutputText{domainname, 100})
        .end();
}

int networkGetIPv6Domainname(int* dnsSource, char* domainname) {
    return ExportedCall("networkGetIPv6Domainname")
        .fill(dnsSource, OutputText{domainname, 100})
        .end();
}

int networkSetHostname(const char* hostname) {
    return ExportedCall("networkSetHostname", hostname).end();
}

int networkGetHostname(char* hostname) {
    return ExportedCall("networkGetHostname").fill(OutputText{hostname, 100}).end();
}

int networkSetDnsServers(unsigned int primary, unsigned int secondary) {
    return ExportedCall("networkSetDnsServers", primary, secondary).end();
}

int networkSetIPv6DnsServers(const char* primary, const char* secondary) {
    return ExportedCall("networkSetIPv6DnsServers", primary, secondary).end();
}

int networkDeleteDnsServers() { return ExportedCall("networkDeleteDnsServers").end(); }

int networkDeleteIPv6DnsServers() { return ExportedCall("networkDeleteIPv6DnsServers").end(); }

int networkGetDnsServers(unsigned int* primary, unsigned int* secondary) {
    return ExportedCall("networkGetDnsServers").fill(primary, secondary).end();
}

int networkGetDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary) {
    return ExportedCall("networkGetDnsServersWS").fill(dnsSource, primary, secondary).end();
}

int networkGetIPv6DnsServers(int* dnsSource, char* primary, char* secondary) {
    return ExportedCall("networkGetIPv6DnsServers")
        .fill(dnsSource, OutputText{primary, 99}, OutputText{secondary, 99})
        .end();
}
