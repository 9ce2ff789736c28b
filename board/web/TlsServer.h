#pragma once

#include "board/web/EventLog.h"

#include <openssl/ssl.h>

#include <cstdint>
#include <memory>
#include <string>

namespace web {

struct TlsFiles {
    std::string certificate;  ///< PEM
    std::string privateKey;   ///< PEM
};

/// Serves an event log to browsers over TLS, a thread for each.
class TlsServer {
public:
    /// Throws std::runtime_error that says what is missing.
    TlsServer(std::uint16_t port, const TlsFiles& files, std::string path, EventLog& log);
    ~TlsServer();
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;

    /// Never returns.
    [[noreturn]] void run();

private:
    struct FreeContext {
        void operator()(SSL_CTX* freed) const { SSL_CTX_free(freed); }
    };

    void serve(int connection) const;

    std::unique_ptr<SSL_CTX, FreeContext> context;
    std::string path;
    EventLog& log;
    int listener;
};

}  // namespace web
