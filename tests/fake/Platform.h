#pragma once

#include "fake/Addressing.h"
#include "fake/BridgeLists.h"
#include "fake/FakeLock.h"
#include "fake/Ipc.h"
#include "fake/Journal.h"
#include "fake/OntInterface.h"
#include "fake/Product.h"
#include "fake/Programs.h"
#include "fake/Script.h"
#include "fake/Services.h"
#include "fake/Shelf.h"
#include "varo/records.h"

#include <pthread.h>
#include <rpc/rpc.h>
#include <sys/select.h>
#include <sys/time.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace fake {

/// A thread that the product asked for.
struct ThreadRequest {
    void* (*function)(void*);
    void* argument;
};

/// The platform on which the product runs in a unit test: it keeps state as a real one does, writes
/// every call into its journal, and fails on demand. While one is alive, the imported functions
/// work on it; before the first and after the last they work on one that belongs to the process.
class Platform {
public:
    Platform();
    ~Platform();
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    /// The platform that imported functions work on now.
    static Platform& current();

    /// Writes down a call of a function that returns a status, and returns that status: the
    /// scripted failure or 0. On success `work` is done first; what it returns, if anything, stands
    /// behind the status.
    template <class Work>
    int call(const std::string& function, const std::string& arguments, Work work) {
        return perform(function, arguments, [&]() -> std::string {
            if constexpr (std::is_void_v<decltype(work())>) {
                work();
                return "";
            } else {
                return work();
            }
        });
    }
    int call(const std::string& function, const std::string& arguments) {
        return perform(function, arguments, [] { return std::string(); });
    }

    /// Writes down a call that is refused whatever the script says, and returns 1.
    int refuse(const std::string& function, const std::string& arguments);

    void fail(const std::string& function, int result, int times = Script::forever,
              int skipped = 0) {
        script.fail(function, result, times, skipped);
    }

    /// Runs the threads that the product asks for; otherwise they are only written down.
    bool runsThreads = false;
    std::vector<ThreadRequest> threadRequests;
    /// Threads that run, and that the product has not waited for.
    std::vector<pthread_t> unjoinedThreads;

    /// Called on a thread that gives the framework its name, after that was written down.
    std::function<void()> onRegisterThread = [] {};

    /// Called before a thread is waited for, after that was written down.
    std::function<void()> onJoin = [] {};

    /// Called in place of sleep(3), after it was written down.
    std::function<void(unsigned int)> onSleep = [](unsigned int) {};

    // The RPC library's server side. A call on a socket or transport fails under its function's
    // name ("bind") or under the name with the kind of transport ("bind TCP").
    static constexpr int firstDescriptor = 1000;
    int nextDescriptor = firstDescriptor;
    /// "UDP" or "TCP" by descriptor.
    std::map<int, std::string> transportKinds;
    void (*registeredDispatch)(svc_req*, SVCXPRT*) = nullptr;
    /// Called in place of select(2) and svc_getreqset(3), after they were written down.
    std::function<int(fd_set*)> onSelect = [](fd_set*) { return 0; };
    std::function<void(fd_set*)> onRequests = [](fd_set*) {};

    // State of the configuration library.
    varoLib_s_internalConfig internalConfig{3};
    std::map<int, varoLib_s_dns> dns;
    std::map<int, varoLib_s_dns6> dns6;
    /// What a read that lets the library choose returns, if not what it would choose itself.
    std::optional<int> sourceInForce;
    /// The source that every successful read reports instead of its own.
    std::optional<int> reportedSource;
    /// What a failing read leaves behind in the caller's record and source.
    std::optional<varoLib_s_dns> dnsLeftByFailure;
    std::optional<varoLib_s_dns6> dns6LeftByFailure;
    std::optional<int> sourceLeftByFailure;
    Addressing addressing;
    Services services;
    SnmpAgent snmp;
    TimeSettings time;
    FactorySettings factory;

    // State of the platform's services.
    Shelf shelf;
    BridgeLists accessLists;
    OntInterface ont;
    Product product;

    // Programs, files and clock.
    /// By command line: the status, as wait(2) stores it, that system(3) returns; 0 by default. A
    /// failure of "system" in the script goes first.
    std::map<std::string, int> commandStatus;
    Programs programs;
    /// What time(2) and gettimeofday(2) say, if not the truth.
    std::optional<std::time_t> unixTime;
    std::optional<timeval> timeOfDay;

    Ipc ipc;

    /// The parts of the framework log's latest message; "<<" in front of one that came by that
    /// operator.
    std::vector<std::string> logParts;

    FakeLock lock;
    Journal journal;
    Script script;

private:
    int perform(const std::string& function, const std::string& arguments,
                const std::function<std::string()>& work);

    Platform* previous;
};

}  // namespace fake
