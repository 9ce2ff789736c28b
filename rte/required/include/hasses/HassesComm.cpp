#include "rte/required/include/hasses/HassesComm.h"

#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char* sourcePath = "rte/required/include/hasses/HassesComm.cpp";
/// Marks the trace of a sent message, whatever line it is written on.
constexpr int sendTraceLine = 96;

constexpr int queueFlags = IPC_CREAT | 0666;
constexpr msglen_t queueBytes = 10000000;

constexpr const char* eventPipe = "/var/run/hasses/SSE_EVENT";

/// The queue of the period producers.
constexpr int periodKey = 1708034;
constexpr int periodMessageType = 1002;

/// What one tick counts.
constexpr unsigned int tick = 100;

// Printout flags.
constexpr int traceSends = 1;
constexpr int tracePipeWrites = 4;
constexpr int queueFailures = 8;
constexpr int tracePeriodSends = 8;

/// A message as it is queued: its text area is sent whole, whatever the length of the text.
struct Message {
    long type;
    char text[2000];
};

}  // namespace

HassesComm_Msgq_cl::HassesComm_Msgq_cl()
    : printoutFlags(0), initialised(0), queueId(-1), key(0), messageType(0) {}

void HassesComm_Msgq_cl::msgq_setParams(int newKey, int type) {
    key = newKey;
    messageType = type;
}

int HassesComm_Msgq_cl::msgq_create() {
    queueId = msgget(key, queueFlags);
    if (queueId < 0) {
        return -1;
    }
    const bool isTold = (printoutFlags & queueFailures) != 0;
    msqid_ds status{};
    if (msgctl(queueId, IPC_STAT, &status) < 0) {
        if (isTold) {
            std::printf("  msgctl( IPC_STAT ) - res = %d, errno = %d\n", -1, errno);
        }
        return 1;
    }
    status.msg_qbytes = queueBytes;
    const int result = msgctl(queueId, IPC_SET, &status);
    if (result == -1) {
        if (isTold) {
            std::printf("  msgctl( IPC_SET ) - res = %d, errno = %d\n", result, errno);
        }
        return 1;
    }
    return 0;
}

int HassesComm_Msgq_cl::msgq_init() {
    if (initialised == 0 && msgq_create() == 0) {
        initialised = 1;
    }
    return 0;
}

int HassesComm_Msgq_cl::msgq_send(char* text) {
    if (text == nullptr) {
        return -1;
    }
    msgq_init();
    Message message{};
    message.type = messageType;
    std::memcpy(message.text, text, strnlen(text, sizeof message.text - 1));
    const int result = msgsnd(queueId, &message, sizeof message.text, IPC_NOWAIT);
    const int error = errno;
    if ((printoutFlags & traceSends) != 0) {
        std::printf(
            "--> %s:%d - %s() - MESSAGE SENT - buf.mtype = %ld, buf.mtext = '%s', res = %d\n",
            sourcePath, sendTraceLine, "msgq_send", message.type, message.text, result);
    }
    if (result < 0) {
        if ((printoutFlags & queueFailures) != 0) {
            std::printf("  msgsnd(), res = %d, errno = %d = '%s'\n", result, error,
                        std::strerror(error));
        }
        return -1;
    }
    return 0;
}

int HassesComm_Msgq_cl::msgq_getNumberOfMsg(int* count) {
    if (count == nullptr) {
        return -1;
    }
    msqid_ds status{};
    if (msgctl(queueId, IPC_STAT, &status) < 0) {
        return -1;
    }
    *count = static_cast<int>(status.msg_qnum);
    return 0;
}

void HassesComm_Msgq_cl::printout(int flags) { printoutFlags = flags; }

HassesComm_Period_base_cl::HassesComm_Period_base_cl()
    : printoutFlags(0), interval(tick), eventCount(0) {}

void HassesComm_Period_base_cl::setInterval(unsigned int newInterval) { interval = newInterval; }

void HassesComm_Period_base_cl::resetEventCount() { eventCount = 0; }

void HassesComm_Period_base_cl::printout(int flags) { printoutFlags = flags; }

int HassesComm_Period_base_cl::isIntervalDue() {
    if (eventCount != 0 && eventCount * tick < interval) {
        ++eventCount;
        return 0;
    }
    eventCount = 1;
    return 1;
}

int HassesComm_Period_base_cl::pipe_send(char* text) {
    if (text == nullptr) {
        return -1;
    }
    const int pipe = open(eventPipe, O_WRONLY);
    // A pipe that "exists" is taken for open; writing to it then fails.
    if (pipe < 0 && errno != EEXIST) {
        std::printf("Pipe error: open() - pipename = '%s', errno = %d = '%s'\n", eventPipe, errno,
                    std::strerror(errno));
        return -1;
    }
    // The terminating NUL separates the messages in the pipe.
    const ssize_t written = write(pipe, text, std::strlen(text) + 1);
    if (written < 0) {
        // The descriptor stays open on this path.
        std::printf("Pipe error: write() - %d\n", errno);
        return -1;
    }
    if ((printoutFlags & tracePipeWrites) != 0) {
        std::printf("--> MESSAGE WROTE - pipename = '%s'\ns = '%s'\nres = %d\n", eventPipe, text,
                    static_cast<int>(written));
    }
    if (close(pipe) < 0) {
        std::printf("Pipe error: close() - %d\n", errno);
        return -1;
    }
    return 0;
}

int HassesComm_Period_base_cl::msgq_send(std::string text) {
    if ((printoutFlags & tracePeriodSends) != 0) {
        // Printed before the send, hence always with 0.
        std::printf("--> MESSAGE WROTE - s = '%s'\nres = %d\n", text.c_str(), 0);
    }
    messageQueue.msgq_setParams(periodKey, periodMessageType);
    const int result = messageQueue.msgq_init();
    if (result < 0) {
        return result;
    }
    messageQueue.msgq_send(text.data());
    return result;
}
