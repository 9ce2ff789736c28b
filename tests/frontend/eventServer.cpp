#include "eventServer.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace mngctl::test {

namespace {

template <auto Free>
struct Freeing {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freeing<X509_free>>;
using Context = std::unique_ptr<SSL_CTX, Freeing<SSL_CTX_free>>;
using Tls = std::unique_ptr<SSL, Freeing<SSL_free>>;
using File = std::unique_ptr<std::FILE, Freeing<std::fclose>>;

/// Makes a key and a certificate that it signs itself.
Context makeContext(const std::string& certificateFile) {
    const Key key(EVP_EC_gen("P-256"));
    const Certificate certificate(X509_new());
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    const auto* const board = reinterpret_cast<const unsigned char*>("board");
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, board, -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    const File file(std::fopen(certificateFile.c_str(), "w"));
    if (!file || PEM_write_X509(file.get(), certificate.get()) != 1) {
        throw std::runtime_error("no certificate");
    }
    Context context(SSL_CTX_new(TLS_server_method()));
    SSL_CTX_use_certificate(context.get(), certificate.get());
    SSL_CTX_use_PrivateKey(context.get(), key.get());
    return context;
}

}  // namespace

Port::Port(bool listens) : socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
        (listens && ::listen(socket, 16) != 0)) {
        throw std::runtime_error("no port");
    }
    text = std::to_string(ntohs(address.sin_port));
}

Port::~Port() { ::close(socket); }

EventServer::EventServer(std::string all, bool open) : answer(std::move(all)), stays(open) {
    if (::pipe2(ending, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe");
    }
    thread = std::thread([this, context = makeContext(certificate())] {
        // A client that goes while it is answered is no reason to end.
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        for (;;) {
            pollfd waits[] = {{listener.descriptor(), POLLIN, 0}, {ending[0], POLLIN, 0}};
            if (::poll(waits, 2, -1) < 0 || waits[1].revents != 0) {
                return;
            }
            const int connection = ::accept4(listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC);
            const Tls tls(SSL_new(context.get()));
            SSL_set_fd(tls.get(), connection);
            char request[4096];
            if (SSL_accept(tls.get()) == 1 && SSL_read(tls.get(), request, sizeof request) > 0) {
                SSL_write(tls.get(), answer.data(), static_cast<int>(answer.size()));
                // Until this ends or the client goes.
                pollfd ends[] = {{connection, POLLIN, 0}, {ending[0], POLLIN, 0}};
                if (stays) {
                    ::poll(ends, 2, -1);
                }
            }
            ::close(connection);
        }
    });
}

EventServer::~EventServer() {
    ::close(ending[1]);
    thread.join();
    ::close(ending[0]);
}

std::string EventServer::head() {
    return "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n"
           "retry: 1000\n\n";
}

}  // namespace mngctl::test
