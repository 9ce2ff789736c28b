#include "board/framework/callWithin.h"

#include "board/framework/ThreadNames.h"

#include <future>
#include <thread>
#include <utility>

namespace framework {

std::optional<int> callWithin(std::chrono::milliseconds limit, const std::string& threadName,
                              std::function<int()> function) {
    std::packaged_task<int()> task(std::move(function));
    std::future<int> result = task.get_future();
    std::thread thread([threadName, task = std::move(task)]() mutable {
        setSystemThreadName(threadName);
        task();
    });
    if (result.wait_for(limit) == std::future_status::timeout) {
        thread.detach();
        return std::nullopt;
    }
    thread.join();
    return result.get();
}

}  // namespace framework
