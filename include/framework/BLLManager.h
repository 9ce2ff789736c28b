#pragma once

#include "framework/Notification.h"
#include "framework/singleton.h"

#include <sstream>
#include <string>

class BLEntity;

#pragma GCC visibility push(default)

/// The framework's manager: the registry of entities and threads, the process-wide configuration
/// lock, feature queries, and the event by which run-time knobs arrive.
class BLLManager : public singleton<BLLManager> {
public:
    /// name, value, reply stream (may be written by a handler; never null), sender.
    using ExternalMessageEvent = Notification::Event<const std::string&, const std::string&,
                                                     std::ostringstream*, const std::string&>;

    /// A scoped hold of the configuration lock, shared with other readers. Construction waits, up
    /// to a limit of the framework's. The lock is re-entrant: a thread that holds it in either mode
    /// is granted a shared hold at once.
    class sharedLock_t {
    public:
        sharedLock_t();
        ~sharedLock_t();
        sharedLock_t(const sharedLock_t&) = delete;
        sharedLock_t& operator=(const sharedLock_t&) = delete;

        /// Whether the lock was obtained. When not, nothing is held.
        bool isObtained() const { return obtained; }

    private:
        bool obtained;
    };

    /// The same, exclusive of all other threads. A thread that holds it exclusively is granted
    /// further holds at once; a thread that holds it shared only is refused at once, since two such
    /// threads would wait for each other.
    class exclusiveLock_t {
    public:
        exclusiveLock_t();
        ~exclusiveLock_t();
        exclusiveLock_t(const exclusiveLock_t&) = delete;
        exclusiveLock_t& operator=(const exclusiveLock_t&) = delete;

        bool isObtained() const { return obtained; }

    private:
        bool obtained;
    };

    /// Hands an entity to the framework, which will drive it. The object is not owned and must
    /// outlive the framework's run.
    void registerEntity(BLEntity& entity);

    /// Gives the calling thread a name in the framework's books.
    void registerThread(const std::string& name);

    /// Whether the product offers a feature, by name (for example "httpserver").
    bool isFeatureSupported(std::string feature) const;

    /// Fired for every external message that reaches the process.
    ExternalMessageEvent& externalMessage();

private:
    friend class singleton<BLLManager>;
    BLLManager();
    ~BLLManager();

    ExternalMessageEvent externalMessageEvent;
};

extern template class singleton<BLLManager>;

#pragma GCC visibility pop
