// POSIX named semaphores (sem_overview(7)), replaced when a test is linked (ld --wrap).

#include "fake/Platform.h"
#include "fake/errnoCall.h"
#include "fake/quoted.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <semaphore.h>

#include <cerrno>
#include <functional>

using fake::errnoCall;
using fake::Ipc;
using fake::Outcome;
using fake::Platform;
using fake::quoted;

namespace {

/// A call on an open semaphore.
int onSemaphore(const char* function, const sem_t* handle,
                const std::function<Outcome(Ipc::Semaphore&)>& work) {
    for (auto& entry : Platform::current().ipc.semaphores) {
        Ipc::Semaphore& semaphore = entry.second;
        if (handle == &semaphore.handle) {
            return errnoCall(
                function, quoted(entry.first), [&] { return work(semaphore); }, entry.first);
        }
    }
    return errnoCall(function, "not open", [] { return Outcome::failure(EINVAL); });
}

}  // namespace

extern "C" {

/// Semaphores are opened, never created.
sem_t* __wrap_sem_open(const char* name, int flags, ...) {
    auto& semaphores = Platform::current().ipc.semaphores;
    const auto work = [&]() -> Outcome {
        if ((flags & O_CREAT) != 0) {
            return Outcome::failure(EPERM);
        }
        return semaphores.contains(name) ? Outcome{} : Outcome::failure(ENOENT);
    };
    const int status =
        errnoCall("sem_open", fmt::format("{}, {}", quoted(name), flags), work, name);
    return status == 0 ? &semaphores.at(name).handle : SEM_FAILED;
}

int __wrap_sem_trywait(sem_t* handle) {
    return onSemaphore("sem_trywait", handle, [](Ipc::Semaphore& semaphore) -> Outcome {
        if (semaphore.value == 0) {
            return Outcome::failure(EAGAIN);
        }
        --semaphore.value;
        return {};
    });
}

int __wrap_sem_getvalue(sem_t* handle, int* value) {
    return onSemaphore("sem_getvalue", handle, [&](Ipc::Semaphore& semaphore) -> Outcome {
        *value = static_cast<int>(semaphore.value);
        return {0, 0, fmt::format("{}", *value)};
    });
}

int __wrap_sem_close(sem_t* handle) {
    return onSemaphore("sem_close", handle, [](Ipc::Semaphore&) { return Outcome{}; });
}
}
