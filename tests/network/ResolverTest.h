#pragma once

#include "network/EntityTest.h"
#include "network/buffers.h"
#include "network/exports.h"
#include "network/journals.h"

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

/// Tests of the resolver's settings, on a board that has its own (2) and those of a lease (1).
class ResolverTest : public EntityTest {
protected:
    ResolverTest() {
        logEverything();
        put(platform.dns[2].domain, "example.net");
        platform.dns[2].ip_pri = serverA;
        platform.dns[2].ip_sec = serverB;
        put(platform.dns[1].domain, "lease.example");
        platform.dns[1].ip_pri = 0xc6336401;  // 198.51.100.1
        put(platform.dns6[2].domain, "six.example");
        put(platform.dns6[2].ipv6_pri, "2001:db8::1");
        put(platform.dns6[2].ipv6_sec, "2001:db8::2");
        put(platform.dns6[1].domain, "lease6.example");
        put(platform.dns6[1].ipv6_pri, "2001:db8:1::1");
    }

    const std::string readV4 =
        R"(varoGetDnsWS(2) -> 0 2 {domain="example.net" pri=192.0.2.1 sec=192.0.2.2})";
    const std::string readV6 =
        R"(varoGetDns6(2) -> 0 2 {domain="six.example" pri="2001:db8::1" sec="2001:db8::2"})";
    /// The same, reporting the lease as the source.
    const std::string readV4AsOfALease =
        R"(varoGetDnsWS(2) -> 0 1 {domain="example.net" pri=192.0.2.1 sec=192.0.2.2})";
};
