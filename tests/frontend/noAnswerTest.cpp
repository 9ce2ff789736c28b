#include "mngctlRun.h"

#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

namespace mngctl::test {
namespace {

const char* name(Protocol protocol) { return protocol == Protocol::Tcp ? "--tcp" : "--udp"; }

class NoAnswerOver : public testing::TestWithParam<Protocol> {};

INSTANTIATE_TEST_SUITE_P(Over, NoAnswerOver, bothProtocols, nameOfProtocol);

TEST_P(NoAnswerOver, APortWhereNothingListens) {
    CannedBoard board;
    const std::string port = board.port(GetParam());
    board.end();
    EXPECT_EQ(board.run("dns show", GetParam()),
              noAnswer(fmt::format("nothing listens at 127.0.0.1 port {}: check the port given for "
                                   "the network program, or leave it out to ask the port mapper",
                                   port)));
    EXPECT_EQ(board.run("board status", GetParam()),
              noAnswer(fmt::format("nothing listens at 127.0.0.1 port {}: check the port given for "
                                   "the control program, or leave it out to ask the port mapper",
                                   port)));
}

TEST_P(NoAnswerOver, AServerThatStaysSilent) {
    const CannedBoard board({"--silent"});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(
        run({name(GetParam()), "--port", board.port(GetParam()), "--timeout", "0.2", "dns", "set",
             "192.0.2.1"}),
        noAnswer("the board did not answer within 0.2 s: it may be busy and still do what was "
                 "asked; look before you repeat, and allow more time with --timeout"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(190));
}

TEST_P(NoAnswerOver, AnotherProgram) {
    const CannedBoard board({"--lone"});
    EXPECT_EQ(board.run("rpc null", GetParam()),
              noAnswer(fmt::format("what answers at 127.0.0.1 port {} is not the network program "
                                   "(0x20000009 version 1): check the port, or leave it out to ask "
                                   "the port mapper",
                                   board.port(GetParam()))));
}

/// A socket of this process on the loopback address.
class LoopbackSocket {
public:
    LoopbackSocket()
        : descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    }
    ~LoopbackSocket() { ::close(descriptor); }
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    /// Listens with the shortest queue there is; answers the port.
    std::uint16_t listen() {
        socklen_t length = sizeof address;
        auto* const name = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(descriptor, name, length), 0);
        EXPECT_EQ(::listen(descriptor, 0), 0);
        EXPECT_EQ(::getsockname(descriptor, name, &length), 0);
        return ntohs(address.sin_port);
    }

    void beginToConnect(std::uint16_t port) {
        address.sin_port = htons(port);
        const int begun =
            ::connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address);
        EXPECT_TRUE(begun == 0 || errno == EINPROGRESS);
    }

private:
    int descriptor;
    sockaddr_in address{};
};

TEST(NoAnswerOverTcp, AServerThatTakesNoConnection) {
    LoopbackSocket server;
    const std::uint16_t port = server.listen();
    LoopbackSocket waiting[4];  // these fill the queue
    for (LoopbackSocket& client : waiting) {
        client.beginToConnect(port);
    }
    EXPECT_EQ(run({"--port", std::to_string(port), "--timeout", "0.2", "rpc", "null"}),
              noAnswer(fmt::format("no connection to 127.0.0.1 port {} within 0.2 s: check --host "
                                   "and the way to it, or allow more time with --timeout",
                                   port)));
}

TEST(NoAnswerOverTcp, AServerThatNeverTakesALongRequest) {
    // Sending is what does not come to an end.
    const std::vector<char> text(32'000'000, 'x');  // more than all buffers on the way hold
    const CannedBoard board({"--silent"});
    const Outcome outcome = run({"--port", board.port(), "--timeout", "0.2", "rpc",
                                 "set_sntp_timezone", "0", std::string(text.begin(), text.end())});
    EXPECT_EQ(outcome.exit, Exit::NoAnswer);
    EXPECT_EQ(outcome.err,
              "mngctl: the connection to the board broke before the answer came: whether the "
              "request was carried out is not known; look before you repeat\n");
}

TEST(NoAnswerOverTcp, ReadingBackAfterAChange) {
    // The change itself is done, so the command is.
    const CannedBoard board({"--die-after", "set_dns_servers"});
    const Outcome outcome = board.run("dns set 192.0.2.1");
    EXPECT_EQ(outcome.exit, Exit::Done);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err,
                testing::StartsWith("mngctl: the change is made, but reading it back failed: "));
}

TEST(NoAnswerOverTcp, ASecondChangeTellsOfTheFirst) {
    const CannedBoard board({"--die-after", "set_dns_servers"});
    const Outcome outcome = board.run("dns set 192.0.2.1 2001:db8::1");
    EXPECT_EQ(outcome.exit, Exit::NoAnswer);
    EXPECT_THAT(outcome.err, testing::EndsWith("; done before that: set the IPv4 servers\n"));
}

}  // namespace
}  // namespace mngctl::test
