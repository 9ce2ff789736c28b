#pragma once

#include "board/support/Descriptor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace services {

/// A TCP port that takes connections, over IPv4 and IPv6, that come in through one interface;
/// whatever addresses the interface has, or gets later. Does not block.
class Listener {
public:
    /// Throws std::runtime_error, whose text says what failed.
    Listener(const std::string& interface, std::uint16_t port);
    /// From then on connections are refused, also those that wait to be accepted.
    ~Listener();
    Listener(Listener&&) noexcept = default;
    Listener& operator=(Listener&&) noexcept = default;

    std::uint16_t port() const { return number; }
    /// Index of the interface: one that is made again under the old name is another one.
    unsigned int interfaceIndex() const { return index; }

    struct Connection {
        support::Descriptor socket;
        std::string peer;  ///< the address of the client
    };
    /// One socket a family; each is readable when a connection waits.
    const std::vector<support::Descriptor>& sockets() const { return listening; }
    /// The next connection; without a socket when none waits. Throws std::system_error when one
    /// waits and there is no means to take it.
    Connection accept() const;

private:
    std::uint16_t number;
    unsigned int index;
    std::vector<support::Descriptor> listening;
};

}  // namespace services
