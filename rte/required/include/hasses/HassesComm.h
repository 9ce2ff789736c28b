#pragma once

#include <string>

#pragma GCC visibility push(default)

/// Sends texts on a System V message queue (svipc(7)) towards the web event server's feeder.
/// Diagnostics go to standard output, chosen by printout flags: 1 traces every message sent, 8
/// prints failures of the queue calls. Objects hold no lock. The queue outlives the process.
class HassesComm_Msgq_cl {
public:
    HassesComm_Msgq_cl();

    /// The IPC key of the queue, and the type that every message is given.
    void msgq_setParams(int key, int type);

    /// Creates or opens the queue and raises its byte limit, which takes CAP_SYS_RESOURCE above the
    /// system's maximum. Returns 0, -1 when there is no queue, 1 when its limit cannot be raised.
    int msgq_create();

    /// Creates the queue once. Always returns 0: a creation that failed is not reported, and is
    /// tried again the next time.
    int msgq_init();

    /// Sends at most 1999 characters of the text, without waiting: a full queue loses the message.
    /// Returns 0, or -1 on failure.
    int msgq_send(char* text);

    /// Stores the number of waiting messages. Returns 0, or -1 and stores nothing.
    int msgq_getNumberOfMsg(int* count);

    /// Replaces the printout flags.
    void printout(int flags);

private:
    int printoutFlags;
    int initialised;  ///< never cleared, even if the queue is removed from the system
    int queueId;
    int key;
    int messageType;
};

/// A base for producers of periodic events: counts ticks, and sends on the event server's pipe and
/// on a message queue of its own. Printout flags: 4 traces every pipe write, 8 every queue send.
class HassesComm_Period_base_cl {
public:
    HassesComm_Period_base_cl();

    /// Length of the period, of which one call of isIntervalDue counts 100.
    void setInterval(unsigned int interval);
    /// Makes the next call of isIntervalDue the first of a period.
    void resetEventCount();
    /// Replaces the printout flags. Those of the queue sender are its own.
    void printout(int flags);

    /// Counts a tick. Returns 1 when a new period begins, else 0.
    int isIntervalDue();

    /// Writes the text with its terminating NUL to the event server's pipe; waits until the server
    /// has it open. Returns 0 or -1.
    int pipe_send(char* text);

    /// Sends the text on the queue of the period producers. Always returns 0.
    int msgq_send(std::string text);

private:
    int printoutFlags;
    unsigned int interval;
    unsigned int eventCount;
    HassesComm_Msgq_cl messageQueue;
};

#pragma GCC visibility pop
