// The web event channel: the notification of the last restart's cause, the thread that calls the
// subscribers of the web event, and the event server's semaphores.

#include "network/webEvents.h"

#include "network/Network.h"
#include "network/library.h"
#include "network/localTime.h"
#include "network/relaxed.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <fstream>

sem_t* kpi_sem = nullptr;

namespace {

constexpr const char* causeFile = "/var/log/resetCause";
constexpr const char* messagePrefix = "events=";

/// The queue of the network's events.
constexpr int eventsKey = 1708033;
constexpr int eventsMessageType = 1001;

constexpr const char* kpiSemaphore = "hassesKpiSem";

/// Seconds of one cycle of the event thread.
constexpr unsigned int cycle = 100;

/// 1 asks the event thread to end. It is looked at after each cycle only, so that a thread asked to
/// end lingers, and goes on if the flag is cleared by a new one meanwhile.
Relaxed<int> isEventThreadToEnd = 0;

/// The first line of the file; empty when there is none.
std::string restartCause() {
    std::ifstream file(causeFile);
    std::string cause;
    std::getline(file, cause);
    return cause;
}

/// Local time, which its readers take for UTC.
std::string eventTime() {
    char text[80] = {};
    std::tm local{};
    if (toLocalTime(std::time(nullptr), local)) {
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &local);
    }
    return text;
}

/// The notification as RESTCONF (RFC 8040) wraps it. The cause goes in as it was read, unescaped.
std::string restartNotification() {
    const std::string cause = restartCause();
    return "{\n"
           "  \"ietf-restconf:notification\": {\n"
           "    \"eventTime\": \"" +
           eventTime() +
           "\",\n"
           "    \"VANTORIX-MSAN-MIB:RebootStatusIndication\": {\n"
           "      \"lastRestartCause\": \"" +
           cause +
           "\"\n"
           "    }\n"
           "  }\n"
           "}";
}

void drain(const char* name) {
    sem_t* const semaphore = sem_open(name, 0);
    if (semaphore == SEM_FAILED) {
        return;
    }
    while (sem_trywait(semaphore) == 0) {
    }
    sem_close(semaphore);
}

}  // namespace

void announceRestartCause() {
    std::string message = messagePrefix + restartNotification();
    HassesComm_Msgq_network.msgq_setParams(eventsKey, eventsMessageType);
    if (HassesComm_Msgq_network.msgq_init() >= 0) {
        HassesComm_Msgq_network.msgq_send(message.data());
    }
}

void drainEventServerSemaphores() {
    drain(kpiSemaphore);
    drain("hassesEventsSem");
}

int Network::hassComm_init() {
    std::printf("--> HassComm: pid: [%d] - init\n", getpid());
    std::printf("--> HassComm: version (1): '%s'\n", hassComm_GetVersion());
    hassComm_createThread();
    return 0;
}

const char* Network::hassComm_GetVersion() { return "hassComm_0.0.1"; }

/// Nobody waits for the thread.
int Network::hassComm_createThread() {
    pthread_t thread;
    return pthread_create(&thread, nullptr, hassComm_Proc, this);
}

void* Network::hassComm_Proc(void* self) {
    static_cast<Network*>(self)->hassComm_receiveMsgLoop();
    return nullptr;
}

int Network::hassComm_receiveMsgLoop() {
    isEventThreadToEnd = 0;
    do {
        webEvent.firePost();
        sleep(cycle);
    } while (isEventThreadToEnd == 0);
    return 0;
}

int Network::hassComm_stop() {
    std::printf("--> HassComm: pid: [%d] - stop\n", getpid());
    hassComm_stopThread();
    return 0;
}

void Network::hassComm_stopThread() { isEventThreadToEnd = 1; }

int Network::semaf_init() {
    sem_t* const semaphore = sem_open(kpiSemaphore, 0);
    kpi_sem = semaphore == SEM_FAILED ? nullptr : semaphore;
    return 0;
}

int Network::semaf_checkHassesSem() {
    if (kpi_sem == nullptr) {
        return -1;
    }
    int value = 0;
    return sem_getvalue(kpi_sem, &value) == 0 && value != 0 ? 1 : 0;
}
