#include "network/operations.h"

namespace {

/// Room for whatever the operations fill.
struct Buffers {
    int number;
    unsigned int numbers[2];
    char texts[2][100];
} buffers{};

void asItIs(fake::Platform&) { buffers = {}; }

}  // namespace

std::vector<Operation> resolverOperations() {
    return {
        {"setDomainname",
         asItIs,
         [](Network& network) { return network.setDomainname("a.example"); },
         {{"exclusiveLock", -1}, {"varoGetDnsWS", 0}, {"varoUpdateDnsWS", -1}}},
        {"getDomainname",
         asItIs,
         [](Network& network) { return network.getDomainname(buffers.texts[0]); },
         {{"sharedLock", -1}, {"varoGetDnsWS", -1}}},
        {"getDomainnameWS",
         asItIs,
         [](Network& network) {
             return network.getDomainnameWS(&buffers.number, buffers.texts[0]);
         },
         {{"sharedLock", -1}, {"varoGetDnsWS", -1}}},
        {"setDnsServers",
         asItIs,
         [](Network& network) { return network.setDnsServers(1, 2); },
         {{"exclusiveLock", -1}, {"varoGetDnsWS", 0}, {"varoUpdateDnsWS", -1}}},
        {"deleteDnsServers",
         asItIs,
         [](Network& network) { return network.deleteDnsServers(); },
         {{"exclusiveLock", -1}, {"varoGetDnsWS", 0}, {"varoUpdateDnsWS", -1}}},
        {"getDnsServers",
         asItIs,
         [](Network& network) {
             return network.getDnsServers(&buffers.numbers[0], &buffers.numbers[1]);
         },
         {{"sharedLock", -1}, {"varoGetDnsWS", -1}}},
        {"getDnsServersWS",
         asItIs,
         [](Network& network) {
             return network.getDnsServersWS(&buffers.number, &buffers.numbers[0],
                                            &buffers.numbers[1]);
         },
         {{"sharedLock", -1}, {"varoGetDnsWS", -1}}},
        {"setIPv6Domainname",
         asItIs,
         [](Network& network) { return network.setIPv6Domainname("a.example"); },
         {{"exclusiveLock", -1}, {"varoGetDns6", 0}, {"varoUpdateDns6", -1}}},
        {"getIPv6Domainname",
         asItIs,
         [](Network& network) {
             return network.getIPv6Domainname(&buffers.number, buffers.texts[0]);
         },
         {{"sharedLock", -1}, {"varoGetDns6", -1}}},
        {"setIPv6DnsServers",
         asItIs,
         [](Network& network) { return network.setIPv6DnsServers("::1", "::2"); },
         {{"exclusiveLock", -1}, {"varoGetDns6", 0}, {"varoUpdateDns6", -1}}},
        {"deleteIPv6DnsServers",
         asItIs,
         [](Network& network) { return network.deleteIPv6DnsServers(); },
         {{"exclusiveLock", -1}, {"varoGetDns6", 0}, {"varoUpdateDns6", -1}}},
        {"getIPv6DnsServers",
         asItIs,
         [](Network& network) {
             return network.getIPv6DnsServers(&buffers.number, buffers.texts[0], buffers.texts[1]);
         },
         {{"sharedLock", -1}, {"varoGetDns6", -1}}},
    };
}
