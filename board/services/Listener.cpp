#include "board/services/Listener.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace services {

namespace {

constexpr int waitingConnections = 16;

// A client that is gone without a word is noticed after two minutes.
constexpr int probeAfterSeconds = 60;
constexpr int probeIntervalSeconds = 10;
constexpr int probes = 6;

void set(const support::Descriptor& socket, int level, int option, int value) {
    // An option that is not to be had costs comfort, not function.
    ::setsockopt(socket.get(), level, option, &value, sizeof value);
}

[[noreturn]] void fail(const std::string& interface, std::uint16_t port, int error) {
    throw std::runtime_error(fmt::format("cannot listen at TCP port {} of {}: {}", port, interface,
                                         std::generic_category().message(error)));
}

support::Descriptor listenAt(int family, const std::string& interface, std::uint16_t port) {
    support::Descriptor socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) {
        // A kernel without IPv6 serves IPv4.
        if (family == AF_INET6 && errno == EAFNOSUPPORT) {
            return socket;
        }
        fail(interface, port, errno);
    }
    set(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    sockaddr_storage address{};
    address.ss_family = static_cast<sa_family_t>(family);
    socklen_t size = sizeof(sockaddr_in);
    if (family == AF_INET6) {
        set(socket, IPPROTO_IPV6, IPV6_V6ONLY, 1);
        reinterpret_cast<sockaddr_in6&>(address).sin6_port = htons(port);
        size = sizeof(sockaddr_in6);
    } else {
        reinterpret_cast<sockaddr_in&>(address).sin_port = htons(port);
    }
    const bool isListening =
        ::setsockopt(socket.get(), SOL_SOCKET, SO_BINDTODEVICE, interface.c_str(),
                     static_cast<socklen_t>(interface.size())) == 0 &&
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
        ::listen(socket.get(), waitingConnections) == 0;
    if (!isListening) {
        fail(interface, port, errno);
    }
    return socket;
}

std::string textOf(const sockaddr_storage& address) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void* const bytes =
        address.ss_family == AF_INET6
            ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in6&>(address).sin6_addr)
            : static_cast<const void*>(&reinterpret_cast<const sockaddr_in&>(address).sin_addr);
    ::inet_ntop(address.ss_family, bytes, text.data(), text.size());
    return text.data();
}

}  // namespace

Listener::Listener(const std::string& interface, std::uint16_t port)
    : number(port), index(::if_nametoindex(interface.c_str())) {
    if (index == 0) {
        throw std::runtime_error(fmt::format("there is no interface {}", interface));
    }
    for (const int family : {AF_INET, AF_INET6}) {
        if (support::Descriptor socket = listenAt(family, interface, port); socket) {
            listening.push_back(std::move(socket));
        }
    }
}

Listener::~Listener() {
    // A thread that polls a socket keeps it alive beyond close(2); it must not listen that long.
    for (const support::Descriptor& socket : listening) {
        ::shutdown(socket.get(), SHUT_RDWR);
    }
}

Listener::Connection Listener::accept() const {
    for (const support::Descriptor& socket : listening) {
        sockaddr_storage peer{};
        socklen_t size = sizeof peer;
        support::Descriptor connection(
            ::accept4(socket.get(), reinterpret_cast<sockaddr*>(&peer), &size, SOCK_CLOEXEC));
        if (connection) {
            set(connection, SOL_SOCKET, SO_KEEPALIVE, 1);
            set(connection, IPPROTO_TCP, TCP_KEEPIDLE, probeAfterSeconds);
            set(connection, IPPROTO_TCP, TCP_KEEPINTVL, probeIntervalSeconds);
            set(connection, IPPROTO_TCP, TCP_KEEPCNT, probes);
            return {std::move(connection), textOf(peer)};
        }
        // What else there is concerns the connection that was to be accepted (accept(2)).
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            throw std::system_error(errno, std::generic_category(), "cannot accept a connection");
        }
    }
    return {support::Descriptor(), {}};
}

}  // namespace services
