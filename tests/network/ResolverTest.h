#pragma once

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"

#include <cstddef>
#include <cstdio>
#include <string>

inline constexpr unsigned int serverA = 0xc0000201;  // 192.0.2.1
inline constexpr unsigned int serverB = 0xc0000202;  // 192.0.2.2

/// The records of the resolver, as the journal shows them.
inline std::string recordV4(const std::string& domain, const std::string& primary,
                            const std::string& secondary) {
    return "{domain=\"" + domain + "\" pri=" + primary + " sec=" + secondary + "}";
}
inline std::string recordV6(const std::string& domain, const std::string& primary,
                            const std::string& secondary) {
    return "{domain=\"" + domain + "\" pri=\"" + primary + "\" sec=\"" + secondary + "\"}";
}

/// A text of so many letters, in an order that shows what was cut off.
inline std::string lettersOf(std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += static_cast<char>('a' + (i + i / 26) % 26);
    }
    return text;
}

/// A pointer, as messages show it.
inline std::string shown(const void* pointer) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", pointer);
    return text;
}

/// What the two address families differ in.
struct ResolverFamily {
    const char* name;
    std::string (*record)(const std::string& domain, const std::string& primary,
                          const std::string& secondary);
    const char* readCall;
    const char* updateCall;
    const char* domain;
    const char* servers[2];
    const char* leasedDomain;
    const char* leasedServer;
    const char* noServer;

    /// A record with another domain, or without servers.
    std::string withDomain(const std::string& other) const {
        return record(other, servers[0], servers[1]);
    }
    std::string withoutServers() const { return record(domain, noServer, noServer); }
    std::string leased(const std::string& ofDomain) const {
        return record(ofDomain, leasedServer, noServer);
    }
    std::string empty() const { return record("", noServer, noServer); }

    // Calls, as the journal shows them.
    std::string read(int asked, int reported, const std::string& found) const {
        return std::string(readCall) + "(" + std::to_string(asked) + ") -> 0 " +
               std::to_string(reported) + " " + found;
    }
    /// The read of the management configuration, which reports that or another source.
    std::string ownRead(int reported = 2) const { return read(2, reported, withDomain(domain)); }
    std::string readFailed(int asked = 2) const {
        return std::string(readCall) + "(" + std::to_string(asked) + ") -> 5";
    }
    std::string written(const std::string& stored, int result = 0, int source = 2) const {
        return std::string(updateCall) + "(" + std::to_string(source) + ", " + stored + ") -> " +
               std::to_string(result);
    }
};

inline constexpr ResolverFamily v4 = {
    .name = "Ipv4",
    .record = recordV4,
    .readCall = "varoGetDnsWS",
    .updateCall = "varoUpdateDnsWS",
    .domain = "example.net",
    .servers = {"192.0.2.1", "192.0.2.2"},
    .leasedDomain = "lease.example",
    .leasedServer = "198.51.100.1",
    .noServer = "0.0.0.0",
};
inline constexpr ResolverFamily v6 = {
    .name = "Ipv6",
    .record = recordV6,
    .readCall = "varoGetDns6",
    .updateCall = "varoUpdateDns6",
    .domain = "six.example",
    .servers = {"2001:db8::1", "2001:db8::2"},
    .leasedDomain = "lease6.example",
    .leasedServer = "2001:db8:1::1",
    .noServer = "",
};

/// Tests of the resolver's settings, on a board that has its own (2) and those of a lease (1).
class ResolverTest : public EntityTest {
protected:
    ResolverTest() {
        logEverything();
        put(platform.dns[2].domain, v4.domain);
        platform.dns[2].ip_pri = serverA;
        platform.dns[2].ip_sec = serverB;
        put(platform.dns[1].domain, v4.leasedDomain);
        platform.dns[1].ip_pri = 0xc6336401;
        put(platform.dns6[2].domain, v6.domain);
        put(platform.dns6[2].ipv6_pri, v6.servers[0]);
        put(platform.dns6[2].ipv6_sec, v6.servers[1]);
        put(platform.dns6[1].domain, v6.leasedDomain);
        put(platform.dns6[1].ipv6_pri, v6.leasedServer);
    }

    /// Domains are of one size in both families.
    using Domain = char[sizeof varoLib_s_dns::domain];
    Domain& domain(const ResolverFamily& family, int source) {
        return family.record == recordV4 ? platform.dns[source].domain
                                         : platform.dns6[source].domain;
    }
};
