#include "wire/Connection.h"

#include "support/loopback.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace {

constexpr int patienceMilliseconds = 60'000;

/// In the mark of a record's last fragment, beside its length.
constexpr std::uint32_t lastFragment = 0x80000000;

}  // namespace

Connection::Connection(Client::Transport transportKind, unsigned short port)
    : transport(transportKind),
      descriptor(
          socket(AF_INET, transport == Client::Transport::udp ? SOCK_DGRAM : SOCK_STREAM, 0)) {
    sockaddr_in address = loopbackAddress(port);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        close(descriptor);
        throw std::system_error(error, std::generic_category(), "connect");
    }
}

Connection::~Connection() { close(descriptor); }

bool Connection::send(std::span<const char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(sent));
    }
    return true;
}

std::optional<std::vector<char>> Connection::receiveBytes(std::size_t count) const {
    std::vector<char> bytes(count);
    std::size_t received = 0;
    while (received < count) {
        pollfd event{descriptor, POLLIN, 0};
        if (poll(&event, 1, patienceMilliseconds) != 1) {
            throw std::runtime_error("the server does not answer");
        }
        const ssize_t size = recv(descriptor, bytes.data() + received, count - received, 0);
        if (size <= 0) {
            return std::nullopt;
        }
        if (transport == Client::Transport::udp) {
            bytes.resize(static_cast<std::size_t>(size));
            return bytes;
        }
        received += static_cast<std::size_t>(size);
    }
    return bytes;
}

std::optional<std::vector<char>> Connection::receive() const {
    if (transport == Client::Transport::udp) {
        return receiveBytes(65536);
    }
    std::vector<char> whole;
    for (;;) {
        const auto mark = receiveBytes(4);
        if (!mark) {
            return std::nullopt;
        }
        const std::uint32_t length = toUnits(*mark)[0];
        const auto fragment = receiveBytes(length & ~lastFragment);
        if (!fragment) {
            return std::nullopt;
        }
        whole.insert(whole.end(), fragment->begin(), fragment->end());
        if ((length & lastFragment) != 0) {
            return whole;
        }
    }
}

void Connection::drain() const {
    char buffer[16384];
    while (recv(descriptor, buffer, sizeof buffer, MSG_DONTWAIT) >= 0) {
    }
}

void Connection::finish() const {
    shutdown(descriptor, SHUT_WR);
    while (receiveBytes(1)) {
    }
}

Units callHeader(std::uint32_t id, std::uint32_t procedure) {
    return {id, CALL, RPC_MSG_VERSION, 0x20000009, 1, procedure, AUTH_NONE, 0, AUTH_NONE, 0};
}

std::vector<char> record(const std::vector<char>& bytes) {
    std::vector<char> marked = toBytes({lastFragment | static_cast<std::uint32_t>(bytes.size())});
    marked.insert(marked.end(), bytes.begin(), bytes.end());
    return marked;
}
