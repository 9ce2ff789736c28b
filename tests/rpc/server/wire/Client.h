#pragma once

#include "calls/Wire.h"

#include <rpc/rpc.h>

/// A client of the RPC library.
class Client {
public:
    enum class Transport { udp, tcp };

    /// Throws std::runtime_error when it cannot be made.
    Client(Transport transport, unsigned short port, unsigned long program = 0x20000009,
           unsigned long version = 1);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Calls a procedure; on success takes a result of so many units.
    clnt_stat call(unsigned int procedure, const Units& argument, std::size_t resultSize);

    /// Of the latest successful call.
    const Units& result() const { return units; }
    /// Of the latest call.
    rpc_err error() const;

private:
    CLIENT* handle;
    Units units{};
};
