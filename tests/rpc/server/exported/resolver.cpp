// Fakes of the exported functions of host name, domain and name servers.

#include "exported/ExportedCall.h"
#include "network/exports.h"

FAKE(networkSetDomainname, (const char* domainname), domainname)
FAKE(networkSetIPv6Domainname, (const char* domainname), domainname)
FILLING_FAKE(networkGetDomainname, (char* domainname), OutputText{domainname, 100})
FILLING_FAKE(networkGetDomainnameWS, (int* dnsSource, char* domainname), dnsSource,
             OutputText{domainname, 100})
FILLING_FAKE(networkGetIPv6Domainname, (int* dnsSource, char* domainname), dnsSource,
             OutputText{domainname, 100})
FAKE(networkSetHostname, (const char* hostname), hostname)
FILLING_FAKE(networkGetHostname, (char* hostname), OutputText{hostname, 100})
FAKE(networkSetDnsServers, (unsigned int primary, unsigned int secondary), primary, secondary)
FAKE(networkSetIPv6DnsServers, (const char* primary, const char* secondary), primary, secondary)
FAKE(networkDeleteDnsServers, ())
FAKE(networkDeleteIPv6DnsServers, ())
FILLING_FAKE(networkGetDnsServers, (unsigned int* primary, unsigned int* secondary), primary,
             secondary)
FILLING_FAKE(networkGetDnsServersWS,
             (int* dnsSource, unsigned int* primary, unsigned int* secondary), dnsSource, primary,
             secondary)
FILLING_FAKE(networkGetIPv6DnsServers, (int* dnsSource, char* primary, char* secondary), dnsSource,
             OutputText{primary, 99}, OutputText{secondary, 99})
