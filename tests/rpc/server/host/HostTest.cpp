#include "HostTest.h"

#include "framework/BLLManager.h"

#include <thread>

HostTest::HostTest() {
    // The manager is made here, not by whichever thread asks for it first.
    singleton<BLLManager>::instance();
    platform.journal.takeAll();
    onServiceStart = [](void*) {};
}

void HostTest::TearDown() {
    if (!HasFailure()) {
        EXPECT_THAT(platform.journal.takeAll(), IsEmpty())
            << "entries that the test did not look at";
    }
}

void* HostTest::serviceStart(void* argument) {
    onServiceStart(argument);
    return nullptr;
}

std::string HostTest::printedBy(const std::function<void()>& function) {
    testing::internal::CaptureStderr();
    function();
    return testing::internal::GetCapturedStderr();
}

void awaitInterruptionRequest() {
    while (!boost::this_thread::interruption_requested()) {
        std::this_thread::yield();
    }
}

void announceEndOfThread(std::binary_semaphore& ended) {
    boost::this_thread::at_thread_exit([&ended] { ended.release(); });
}
