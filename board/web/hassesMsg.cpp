// Stands in for the message feeder of a controller's web front end: hands the messages of the two
// event queues (svipc(7)) on to the event server's pipe. One runs at a time: another that is
// started beside it ends at once. It is paused and resumed by SIGSTOP and SIGCONT.

#include "board/web/daemon.h"

#include <fcntl.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <thread>

namespace {

constexpr const char* lockFile = "/var/run/hasses/hassesMsg.lock";
constexpr const char* pipePath = "/var/run/hasses/SSE_EVENT";

struct Queue {
    key_t key;
    long type;
};
constexpr Queue networkQueue{1708033, 1001};
constexpr Queue periodQueue{1708034, 1002};

struct Message {
    long type;
    char text[2000];
};

/// Seconds until something that was not there is tried again.
constexpr unsigned int pause = 1;

/// Waits until the event server takes the message: it may be restarted meanwhile.
void handOn(const std::string& text) {
    for (;;) {
        const int pipe = open(pipePath, O_WRONLY | O_CLOEXEC);
        if (pipe >= 0) {
            const ssize_t written = write(pipe, text.c_str(), text.size() + 1);
            close(pipe);
            if (written == static_cast<ssize_t>(text.size() + 1)) {
                return;
            }
        }
        sleep(pause);
    }
}

void feed(Queue queue) {
    for (;;) {
        const int id = msgget(queue.key, IPC_CREAT | 0666);
        Message message{};
        if (id < 0 || msgrcv(id, &message, sizeof message.text, queue.type, 0) < 0) {
            if (errno != EINTR) {
                sleep(pause);
            }
            continue;
        }
        handOn({message.text, strnlen(message.text, sizeof message.text)});
    }
}

}  // namespace

int main() {
    std::signal(SIGPIPE, SIG_IGN);
    web::closeInheritedDescriptors();
    try {
        if (!web::isOnlyOne(lockFile)) {
            return 0;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hassesMsg: %s\n", error.what());
        return 1;
    }
    std::thread(feed, periodQueue).detach();
    feed(networkQueue);
}
