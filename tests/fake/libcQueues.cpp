// System V message queues (svipc(7)) and the event server's pipe, replaced when a test is linked
// (ld --wrap). Files but the pipe are the system's.

#include "fake/Platform.h"
#include "fake/errnoCall.h"
#include "fake/quoted.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

using fake::errnoCall;
using fake::Ipc;
using fake::Outcome;
using fake::Platform;
using fake::quoted;

extern "C" {
int __real_open(const char* path, int flags, ...);
ssize_t __real_write(int descriptor, const void* data, size_t size);
}

namespace {

Ipc& ipc() { return Platform::current().ipc; }

/// What a change may touch (msgctl(2)).
std::string changeable(const msqid_ds& status) {
    return fmt::format("qbytes={} uid={} gid={} mode={:#o}", status.msg_qbytes, status.msg_perm.uid,
                       status.msg_perm.gid, status.msg_perm.mode);
}

void fill(const Ipc::Queue& queue, msqid_ds& status) {
    status.msg_qbytes = queue.byteLimit;
    status.msg_qnum = queue.messages.size();
    status.msg_perm.uid = queue.uid;
    status.msg_perm.gid = queue.gid;
    status.msg_perm.mode = static_cast<decltype(status.msg_perm.mode)>(queue.mode);
}

void change(Ipc::Queue& queue, const msqid_ds& status) {
    queue.byteLimit = status.msg_qbytes;
    queue.uid = status.msg_perm.uid;
    queue.gid = status.msg_perm.gid;
    queue.mode = status.msg_perm.mode;
}

std::size_t bytesIn(const Ipc::Queue& queue) {
    std::size_t bytes = 0;
    for (const Ipc::Message& message : queue.messages) {
        bytes += message.area.size();
    }
    return bytes;
}

Outcome send(int identifier, const Ipc::Message& message) {
    const auto found = ipc().queues.find(identifier);
    if (found == ipc().queues.end() || message.type < 1) {
        return Outcome::failure(EINVAL);
    }
    Ipc::Queue& queue = found->second;
    if (bytesIn(queue) + message.area.size() > queue.byteLimit) {
        return Outcome::failure(EAGAIN);
    }
    queue.messages.push_back(message);
    return {};
}

bool isEventPipe(int descriptor) {
    return std::ranges::count(ipc().eventPipeDescriptors, descriptor) != 0;
}

}  // namespace

extern "C" {

int __wrap_msgget(key_t key, int flags) {
    return errnoCall("msgget", fmt::format("{}, {:#o}", key, flags), [&]() -> Outcome {
        for (const auto& [identifier, queue] : ipc().queues) {
            if (queue.key == key) {
                return {identifier, 0, {}};
            }
        }
        if ((flags & IPC_CREAT) == 0) {
            return Outcome::failure(ENOENT);
        }
        const int identifier = ipc().nextQueue++;
        ipc().queues[identifier] = {key, static_cast<unsigned int>(flags) & 0777U};
        return {identifier, 0, {}};
    });
}

int __wrap_msgctl(int identifier, int command, msqid_ds* status) {
    const std::string name = command == IPC_STAT  ? "IPC_STAT"
                             : command == IPC_SET ? "IPC_SET"
                                                  : "another command";
    std::string arguments = fmt::format("{}, {}", identifier, name);
    if (command == IPC_SET) {
        arguments += " " + changeable(*status);
    }
    const auto work = [&]() -> Outcome {
        const auto found = ipc().queues.find(identifier);
        if (found == ipc().queues.end() || (command != IPC_STAT && command != IPC_SET)) {
            return Outcome::failure(EINVAL);
        }
        if (command == IPC_SET) {
            change(found->second, *status);
            return {};
        }
        fill(found->second, *status);
        return {0, 0, fmt::format("qnum={} {}", status->msg_qnum, changeable(*status))};
    };
    return errnoCall("msgctl", arguments, work, name);
}

int __wrap_msgsnd(int identifier, const void* buffer, size_t size, int flags) {
    Ipc::Message message{0, {}};
    std::memcpy(&message.type, buffer, sizeof message.type);
    message.area.assign(static_cast<const char*>(buffer) + sizeof message.type, size);
    return errnoCall("msgsnd",
                     fmt::format("{}, {} {}, {}, {:#o}", identifier, message.type,
                                 quoted(message.text()), size, flags),
                     [&] { return send(identifier, message); });
}

int __wrap_open(const char* path, int flags, ...) {
    if (std::strcmp(path, Ipc::eventPipe) == 0) {
        return errnoCall("open", fmt::format("{}, {}", quoted(path), flags), []() -> Outcome {
            const int descriptor = Platform::current().nextDescriptor++;
            ipc().eventPipeDescriptors.push_back(descriptor);
            return {descriptor, 0, {}};
        });
    }
    if ((flags & (O_CREAT | O_TMPFILE)) == 0) {
        return __real_open(path, flags);
    }
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return __real_open(path, flags, mode);
}

/// The pipe and what is no descriptor are written down; anything else is written.
ssize_t __wrap_write(int descriptor, const void* data, size_t size) {
    if (descriptor >= 0 && !isEventPipe(descriptor)) {
        return __real_write(descriptor, data, size);
    }
    const std::string content(static_cast<const char*>(data), size);
    return errnoCall("write", fmt::format("{}, {}", descriptor, quoted(content)), [&]() -> Outcome {
        if (descriptor < 0) {
            return Outcome::failure(EBADF);
        }
        ipc().eventPipeContent += content;
        return {static_cast<int>(size), 0, {}};
    });
}
}
