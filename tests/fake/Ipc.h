#pragma once

#include <semaphore.h>

#include <map>
#include <string>
#include <vector>

namespace fake {

/// What the system keeps for processes that talk to each other.
struct Ipc {
    struct Message {
        long type;
        std::string area;  ///< as long as it was sent

        /// What stands in front of the first NUL.
        std::string text() const { return area.substr(0, area.find('\0')); }
    };
    struct Queue {
        int key;
        unsigned int mode;
        unsigned int uid = 11;
        unsigned int gid = 12;
        unsigned long byteLimit = 16384;
        std::vector<Message> messages{};
    };
    struct Semaphore {
        unsigned int value;
        sem_t handle{};
    };

    /// System V queues by identifier.
    std::map<int, Queue> queues;
    int nextQueue = 500;

    /// POSIX semaphores by name.
    std::map<std::string, Semaphore> semaphores;

    /// The event server's pipe: what was written to it, and the descriptors that it is open at.
    static constexpr const char* eventPipe = "/var/run/hasses/SSE_EVENT";
    std::string eventPipeContent;
    std::vector<int> eventPipeDescriptors;
};

}  // namespace fake
