#pragma once

#include "fake/Platform.h"
#include "rte/BLL/core/rpcProxy.h"
#include "support/matchers.h"

#include <functional>
#include <semaphore>
#include <string>
#include <vector>

/// Tests of the RPC host on a fake platform. At the end of a test every entry of the journal must
/// have been looked at.
class HostTest : public testing::Test {
protected:
    HostTest();
    void TearDown() override;

    /// The calling thread's journal since the last look.
    std::vector<std::string> journal() { return platform.journal.take(); }
    /// The same of a proxy's thread.
    std::vector<std::string> journalOf(const std::string& thread) {
        return platform.journal.takeOf(thread);
    }

    /// The start function of the tests' services: leads into onServiceStart.
    static void* serviceStart(void* argument);
    static inline std::function<void(void*)> onServiceStart;

    /// What the function prints to standard error.
    static std::string printedBy(const std::function<void()>& function);

    fake::Platform platform;
};

/// A place where one thread waits until another lets it go on.
class Gate {
public:
    /// Waits at the gate.
    void pass() {
        reached.release();
        opened.acquire();
    }
    /// Waits until a thread stands at the gate.
    void awaitArrival() { reached.acquire(); }
    void open() { opened.release(); }

private:
    std::binary_semaphore reached{0};
    std::binary_semaphore opened{0};
};

/// Waits until the calling thread has been asked to end, without taking note of it.
void awaitInterruptionRequest();

/// Makes the semaphore available when the calling thread has all but ended.
void announceEndOfThread(std::binary_semaphore& ended);
