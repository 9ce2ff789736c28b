#include "board/process/ChildProcess.h"
#include "board/process/SessionProcess.h"
#include "board/process/waiting.h"
#include "support/matchers.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using process::ChildProcess;
using process::SessionProcess;
using support::Descriptor;

constexpr const char* variable = "TEST_SOCKET";

/// Waits until the descriptor is readable, up to half a minute.
bool awaitReadable(const Descriptor& descriptor) {
    std::vector<pollfd> one{{descriptor.get(), POLLIN, 0}};
    return process::awaitReady(one, process::Clock::now() + std::chrono::seconds(30));
}

/// What can be read up to the end.
std::string textFrom(const Descriptor& descriptor) {
    std::string text;
    char buffer[256];
    ssize_t size = 0;
    while (awaitReadable(descriptor) &&
           (size = ::read(descriptor.get(), buffer, sizeof buffer)) > 0) {
        text.append(buffer, static_cast<std::size_t>(size));
    }
    return text;
}

std::string endOf(ChildProcess& child) {
    return awaitReadable(child.handle()) ? child.awaitEnd() : "no end";
}

/// Lists descriptors 3 to 9; later ones may be the shell's own.
const process::Command listDescriptors{
    "sh", "-c", "for each in 3 4 5 6 7 8 9; do [ -e /proc/$$/fd/$each ] && echo $each; done; true"};

/// A descriptor of this process, not closed on exec, that a child could inherit.
Descriptor inheritable() { return Descriptor(::fcntl(STDIN_FILENO, F_DUPFD, 5)); }

TEST(ChildProcess, HasNoDescriptorsButTheStandardOnes) {
    const Descriptor other = inheritable();
    ASSERT_LT(other.get(), 9);
    ChildProcess child(listDescriptors);
    EXPECT_EQ(textFrom(child.output()), "");
    EXPECT_FALSE(child.messages());
    EXPECT_EQ(endOf(child), "status 0");
}

TEST(ChildProcess, HasASocketWhenItNeedsOne) {
    const Descriptor other = inheritable();
    ASSERT_LT(other.get(), 9);
    ChildProcess child(listDescriptors, variable);
    EXPECT_EQ(textFrom(child.output()), "9\n");
    ChildProcess speaker({"sh", "-c", "echo one >&$TEST_SOCKET; echo two >&$TEST_SOCKET"},
                         variable);
    for (const std::string expected : {"one\n", "two\n"}) {
        ASSERT_TRUE(awaitReadable(speaker.messages()));
        char message[16];
        const ssize_t size = ::recv(speaker.messages().get(), message, sizeof message, 0);
        ASSERT_GT(size, 0);
        EXPECT_EQ(std::string(message, static_cast<std::size_t>(size)), expected);
    }
    EXPECT_EQ(endOf(speaker), "status 0");
}

TEST(ChildProcess, HasTheEnvironmentOfItsParent) {
    std::string expected;
    for (char** each = environ; *each != nullptr; ++each) {
        expected += std::string(*each) + '\n';
    }
    ChildProcess child({"env"});
    EXPECT_EQ(textFrom(child.output()), expected);
    ChildProcess told({"env"}, variable);
    EXPECT_EQ(textFrom(told.output()), expected + "TEST_SOCKET=9\n");
}

TEST(ChildProcess, HasAnEmptyInput) {
    ChildProcess child({"cat"});
    EXPECT_EQ(textFrom(child.output()), "");
    EXPECT_EQ(endOf(child), "status 0");
}

TEST(ChildProcess, TellsItsEnd) {
    ChildProcess child({"sh", "-c", "exit 3"});
    EXPECT_EQ(endOf(child), "status 3");
    ChildProcess sleeping({"sleep", "60"});
    EXPECT_FALSE(sleeping.hasEnded());
    sleeping.signal(SIGTERM);
    EXPECT_EQ(endOf(sleeping), "signal 15");
}

TEST(ChildProcess, CanBeMoved) {
    ChildProcess first({"sleep", "60"});
    ChildProcess second(std::move(first));
    EXPECT_FALSE(second.hasEnded());
    ChildProcess third({"sh", "-c", "echo third; exec sleep 60"});
    third = std::move(second);
    third.signal(SIGTERM);
    EXPECT_EQ(endOf(third), "signal 15");
}

TEST(ChildProcess, NeedsAProgram) { EXPECT_THROW(ChildProcess({}), std::invalid_argument); }

TEST(SessionProcess, HasItsConnectionAndNothingElse) {
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    const Descriptor client(ends[0]);
    Descriptor connection(ends[1]);
    process::Command command = listDescriptors;
    command.back() =
        "read word; echo got $word; env | grep -v -e PWD -e SHLVL -e '^_='; " + command.back();
    SessionProcess session(command, connection);
    connection = Descriptor();
    ASSERT_EQ(::send(client.get(), "word\n", 5, MSG_NOSIGNAL), 5);
    EXPECT_EQ(textFrom(client), std::string("got word\nPATH=") + ::getenv("PATH") + "\n");
    EXPECT_EQ(endOf(session), "status 0");
}

}  // namespace
