#pragma once

#include "calls/ProcedureCall.h"
#include "support/matchers.h"
#include "wire/Client.h"
#include "wire/Server.h"

#include <string>

/// Tests over sockets of the loopback address. At the end of each the server stops orderly.
class ServedTest : public testing::Test {
protected:
    void TearDown() override;

    unsigned short port(Client::Transport transport) const {
        return transport == Client::Transport::udp ? server.udpPort() : server.tcpPort();
    }

    /// Makes a call; expects it to be answered as the exported function does, and that to have been
    /// called just so.
    void expectAnswer(Client& client, const ProcedureCall& call, int status = 0);

    /// What the server prints when it starts and stops.
    std::string printedAtStart() const;
    std::string printedAtStop() const;

    Server server;
};
