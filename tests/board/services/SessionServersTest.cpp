#include "board/services/SessionServers.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

using services::ServerConfiguration;
using services::SessionServers;

constexpr std::uint16_t telnetPort = 23;
constexpr std::uint16_t sshPort = 22;
constexpr std::uint16_t ftpPort = 21;
constexpr auto patience = std::chrono::seconds(20);

/// Collects log lines and waits for one.
class Lines {
public:
    void add(int level, const std::string& text) {
        const std::lock_guard lock(mutex);
        lines.push_back(fmt::format("{} {}", level, text));
        changed.notify_all();
    }

    /// True once there are so many lines with the text in them.
    bool await(const std::string& text, std::size_t count = 1) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, [&] { return number(text) >= count; });
    }

    std::size_t count(const std::string& text) {
        const std::lock_guard lock(mutex);
        return number(text);
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> lines;

    std::size_t number(const std::string& text) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            lines, [&](const auto& line) { return line.find(text) != std::string::npos; }));
    }
};

/// A client on the loopback interface.
class Client {
public:
    explicit Client(std::uint16_t port, int family = AF_INET)
        : socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in ipv4 = loopbackAddress(port);
        sockaddr_in6 ipv6{};
        ipv6.sin6_family = AF_INET6;
        ipv6.sin6_port = htons(port);
        ipv6.sin6_addr = in6addr_loopback;
        const auto* const address = family == AF_INET ? reinterpret_cast<const sockaddr*>(&ipv4)
                                                      : reinterpret_cast<const sockaddr*>(&ipv6);
        const socklen_t size = family == AF_INET ? sizeof ipv4 : sizeof ipv6;
        error = ::connect(socket.get(), address, size) == 0 ? 0 : errno;
    }

    int connectError() const { return error; }

    /// Sends a line and returns what comes back up to a line's end; empty at the end.
    std::string ask(const std::string& line) {
        EXPECT_EQ(::send(socket.get(), line.data(), line.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(line.size()));
        return readLine();
    }

    std::string readLine() {
        std::string line;
        while (line.empty() || line.back() != '\n') {
            pollfd one{socket.get(), POLLIN, 0};
            if (::poll(&one, 1, static_cast<int>(std::chrono::milliseconds(patience).count())) !=
                1) {
                return "nothing has come";
            }
            char c = 0;
            if (::read(socket.get(), &c, 1) != 1) {
                break;
            }
            line += c;
        }
        return line;
    }

    void close() { socket = support::Descriptor(); }

private:
    support::Descriptor socket;
    int error = 0;
};

int connectError(std::uint16_t port) { return Client(port).connectError(); }

class SessionServersTest : public testing::Test {
protected:
    /// A server that sends back what it gets.
    ServerConfiguration configuration() {
        return {.interface = "lo",
                .telnet = {"cat"},
                .ssh = {"cat"},
                .ftp = {"cat"},
                .log = [this](int level, const std::string& text) { lines.add(level, text); }};
    }

    void start() { start(configuration()); }
    void start(const ServerConfiguration& given) {
        servers = std::make_unique<SessionServers>(given);
    }

    void telnet(int enabled, unsigned int sessions = 5, unsigned int minutes = 0) {
        servers->applyTelnet({enabled, sessions, minutes});
    }
    void ssh(int enabled, unsigned int port = sshPort) { servers->applySsh({enabled, port}); }
    void ftp(int state) { servers->applyFtp({state}); }

    template <class Apply>
    static std::string failureOf(Apply apply) {
        try {
            apply();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    }

    TemporaryDirectory directory;
    Lines lines;
    std::unique_ptr<SessionServers> servers;  // ends before the lines do
};

TEST_F(SessionServersTest, AreOffUntilTheyAreSwitchedOn) {
    start();
    for (const std::uint16_t port : {telnetPort, sshPort, ftpPort}) {
        EXPECT_EQ(connectError(port), ECONNREFUSED);
    }
    telnet(0);
    EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
}

TEST_F(SessionServersTest, ServeAConnectionEach) {
    start();
    telnet(1);
    ssh(1);
    ftp(1);
    for (const std::uint16_t port : {telnetPort, sshPort, ftpPort}) {
        Client first(port);
        Client second(port, AF_INET6);
        EXPECT_EQ(first.ask("one\n"), "one\n");
        EXPECT_EQ(second.ask("two\n"), "two\n");
        EXPECT_EQ(first.ask("three\n"), "three\n");
    }
    EXPECT_TRUE(lines.await("6 telnet session from 127.0.0.1, 1 of 5"));
    EXPECT_TRUE(lines.await("6 telnet session from ::1, 2 of 5"));
    EXPECT_TRUE(lines.await("6 FTP session from ::1, 2 of 8"));
    EXPECT_TRUE(lines.await("has ended with status 0", 6));
}

TEST_F(SessionServersTest, RefuseAtOnceWhenSwitchedOffButKeepSessions) {
    start();
    for (int round = 0; round < 20; ++round) {
        telnet(1);
        Client client(telnetPort);
        EXPECT_EQ(client.ask("before\n"), "before\n");
        telnet(0);
        EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
        EXPECT_EQ(client.ask("after\n"), "after\n");
        client.close();
        EXPECT_TRUE(lines.await("has ended", static_cast<std::size_t>(round) + 1));
    }
}

TEST_F(SessionServersTest, ShareOneLimitBetweenTelnetAndSsh) {
    start();
    telnet(1, 2);
    ssh(1);
    Client first(telnetPort);
    EXPECT_EQ(first.ask("one\n"), "one\n");
    Client second(sshPort);
    EXPECT_EQ(second.ask("two\n"), "two\n");
    EXPECT_EQ(Client(sshPort).readLine(), "All 2 sessions are in use.\r\n");
    EXPECT_EQ(Client(telnetPort).readLine(), "All 2 sessions are in use.\r\n");
    first.close();
    ASSERT_TRUE(lines.await("telnet session from 127.0.0.1 has ended with status 0"));
    Client third(sshPort);
    EXPECT_EQ(third.ask("three\n"), "three\n");
    EXPECT_EQ(Client(telnetPort).readLine(), "All 2 sessions are in use.\r\n");
    // One line for the two that came before a session ended, and one after.
    EXPECT_TRUE(lines.await("is refused: all 2 sessions are in use", 2));
    EXPECT_EQ(lines.count("is refused"), 2U);
}

TEST_F(SessionServersTest, KeepSessionsAboveALimitThatIsLowered) {
    start();
    telnet(1, 3);
    Client first(telnetPort);
    Client second(telnetPort);
    EXPECT_EQ(first.ask("one\n"), "one\n");
    EXPECT_EQ(second.ask("two\n"), "two\n");
    telnet(1, 1);
    EXPECT_EQ(first.ask("one\n"), "one\n");
    EXPECT_EQ(second.ask("two\n"), "two\n");
    first.close();
    ASSERT_TRUE(lines.await("has ended"));
    EXPECT_EQ(Client(telnetPort).readLine(), "All 1 sessions are in use.\r\n");
    telnet(1, 2);
    EXPECT_EQ(Client(telnetPort).ask("three\n"), "three\n");
}

TEST_F(SessionServersTest, LimitTransfersApartFromTerminals) {
    start();
    telnet(1, 1);
    ftp(1);
    Client terminal(telnetPort);
    EXPECT_EQ(terminal.ask("one\n"), "one\n");
    std::vector<std::unique_ptr<Client>> transfers;
    for (unsigned int each = 0; each < SessionServers::mostTransfers; ++each) {
        transfers.push_back(std::make_unique<Client>(ftpPort));
        EXPECT_EQ(transfers.back()->ask("one\n"), "one\n");
    }
    EXPECT_EQ(Client(ftpPort).readLine(), "421 All 8 sessions are in use.\r\n");
}

TEST_F(SessionServersTest, CloseIdleTelnetSessions) {
    ServerConfiguration given = configuration();
    given.minute = std::chrono::milliseconds(300);
    start(given);
    telnet(1, 5, 0);
    ssh(1);
    Client overSsh(sshPort);
    EXPECT_EQ(overSsh.ask("one\n"), "one\n");
    Client idle(telnetPort);
    EXPECT_EQ(idle.ask("one\n"), "one\n");
    telnet(1, 5, 1);
    EXPECT_EQ(idle.readLine(), "");
    EXPECT_TRUE(lines.await("5 telnet session from 127.0.0.1 was idle and is closed"));
    EXPECT_TRUE(lines.await("telnet session from 127.0.0.1 has ended"));
    EXPECT_EQ(overSsh.ask("two\n"), "two\n");
}

TEST_F(SessionServersTest, EndServersByForceThatIgnoreTheirClientsEnd) {
    ServerConfiguration given = configuration();
    given.minute = std::chrono::milliseconds(50);
    given.telnet = {"sleep", "1000"};
    start(given);
    telnet(1, 5, 1);
    Client client(telnetPort);
    EXPECT_TRUE(lines.await("was idle and is closed"));
    EXPECT_TRUE(lines.await("telnet session from 127.0.0.1 has ended with signal 9"));
}

TEST_F(SessionServersTest, FollowThePort) {
    start();
    ssh(1);
    ssh(1, 2222);
    EXPECT_EQ(connectError(sshPort), ECONNREFUSED);
    EXPECT_EQ(Client(2222).ask("one\n"), "one\n");
}

TEST_F(SessionServersTest, SayWhyAPortCannotBeHadAndKeepTheOneBefore) {
    start();
    telnet(1);
    ssh(1, 2222);
    EXPECT_EQ(failureOf([&] { ssh(1, telnetPort); }),
              "cannot listen at TCP port 23 of lo: Address already in use");
    EXPECT_EQ(Client(2222).ask("one\n"), "one\n");
}

TEST_F(SessionServersTest, SayWhichProgramIsMissing) {
    const std::string file = directory.path() / "server";
    ServerConfiguration given = configuration();
    given.telnet = {file};
    given.ssh = {"no-such-program"};
    given.ftp = {directory.path()};
    start(given);
    EXPECT_EQ(failureOf([&] { telnet(1); }), "cannot run " + file + ": No such file or directory");
    EXPECT_EQ(failureOf([&] { ssh(1); }), "cannot run no-such-program: No such file or directory");
    EXPECT_EQ(failureOf([&] { ftp(1); }),
              "cannot run " + directory.path().string() + ": Permission denied");
    EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
    telnet(0);
    writeFile(file, "#!/bin/sh\nexec cat\n");
    EXPECT_EQ(failureOf([&] { telnet(1); }), "cannot run " + file + ": Permission denied");
    ASSERT_EQ(::chmod(file.c_str(), 0755), 0);
    telnet(1);
    EXPECT_EQ(Client(telnetPort).ask("one\n"), "one\n");
}

TEST_F(SessionServersTest, ReportAServerThatCannotRunAfterAll) {
    const std::string file = directory.path() / "server";
    writeFile(file, "#!/no/such/interpreter\n");
    ASSERT_EQ(::chmod(file.c_str(), 0755), 0);
    ServerConfiguration given = configuration();
    given.telnet = {file};
    start(given);
    telnet(1);
    EXPECT_EQ(Client(telnetPort).readLine(), "");
    EXPECT_TRUE(lines.await("telnet session from 127.0.0.1 has ended with status 127"));
}

TEST_F(SessionServersTest, WithoutACommandRunNothing) {
    ServerConfiguration given = configuration();
    given.telnet = {};
    start(given);
    telnet(1);
    EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
}

TEST_F(SessionServersTest, ServeTheirInterfaceOnlyAndWaitForIt) {
    ServerConfiguration given = configuration();
    given.interface = "late0";
    start(given);
    EXPECT_EQ(failureOf([&] { telnet(1); }), "there is no interface late0");
    const auto listening = [] { return shell("ss -Hltn 'sport = :23'"); };
    EXPECT_EQ(listening(), "");
    shell("ip link add late0 type veth peer name lan0 netns lan");
    EXPECT_TRUE(lines.await("5 telnet is served on late0 now"));
    EXPECT_THAT(listening(), HasSubstr("0.0.0.0%late0:23"));
    EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
    // Another interface of the same name.
    shell("ip link del late0");
    shell("ip link add late0 type veth peer name lan0 netns lan");
    EXPECT_TRUE(lines.await("5 telnet is served on late0 now", 2));
    EXPECT_THAT(listening(), HasSubstr("0.0.0.0%late0:23"));
    telnet(0);
    EXPECT_EQ(listening(), "");
    shell("ip link del late0");
}

TEST_F(SessionServersTest, EndTheirSessionsInTheEnd) {
    start();
    telnet(1);
    Client client(telnetPort);
    EXPECT_EQ(client.ask("one\n"), "one\n");
    servers.reset();
    EXPECT_EQ(client.readLine(), "");
    EXPECT_EQ(connectError(telnetPort), ECONNREFUSED);
}

}  // namespace
