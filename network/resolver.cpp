// Host name, domain and name servers. The values live in varoLib; changes are read-modify-write of
// a whole record, and a failed read is only logged before the write goes ahead.

#include "network/Network.h"
#include "network/boundedCopy.h"
#include "network/varoSources.h"
#include "varo/varoLib.h"

#include <cstddef>

namespace {

// Each family of addresses has records and calls of its own.

struct Ipv4 {
    using Record = varoLib_s_dns;
    static constexpr auto get = varoGetDnsWS;
    static constexpr auto update = varoUpdateDnsWS;
};

struct Ipv6 {
    using Record = varoLib_s_dns6;
    static constexpr auto get = varoGetDns6;
    static constexpr auto update = varoUpdateDns6;
};

/// A family's settings as they were read.
template <class Family>
struct Settings {
    explicit Settings(int wanted) : source(wanted), status(Family::get(&source, &record)) {}

    bool isUnread() const { return status != 0; }
    /// Returns the status of varoLib.
    int write(int destination) { return Family::update(destination, &record); }

    typename Family::Record record{};
    int source;  ///< whose settings came back
    int status;
};

/// Characters that a domain getter and an IPv6 server getter hand out, the terminator not counted.
constexpr std::size_t domainLimit = 99;
constexpr std::size_t ipv6ServerLimit = 98;

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

}  // namespace

int Network::setHostname(const char* hostname) {
    reportIf(hostname == nullptr,
             "[networkBLE]: setHostname failed! One of input args is NULL. hostname: %p\n",
             address(hostname));
    return -1;
}

int Network::getHostname(char* hostname) {
    reportIf(hostname == nullptr,
             "[networkBLE]: getHostname failed! One of input args is NULL. hostname: %p\n",
             address(hostname));
    return -1;
}

int Network::setDomainname(const char* domainname) {
    return withExclusiveLock([&] {
        if (reportIf(
                domainname == nullptr,
                "[networkBLE]: setDomainname failed! One of input args is NULL. domainname: %p\n",
                address(domainname))) {
            return -1;
        }
        Settings<Ipv4> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: setDomainname: varoGetDns has failed!\n");
        copyBounded(dns.record.domain, domainname);
        const int status = dns.write(cliSource);
        return resultOf(status,
                        "[networkBLE]: setDomainname: varoUpdateDns has failed! Return value: %d\n",
                        status);
    });
}

int Network::setIPv6Domainname(const char* domainname) {
    return withExclusiveLock([&] {
        if (reportIf(
                domainname == nullptr,
                "[networkBLE]: setIPv6Domainname failed! One of input args is NULL. domainname: %p\n",
                address(domainname))) {
            return -1;
        }
        Settings<Ipv6> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: setIPv6Domainname: varoGetDns6 has failed!\n");
        copyBounded(dns.record.domain, domainname);
        const int status = dns.write(cliSource);
        return resultOf(
            status,
            "[networkBLE]: setIPv6Domainname: varoUpdateDns6 has failed! Return value: %d\n",
            status);
    });
}

int Network::getDomainname(char* domainname) {
    return withSharedLock([&] {
        if (reportIf(
                domainname == nullptr,
                "[networkBLE]: getDomainname failed! One of input args is NULL. domainname: %p\n",
                address(domainname))) {
            return -1;
        }
        const Settings<Ipv4> dns(cliSource);
        if (reportIf(dns.isUnread(), "[networkBLE]: getDomainname: varoGetDns has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        return 0;
    });
}

int Network::getDomainnameWS(int* dnsSource, char* domainname) {
    return withSharedLock([&] {
        if (reportIf(
                domainname == nullptr,
                "[networkBLE]: getDomainname failed! One of input args is NULL. domainname: %p\n",
                address(domainname))) {
            return -1;
        }
        const Settings<Ipv4> dns(anySource);
        if (reportIf(dns.isUnread(), "[networkBLE]: getDomainnameWS: varoGetDnsWS has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::getIPv6Domainname(int* dnsSource, char* domainname) {
    return withSharedLock([&] {
        if (reportIf(
                domainname == nullptr,
                "[networkBLE]: getIPv6Domainname failed! One of input args is NULL. domainname: %p\n",
                address(domainname))) {
            return -1;
        }
        const Settings<Ipv6> dns(anySource);
        if (reportIf(dns.isUnread(),
                     "[networkBLE]: getIPv6Domainname: varoGetDns6 has failed!\n")) {
            return -1;
        }
        copyDomain(domainname, dns.record.domain);
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::setDnsServers(unsigned int primary, unsigned int secondary) {
    return withExclusiveLock([&] {
        Settings<Ipv4> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: setDnsServers: varoGetDns has failed!\n");
        dns.record.ip_pri = primary;
        // A secondary equal to the primary says nothing new and is dropped.
        dns.record.ip_sec = secondary != primary ? secondary : 0;
        const int status = dns.write(dns.source);
        return resultOf(
            status,
            "[networkBLE]: setDnsServers: varoUpdateDns has failed (dnsSource=%d), dns.ip_pri=%d, dns.ip_sec=%d)! Return value: %d\n",
            dns.source, static_cast<int>(dns.record.ip_pri), static_cast<int>(dns.record.ip_sec),
            status);
    });
}

int Network::setIPv6DnsServers(const char* primary, const char* secondary) {
    return withExclusiveLock([&] {
        Settings<Ipv6> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: setIPv6DnsServers: varoGetDns6 has failed!\n");
        copyGuarded(dns.record.ipv6_pri, primary);
        copyGuarded(dns.record.ipv6_sec, secondary);
        const int status = dns.write(dns.source);
        return resultOf(
            status,
            "[networkBLE]: setIPv6DnsServers: varoUpdateDns6 has failed (dnsSource=%d), dns.ipv6_pri=%s, dnsipv6.ip_sec=%s)! Return value: %d\n",
            dns.source, dns.record.ipv6_pri, dns.record.ipv6_sec, status);
    });
}

int Network::deleteDnsServers() {
    return withExclusiveLock([&] {
        Settings<Ipv4> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n");
        dns.record.ip_pri = 0;
        dns.record.ip_sec = 0;
        const int status = dns.write(cliSource);
        return resultOf(
            status, "[networkBLE]: deleteDnsServers: varoUpdateDns has failed! Return value: %d\n",
            status);
    });
}

int Network::deleteIPv6DnsServers() {
    return withExclusiveLock([&] {
        Settings<Ipv6> dns(cliSource);
        reportIf(dns.isUnread(), "[networkBLE]: deleteIPv6DnsServers: varoGetDns6 has failed!\n");
        dns.record.ipv6_pri[0] = '\0';
        dns.record.ipv6_sec[0] = '\0';
        const int status = dns.write(cliSource);
        return resultOf(
            status,
            "[networkBLE]: deleteIPv6DnsServers: varoUpdateDns6 has failed! Return value: %d\n",
            status);
    });
}

int Network::getDnsServers(unsigned int* primary, unsigned int* secondary) {
    return withSharedLock([&] {
        if (reportIf(
                primary == nullptr || secondary == nullptr,
                "[networkBLE]: getDnsServers failed! One of input args is NULL. primary: %p, secondary: %p\n",
                address(primary), address(secondary))) {
            return -1;
        }
        const Settings<Ipv4> dns(cliSource);
        // The getters share the message of the delete operation.
        if (reportIf(dns.isUnread(), "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n")) {
            return -1;
        }
        *primary = dns.record.ip_pri;
        *secondary = dns.record.ip_sec;
        return 0;
    });
}

int Network::getDnsServersWS(int* dnsSource, unsigned int* primary, unsigned int* secondary) {
    return withSharedLock([&] {
        if (reportIf(
                dnsSource == nullptr || primary == nullptr || secondary == nullptr,
                "[networkBLE]: getDnsServers failed! One of input args is NULL. dnsSource: %p, primary: %p, secondary: %p\n",
                address(dnsSource), address(primary), address(secondary))) {
            return -1;
        }
        const Settings<Ipv4> dns(anySource);
        if (reportIf(dns.isUnread(), "[networkBLE]: deleteDnsServers: varoGetDns has failed!\n")) {
            return -1;
        }
        *primary = dns.record.ip_pri;
        *secondary = dns.record.ip_sec;
        *dnsSource = dns.source;
        return 0;
    });
}

int Network::getIPv6DnsServers(int* dnsSource, char* primary, char* secondary) {
    return withSharedLock([&] {
        if (reportIf(
                dnsSource == nullptr || primary == nullptr || secondary == nullptr,
                "[networkBLE]: getIPv6DnsServers failed! One of input args is NULL. dnsSource: %p, primary: %p, secondary: %p\n",
                address(dnsSource), address(primary), address(secondary))) {
            return -1;
        }
        const Settings<Ipv6> dns(anySource);
        if (reportIf(dns.isUnread(),
                     "[networkBLE]: getIPv6DnsServersWS: varoGetDns6 has failed!\n")) {
            return -1;
        }
        copyBounded(primary, dns.record.ipv6_pri, ipv6ServerLimit);
        copyBounded(secondary, dns.record.ipv6_sec, ipv6ServerLimit);
        *dnsSource = dns.source;
        return 0;
    });
}
