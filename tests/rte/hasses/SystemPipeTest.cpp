// Messages through a pipe of the system's, at the place where the event server has it.

#include "rte/required/include/hasses/HassesComm.h"
#include "support/CapturedOutput.h"
#include "support/matchers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <thread>

namespace {

constexpr const char* directory = "/var/run/hasses";
constexpr const char* path = "/var/run/hasses/SSE_EVENT";

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Waits until a thread of this process is inside open(2).
bool isSeenOpening(pid_t thread) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    const std::string opening = std::to_string(SYS_openat);
    while (std::chrono::steady_clock::now() < deadline) {
        std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/syscall");
        std::string number;
        if (file >> number && number == opening) {
            return true;
        }
        std::this_thread::yield();
    }
    return false;
}

class SystemPipe : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(mkdir(directory, 0755), 0); }
    void TearDown() override { std::filesystem::remove_all(directory); }

    static void makePipe() { ASSERT_EQ(mkfifo(path, 0600), 0); }

    int send(std::string text) { return producer.pipe_send(text.data()); }

    /// What a reader gets of everything until the writer closes.
    static std::string readAll() {
        const int pipe = open(path, O_RDONLY);
        EXPECT_GE(pipe, 0);
        std::string all;
        char bytes[512];
        for (ssize_t count; (count = read(pipe, bytes, sizeof bytes)) > 0;) {
            all.append(bytes, static_cast<std::size_t>(count));
        }
        close(pipe);
        return all;
    }

    HassesComm_Period_base_cl producer;
};

TEST_F(SystemPipe, ThatIsMissingIsAFailure) {
    CapturedOutput output;
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(output.take(),
              "Pipe error: open() - pipename = '/var/run/hasses/SSE_EVENT', "
              "errno = 2 = 'No such file or directory'\n");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SystemPipe, IsWaitedForUntilAReaderOpensIt) {
    makePipe();
    std::promise<pid_t> id;
    std::atomic<bool> returned = false;
    int result = 77;
    std::thread writer([&] {
        id.set_value(static_cast<pid_t>(syscall(SYS_gettid)));
        result = send("hello");
        returned = true;
    });
    EXPECT_TRUE(isSeenOpening(id.get_future().get()));
    EXPECT_FALSE(returned);
    EXPECT_EQ(readAll(), std::string("hello\0", 6));
    writer.join();
    EXPECT_EQ(result, 0);
}

TEST_F(SystemPipe, SeparatesMessagesByNulsAndLeavesNothingOpen) {
    makePipe();
    // With a reader there, nothing is waited for.
    const int reader = open(path, O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const std::ptrdiff_t before = openDescriptors();
    EXPECT_EQ(send("one"), 0);
    EXPECT_EQ(send(""), 0);
    EXPECT_EQ(send("three"), 0);
    EXPECT_EQ(openDescriptors(), before);
    char bytes[100];
    const ssize_t count = read(reader, bytes, sizeof bytes);
    ASSERT_GE(count, 0);
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)),
              std::string("one\0\0three\0", 11));
    close(reader);
}

TEST_F(SystemPipe, TextLongerThanThePipeHoldsArrivesWhole) {
    makePipe();
    const std::string text(200000, 'x');
    int result = 77;
    std::thread writer([&] { result = send(text); });
    EXPECT_EQ(readAll(), text + '\0');
    writer.join();
    EXPECT_EQ(result, 0);
}

TEST_F(SystemPipe, InWhosePlaceADirectoryStandsIsAFailure) {
    std::filesystem::create_directory(path);
    CapturedOutput output;
    EXPECT_EQ(send("hello"), -1);
    EXPECT_EQ(output.take(),
              "Pipe error: open() - pipename = '/var/run/hasses/SSE_EVENT', "
              "errno = 21 = 'Is a directory'\n");
}

}  // namespace
