#include "mngctl/events/eventChannel.h"

#include "mngctl/outcome.h"
#include "mngctl/rpc/rpcHandle.h"
#include "mngctl/wire/values.h"

#include <curl/curl.h>
#include <fmt/format.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <memory>
#include <system_error>
#include <utility>

namespace mngctl {

namespace {

constexpr const char* eventPath = "/sse-event";
constexpr const char* eventStreamType = "text/event-stream";
/// The server sends a comment every ten seconds where it has nothing else to say.
constexpr long longestSilence = 30;  // seconds

/// While it lives, Ctrl-C ends nothing but makes a descriptor readable.
class Interrupt {
public:
    /// Throws std::system_error.
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    int descriptor() const { return signals; }

    /// Whether Ctrl-C came since the last look.
    bool take();

private:
    sigset_t before{};
    int signals = -1;
};

Interrupt::Interrupt() {
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    signals = ::signalfd(-1, &interrupt, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals < 0) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    ::pthread_sigmask(SIG_BLOCK, &interrupt, &before);
}

Interrupt::~Interrupt() {
    take();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::close(signals);
}

bool Interrupt::take() {
    signalfd_siginfo signal{};
    bool came = false;
    while (::read(signals, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) {
        came = true;
    }
    return came;
}

struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct FreeEasy {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct FreeUrl {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Multi = std::unique_ptr<CURLM, FreeMulti>;
using Easy = std::unique_ptr<CURL, FreeEasy>;
using Url = std::unique_ptr<CURLU, FreeUrl>;

/// libcurl's state for the whole process.
void initialise() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (initialised != CURLE_OK) {
        throw std::runtime_error("libcurl cannot be initialised");
    }
}

template <class Made>
Made made(Made object) {
    if (!object) {
        throw std::bad_alloc();
    }
    return object;
}

std::string placeOf(const EventServer& server) {
    return fmt::format("{} port {}", printable(server.host), server.port);
}

Easy connectionTo(const char* scheme, const std::string& host, std::uint16_t port,
                  std::chrono::milliseconds timeout) {
    initialise();
    const Url url = made(Url(curl_url()));
    curl_url_set(url.get(), CURLUPART_SCHEME, scheme, 0);
    curl_url_set(url.get(), CURLUPART_PATH, eventPath, 0);
    curl_url_set(url.get(), CURLUPART_PORT, std::to_string(port).c_str(), 0);
    if (curl_url_set(url.get(), CURLUPART_HOST, host.c_str(), 0) != CURLUE_OK) {
        throw UsageError(fmt::format("--host {}: this is no host name", printable(host)));
    }
    char* text = nullptr;
    if (curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<char, decltype(&curl_free)> owned(text, &curl_free);
    Easy easy = made(Easy(curl_easy_init()));
    curl_easy_setopt(easy.get(), CURLOPT_URL, text);
    curl_easy_setopt(easy.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(easy.get(), CURLOPT_IPRESOLVE, static_cast<long>(CURL_IPRESOLVE_V4));
    curl_easy_setopt(easy.get(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout.count()));
    return easy;
}

class Following {
public:
    Following(const EventServer& followed, const ChannelObserver& told)
        : server(followed),
          observer(told),
          easy(connectionTo("https", followed.host, followed.port, followed.timeout)),
          multi(made(Multi(curl_multi_init()))) {
        curl_easy_setopt(easy.get(), CURLOPT_CAINFO, server.certificate.c_str());
        curl_easy_setopt(easy.get(), CURLOPT_CAPATH, nullptr);
        // The certificate itself is known; the board is reached under names that it does not bear.
        curl_easy_setopt(easy.get(), CURLOPT_SSL_VERIFYHOST, 0L);
        curl_easy_setopt(easy.get(), CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(easy.get(), CURLOPT_LOW_SPEED_TIME, longestSilence);
        curl_easy_setopt(easy.get(), CURLOPT_ERRORBUFFER, reason);
        curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, &Following::receive);
        curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, this);
        curl_multi_add_handle(multi.get(), easy.get());
    }

    ~Following() { curl_multi_remove_handle(multi.get(), easy.get()); }
    Following(const Following&) = delete;
    Following& operator=(const Following&) = delete;

    void run() {
        Interrupt interrupt;
        for (;;) {
            const bool isRunning = perform();
            if (!tell()) {
                return;
            }
            if (!isRunning) {
                fail();
            }
            curl_waitfd wait{interrupt.descriptor(), CURL_WAIT_POLLIN, 0};
            curl_multi_poll(multi.get(), &wait, 1, 1000, nullptr);
            if (interrupt.take()) {
                return;
            }
        }
    }

private:
    static std::size_t receive(const char* bytes, std::size_t /*one*/, std::size_t count,
                               void* self) {
        auto& following = *static_cast<Following*>(self);
        if (!following.isEventStream()) {
            return 0;
        }
        following.isOpen = true;
        const auto events = following.parser.take({bytes, count});
        following.news.insert(following.news.end(), events.begin(), events.end());
        return count;
    }

    bool isEventStream() const {
        long status = 0;
        const char* type = nullptr;
        curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
        curl_easy_getinfo(easy.get(), CURLINFO_CONTENT_TYPE, &type);
        return status == 200 && type != nullptr &&
               std::string_view(type).starts_with(eventStreamType);
    }

    bool perform() {
        const PipeSignalGuard guard;
        int running = 0;
        curl_multi_perform(multi.get(), &running);
        return running > 0;
    }

    /// Hands on what came. Answers whether to go on.
    bool tell() {
        if (isOpen && !isTold) {
            isTold = true;
            observer.onOpen();
        }
        for (const Event& event : std::exchange(news, {})) {
            if (!observer.onEvent(event)) {
                return false;
            }
        }
        return true;
    }

    [[noreturn]] void fail() {
        int left = 0;
        const CURLMsg* const message = curl_multi_info_read(multi.get(), &left);
        const CURLcode code = message == nullptr ? CURLE_OK : message->data.result;
        const std::string place = placeOf(server);
        const auto why = [&] {
            return std::string(*reason != '\0' ? printable(reason) : curl_easy_strerror(code));
        };
        if (code == CURLE_COULDNT_RESOLVE_HOST) {
            throw UsageError(fmt::format("--host {}: no IPv4 address is known for this name",
                                         printable(server.host)));
        }
        if (code == CURLE_SSL_CACERT_BADFILE) {
            throw UsageError(fmt::format("--certificate {}: the file holds no certificate",
                                         printable(server.certificate)));
        }
        if (isOpen && code == CURLE_OPERATION_TIMEDOUT) {
            throw ChannelFailure(fmt::format("the event channel is lost: {} sent nothing for {} s",
                                             place, longestSilence));
        }
        if (isOpen) {
            throw ChannelFailure(
                fmt::format("the event channel is lost: {} closed the connection", place));
        }
        if (code == CURLE_COULDNT_CONNECT) {
            throw ChannelFailure(fmt::format("no event server listens at {}", place));
        }
        if (code == CURLE_OPERATION_TIMEDOUT) {
            throw ChannelFailure(fmt::format("the event server at {} does not answer", place));
        }
        if (code == CURLE_PEER_FAILED_VERIFICATION) {
            throw NoAnswer(
                fmt::format("the event server at {} is not the one whose certificate is in {} ({})",
                            place, printable(server.certificate), why()));
        }
        if (code == CURLE_OK || code == CURLE_WRITE_ERROR) {
            throw NoAnswer(fmt::format("what answers at {} is no event server", place));
        }
        throw NoAnswer(fmt::format("the event server at {} cannot be followed: {}", place, why()));
    }

    const EventServer& server;
    const ChannelObserver& observer;
    Easy easy;
    Multi multi;
    EventParser parser;
    std::vector<Event> news;
    bool isOpen = false;
    bool isTold = false;
    char reason[CURL_ERROR_SIZE] = {};
};

void checkCertificate(const EventServer& server) {
    if (::access(server.certificate.c_str(), R_OK) != 0) {
        throw UsageError(fmt::format(
            "the event server's certificate {} cannot be read: {}; --certificate names a copy",
            printable(server.certificate), std::generic_category().message(errno)));
    }
}

}  // namespace

void followEvents(const EventServer& server, const ChannelObserver& observer) {
    checkCertificate(server);
    Following(server, observer).run();
}

bool answersAt(const std::string& host, std::uint16_t port, std::chrono::milliseconds timeout) {
    const PipeSignalGuard guard;
    // A plain connection, over which nothing is sent.
    const Easy easy = connectionTo("http", host, port, timeout);
    curl_easy_setopt(easy.get(), CURLOPT_CONNECT_ONLY, 1L);
    return curl_easy_perform(easy.get()) == CURLE_OK;
}

}  // namespace mngctl
