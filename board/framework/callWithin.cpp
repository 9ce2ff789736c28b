#include "board/framework/callWithin.h"

#include "board/framework/ThreadNames.h"

#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace framework {

namespace {

/// Shared by the two threads, since either may be the last to look.
struct Call {
    explicit Call(std::function<int()> called) : function(std::move(called)) {}

    void run() {
        std::exception_ptr thrown;
        int returned = 0;
        try {
            returned = function();
        } catch (...) {
            thrown = std::current_exception();
        }
        const std::lock_guard guard(mutex);
        result = returned;
        exception = std::move(thrown);
        isDone = true;
        done.notify_one();
    }

    bool waitFor(std::chrono::milliseconds limit) {
        std::unique_lock guard(mutex);
        return done.wait_for(guard, limit, [this] { return isDone; });
    }

    const std::function<int()> function;
    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;
    int result = 0;
    std::exception_ptr exception;
};

}  // namespace

std::optional<int> callWithin(std::chrono::milliseconds limit, const std::string& threadName,
                              std::function<int()> function) {
    const auto call = std::make_shared<Call>(std::move(function));
    std::thread thread([call, threadName] {
        setSystemThreadName(threadName);
        call->run();
    });
    if (!call->waitFor(limit)) {
        thread.detach();
        return std::nullopt;
    }
    thread.join();
    if (call->exception) {
        std::rethrow_exception(call->exception);
    }
    return call->result;
}

}  // namespace framework
