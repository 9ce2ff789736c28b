#pragma once

#include "calls/Wire.h"
#include "wire/Client.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// A socket to the server, past the RPC library's clients.
class Connection {
public:
    Connection(Client::Transport transport, unsigned short port);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Sends bytes as they are: a datagram, or part of a stream. False when the server has closed
    /// the connection.
    bool send(std::span<const char> bytes) const;

    /// The next message: a datagram, or a record (RFC 5531) of a stream. Nothing when the server
    /// has closed the connection. Throws std::runtime_error when there is none for long.
    std::optional<std::vector<char>> receive() const;

    /// Drops the datagrams that have arrived.
    void drain() const;

    /// Ends the stream, and waits until the server has closed it too.
    void finish() const;

private:
    /// Exactly so many bytes of a stream, or nothing at its end.
    std::optional<std::vector<char>> receiveBytes(std::size_t count) const;

    Client::Transport transport;
    int descriptor;
};

/// The header of a call of the program (RFC 5531), without credentials.
Units callHeader(std::uint32_t id, std::uint32_t procedure);

/// The bytes as a record of one fragment.
std::vector<char> record(const std::vector<char>& bytes);
