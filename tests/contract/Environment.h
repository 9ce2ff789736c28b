#pragma once

#include <cstdint>
#include <string>

/// A platform as a host starts it: nothing configured, and lock requests refused soon. The fake and
/// the board each have one.
class Environment {
public:
    Environment();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    /// An interface of the machine, with an IPv4 address in host byte order.
    struct Interface {
        std::string name;
        std::uint32_t address;
        std::uint32_t netmask;
    };
    static Interface interface();
};
