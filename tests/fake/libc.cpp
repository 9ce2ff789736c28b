// Calls into the C library that have effects, replaced when a test is linked (ld --wrap).

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "fake/threads.h"

#include <fmt/core.h>
#include <pthread.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

using fake::Platform;
using fake::quoted;

extern "C" {
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*function)(void*), void* argument);
int __real_pthread_join(pthread_t thread, void** result);
}

namespace {

std::string formatted(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
#pragma GCC diagnostic pop
    va_end(again);
    text.pop_back();
    return text;
}

/// A thread that the product asked for, on its way to the function that it shall run.
struct NamedThread {
    std::string name;
    fake::ThreadRequest request;
};

void* runNamed(void* argument) {
    const std::unique_ptr<NamedThread> thread(static_cast<NamedThread*>(argument));
    fake::Journal::nameThread(thread->name);
    return thread->request.function(thread->request.argument);
}

/// What a thread handle holds while the threads are only written down.
constexpr pthread_t writtenDown = 1;

}  // namespace

extern "C" {

/// The fortified call, at check flag 1; anything else is not what the product is to make.
void __wrap___vsyslog_chk(int priority, int flag, const char* format, std::va_list arguments) {
    Platform::current().journal.write(fmt::format("syslog{}({}, {})",
                                                  flag == 1 ? "" : " with another check flag",
                                                  priority, quoted(formatted(format, arguments))));
}

void __wrap_vsyslog(int priority, const char* format, std::va_list arguments) {
    Platform::current().journal.write(
        fmt::format("syslog unfortified({}, {})", priority, quoted(formatted(format, arguments))));
}

unsigned int __wrap_sleep(unsigned int seconds) {
    Platform& platform = Platform::current();
    platform.journal.write(fmt::format("sleep({})", seconds));
    platform.onSleep(seconds);
    return 0;
}

/// A failure leaves something behind in the handle, as a real one may.
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*function)(void*), void* argument) {
    Platform& platform = Platform::current();
    const int failure = platform.call("pthread_create", attributes == nullptr ? "" : "attributes");
    *thread = writtenDown;
    if (failure != 0) {
        return failure;
    }
    platform.threadRequests.push_back({function, argument});
    if (!platform.runsThreads) {
        return 0;
    }
    auto named = std::make_unique<NamedThread>(NamedThread{
        fmt::format("thread {}", platform.threadRequests.size()), {function, argument}});
    const int result = __real_pthread_create(thread, nullptr, runNamed, named.get());
    if (result == 0) {
        static_cast<void>(named.release());
        platform.unjoinedThreads.push_back(*thread);
    }
    return result;
}

int __wrap_pthread_join(pthread_t thread, void** result) {
    Platform& platform = Platform::current();
    platform.journal.write("pthread_join()");
    platform.onJoin();
    std::erase(platform.unjoinedThreads, thread);
    return thread == writtenDown ? 0 : __real_pthread_join(thread, result);
}
}

void fake::joinThreads() {
    for (const pthread_t thread : std::exchange(Platform::current().unjoinedThreads, {})) {
        __real_pthread_join(thread, nullptr);
    }
}
