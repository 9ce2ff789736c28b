#pragma once

#include <netinet/in.h>

#include <cstdint>

/// A port at the machine's own IPv4 address; 0: any.
inline sockaddr_in loopbackAddress(std::uint16_t port = 0) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}
