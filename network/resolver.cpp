// Host name, domain and name servers. The values live in varoLib; changes are read-modify-write of
// a whole record, and a failed read is only logged before the write goes ahead.

#include "network/Network.h"
#include "network/boundedCopy.h"
#include "varo/varoLib.h"

#include <cstddef>

namespace {

/// The configuration that the setters write and the plain getters read.
constexpr int cliSource = 2;
/// Lets varoLib choose, and report, whose values it returns.
constexpr int anySource = 0;

/// Characters that a domain getter and an IPv6 server getter hand out, the terminator not counted.
constexpr std::size_t domainLimit = 99;
constexpr std::size_t ipv6ServerLimit = 98;

/// A record as it was read, and the source that came back with it.
template <class Record>
struct Reading {
    Record record;
    int source;
    int status;
};

Reading<varoLib_s_dns> readDns(int source) {
    Reading<varoLib_s_dns> reading{{}, source, 0};
    reading.status = varoGetDnsWS(&reading.source, &reading.record);
    return reading;
}

Reading<varoLib_s_dns6> readDns6(int source) {
    Reading<varoLib_s_dns6> reading{{}, source, 0};
    reading.status = varoGetDns6(&reading.source, &reading.record);
    return reading;
}

/// The buffer holds 100 bytes, of which the last is a terminator in any case.
void copyDomain(char* buffer, const char* domain) {
    copyBounded(buffer, domain, domainLimit);
    buffer[domainLimit] = '\0';
}

/// A text that does not fit ends the process, before anything is overwritten.
template <std::size_t size>
void copyGuarded(char (&field)[size], const char* text) {
    __builtin___strcpy_chk(field, text, size);
}

const void* address(const void* pointer) { return pointer; }

}  // namespace

int Network::setHostname(const char* hostname) {
    reportIf(hostname == nullptr,
             "[networkBLE]: setHostname failed! One of input args is NULL. "
             "hostname: %p\n",
             address(hostname));
    return -1;
}

int Network::getHostname(char* hostname) {
    reportIf(hostname == nullptr,
             "[networkBLE]: getHostname failed! One of input args is NULL. "
             "hostname: %p\n",
             address(hostname));
    return -1;
}

int Network::setDomainname(const char* domainname) {
    return withExclusiveLock([&] {
        if (reportIf(domainname == nullptr,
                     "[networkBLE]: setDomainname failed! One of input args is NULL. "
                     "domainname: %p\n",
                     address(domainname))) {
            return -1;
        }
        auto dns = readDns(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: setDomainname: varoGetDns has failed!\n");
        copyBounded(dns.record.domain, domainname);
        const int status = varoUpdateDnsWS(cliSource, &dns.record);
        return reportIf(status != 0,
                        "[networkBLE]: setDomainname: varoUpdateDns has failed! Return value: %d\n",
                        status)
                   ? -1
                   : 0;
    });
}

int Network::getDomainname(char* domainname) {
    return withSharedLock([&] {
        if (reportIf(domainname == nullptr,
                     "[networkBLE]: getDomainname failed! One of input args is NULL. "
                     "domainname: %p\n",
                     address(domainname))) {
            return -1;
        }
        const auto dns = readDns(cliSource);
        if (reportIf(dns.status != 0, "[networkBLE]: getDomainname: varoGetDns has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        return 0;
    });
}

int Network::getDomainnameWS(int* dnsSource, char* domainname) {
    return withSharedLock([&] {
        if (reportIf(domainname == nullptr,
                     "[networkBLE]: getDomainname failed! One of input args is NULL. "
                     "domainname: %p\n",
                     address(domainname))) {
            return -1;
        }
        const auto dns = readDns(anySource);
        if (reportIf(dns.status != 0,
                     "[networkBLE]: getDomainnameWS: varoGetDnsWS has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::setDnsServers(unsigned int primary, unsigned int secondary) {
    return withExclusiveLock([&] {
        auto dns = readDns(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: setDnsServers: varoGetDns has failed!\n");
        dns.record.ip_pri = primary;
        // A secondary equal to the primary says nothing new and is dropped.
        dns.record.ip_sec = secondary != primary ? secondary : 0;
        const int status = varoUpdateDnsWS(dns.source, &dns.record);
        return reportIf(status != 0,
                        "[networkBLE]: setDnsServers: varoUpdateDns has failed "
                        "(dnsSource=%d), dns.ip_pri=%d, dns.ip_sec=%d)! Return value: %d\n",
                        dns.source, static_cast<int>(dns.record.ip_pri),
                        static_cast<int>(dns.record.ip_sec), status)
                   ? -1
                   : 0;
    });
}

int Network::deleteDnsServers() {
    return withExclusiveLock([&] {
        auto dns = readDns(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n");
        dns.record.ip_pri = 0;
        dns.record.ip_sec = 0;
        const int status = varoUpdateDnsWS(cliSource, &dns.record);
        return reportIf(
                   status != 0,
                   "[networkBLE]: deleteDnsServers: varoUpdateDns has failed! Return value: %d\n",
                   status)
                   ? -1
                   : 0;
    });
}

int Network::getDnsServers(unsigned int* primary, unsigned int* secondary) {
    return withSharedLock([&] {
        if (reportIf(primary == nullptr || secondary == nullptr,
                     "[networkBLE]: getDnsServers failed! One of input args is NULL. "
                     "primary: %p, secondary: %p\n",
                     address(primary), address(secondary))) {
            return -1;
        }
        const auto dns = readDns(cliSource);
        // The getters share the message of the delete operation.
        if (reportIf(dns.status != 0, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n")) {
            return -1;
        }
        *primary = dns.record.ip_pri;
        *secondary = dns.record.ip_sec;
        return 0;
    });
}

int Network::getDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary) {
    return withSharedLock([&] {
        if (reportIf(dnsSource == nullptr || primary == nullptr || secondary == nullptr,
                     "[networkBLE]: getDnsServers failed! One of input args is NULL. "
                     "dnsSource: %p, primary: %p, secondary: %p\n",
                     address(dnsSource), address(primary), address(secondary))) {
            return -1;
        }
        const auto dns = readDns(anySource);
        if (reportIf(dns.status != 0, "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n")) {
            return -1;
        }
        *primary = dns.record.ip_pri;
        *secondary = dns.record.ip_sec;
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::setIPv6Domainname(const char* domainname) {
    return withExclusiveLock([&] {
        if (reportIf(domainname == nullptr,
                     "[networkBLE]: setIPv6Domainname failed! One of input args is NULL. "
                     "domainname: %p\n",
                     address(domainname))) {
            return -1;
        }
        auto dns = readDns6(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: setIPv6Domainname: varoGetDns6 has failed!\n");
        copyBounded(dns.record.domain, domainname);
        const int status = varoUpdateDns6(cliSource, &dns.record);
        return reportIf(status != 0,
                        "[networkBLE]: setIPv6Domainname: varoUpdateDns6 has failed! "
                        "Return value: %d\n",
                        status)
                   ? -1
                   : 0;
    });
}

int Network::getIPv6Domainname(int* dnsSource, char* domainname) {
    return withSharedLock([&] {
        if (reportIf(domainname == nullptr,
                     "[networkBLE]: getIPv6Domainname failed! One of input args is NULL. "
                     "domainname: %p\n",
                     address(domainname))) {
            return -1;
        }
        const auto dns = readDns6(anySource);
        if (reportIf(dns.status != 0,
                     "[networkBLE]: getIPv6Domainname: varoGetDns6 has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::setIPv6DnsServers(const char* primary, const char* secondary) {
    return withExclusiveLock([&] {
        auto dns = readDns6(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: setIPv6DnsServers: varoGetDns6 has failed!\n");
        copyGuarded(dns.record.ipv6_pri, primary);
        copyGuarded(dns.record.ipv6_sec, secondary);
        const int status = varoUpdateDns6(dns.source, &dns.record);
        return reportIf(
                   status != 0,
                   "[networkBLE]: setIPv6DnsServers: varoUpdateDns6 has failed (dnsSource=%d), "
                   "dns.ipv6_pri=%s, dnsipv6.ip_sec=%s)! Return value: %d\n",
                   dns.source, dns.record.ipv6_pri, dns.record.ipv6_sec, status)
                   ? -1
                   : 0;
    });
}

int Network::deleteIPv6DnsServers() {
    return withExclusiveLock([&] {
        auto dns = readDns6(cliSource);
        reportIf(dns.status != 0, "[networkBLE]: deleteIPv6DnsServers: varoGetDns6 has failed!\n");
        dns.record.ipv6_pri[0] = '\0';
        dns.record.ipv6_sec[0] = '\0';
        const int status = varoUpdateDns6(cliSource, &dns.record);
        return reportIf(status != 0,
                        "[networkBLE]: deleteIPv6DnsServers: varoUpdateDns6 has failed! "
                        "Return value: %d\n",
                        status)
                   ? -1
                   : 0;
    });
}

int Network::getIPv6DnsServers(int* dnsSource, char* primary, char* secondary) {
    return withSharedLock([&] {
        if (reportIf(dnsSource == nullptr || primary == nullptr || secondary == nullptr,
                     "[networkBLE]: getIPv6DnsServers failed! One of input args is NULL. "
                     "dnsSource: %p, primary: %p, secondary: %p\n",
                     address(dnsSource), address(primary), address(secondary))) {
            return -1;
        }
        const auto dns = readDns6(anySource);
        if (reportIf(dns.status != 0,
                     "[networkBLE]: getIPv6DnsServersWS: varoGetDns6 has failed!\n")) {
            return -1;
        }
        copyBounded(primary, dns.record.ipv6_pri, ipv6ServerLimit);
        copyBounded(secondary, dns.record.ipv6_sec, ipv6ServerLimit);
        *dnsSource = dns.source;
        return 0;
    });
}
