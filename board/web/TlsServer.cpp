#include "board/web/TlsServer.h"

#include "board/web/eventStream.h"

#include <netinet/in.h>
#include <openssl/err.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace web {

namespace {

/// A browser that does not take or send anything for so long is given up.
constexpr timeval patience{.tv_sec = 20, .tv_usec = 0};
/// A comment now and then finds out that a browser is gone.
constexpr std::chrono::seconds commentInterval{10};
constexpr std::size_t longestRequest = 8192;
constexpr std::size_t mostConnections = 64;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::generic_category().message(errno));
}

std::string tlsReason() {
    char text[256];
    ERR_error_string_n(ERR_get_error(), text, sizeof text);
    return text;
}

/// One TLS connection, closed at the end.
class Connection {
public:
    Connection(SSL_CTX* context, int descriptor) : socket(descriptor), tls(SSL_new(context)) {
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        if (tls != nullptr) {
            SSL_set_fd(tls, socket);
        }
    }
    ~Connection() {
        SSL_free(tls);
        close(socket);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool accept() { return tls != nullptr && SSL_accept(tls) == 1; }

    bool send(const std::string& text) {
        return SSL_write(tls, text.data(), static_cast<int>(text.size())) > 0;
    }

    /// The head of a request; empty when none comes.
    std::string readHead() {
        std::string head;
        char buffer[1024];
        while (head.size() < longestRequest) {
            const int count = SSL_read(tls, buffer, sizeof buffer);
            if (count <= 0) {
                return {};
            }
            head.append(buffer, static_cast<std::size_t>(count));
            if (head.find("\r\n\r\n") != std::string::npos) {
                return head;
            }
        }
        return {};
    }

private:
    int socket;
    SSL* tls;
};

/// Shown to who opens the server in a browser, as to accept its certificate.
std::string notFound(const std::string& eventPath) {
    const std::string text = "This is the board's event server. Its events are at " + eventPath +
                             ".\nYou can go back to the page that follows them.\n";
    return "HTTP/1.1 404 Not Found\r\nContent-Type: text/plain\r\nContent-Length: " +
           std::to_string(text.size()) + "\r\nConnection: close\r\n\r\n" + text;
}

/// The page may come from the web server's port, another origin than this one.
constexpr const char* streamHead =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-cache\r\n"
    "Access-Control-Allow-Origin: *\r\nConnection: close\r\n\r\nretry: 1000\n\n";

int listenOn(std::uint16_t port) {
    const int listener = socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0) {
        fail("cannot open a socket");
    }
    const int on = 1;
    const int off = 0;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    setsockopt(listener, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, SOMAXCONN) != 0) {
        const int error = errno;
        close(listener);
        errno = error;
        fail("cannot listen on port " + std::to_string(port));
    }
    return listener;
}

}  // namespace

TlsServer::TlsServer(std::uint16_t port, const TlsFiles& files, std::string eventPath,
                     EventLog& eventLog)
    : context(SSL_CTX_new(TLS_server_method())), path(std::move(eventPath)), log(eventLog) {
    if (!context ||
        SSL_CTX_use_certificate_chain_file(context.get(), files.certificate.c_str()) != 1) {
        throw std::runtime_error("cannot use the certificate " + files.certificate + ": " +
                                 tlsReason());
    }
    if (SSL_CTX_use_PrivateKey_file(context.get(), files.privateKey.c_str(), SSL_FILETYPE_PEM) !=
        1) {
        throw std::runtime_error("cannot use the private key " + files.privateKey + ": " +
                                 tlsReason());
    }
    SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
    listener = listenOn(port);
}

TlsServer::~TlsServer() { close(listener); }

void TlsServer::run() {
    static std::atomic<std::size_t> connections{0};
    for (;;) {
        const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            continue;
        }
        if (connections >= mostConnections) {
            close(connection);
            continue;
        }
        ++connections;
        std::thread([this, connection] {
            serve(connection);
            --connections;
        }).detach();
    }
}

void TlsServer::serve(int descriptor) const {
    Connection connection(context.get(), descriptor);
    if (!connection.accept()) {
        return;
    }
    const Request request = parseRequest(connection.readHead());
    if (request.method != "GET" || request.path != path) {
        connection.send(notFound(path));
        return;
    }
    bool isThere = connection.send(streamHead);
    std::uint64_t last = request.lastEventId;
    while (isThere) {
        const std::vector<Event> news = log.after(last, commentInterval);
        if (news.empty()) {
            isThere = connection.send(": still here\n\n");
        }
        for (const Event& event : news) {
            isThere = isThere && connection.send(toEventStream(event));
            last = event.id;
        }
    }
}

}  // namespace web
