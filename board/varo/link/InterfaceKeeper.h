#pragma once

#include "board/process/LinkMonitor.h"
#include "board/process/Supervisor.h"
#include "board/varo/Library.h"
#include "board/varo/link/Netlink.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace varo {

/// Looks after one address family of the management interface on a thread of its own: runs the
/// DHCP client, and sees the interface come, change and go. What is made of that is the derived
/// class's business, which has to end the thread in its destructor.
///
/// The thread changes things as any caller does, with a Library::Change. So nobody may wait for it
/// while holding one.
class InterfaceKeeper {
public:
    virtual ~InterfaceKeeper() = default;
    InterfaceKeeper(const InterfaceKeeper&) = delete;
    InterfaceKeeper& operator=(const InterfaceKeeper&) = delete;

    /// Starts the thread. What is stored is in force on this interface; nothing: there is none.
    void start(Netlink& netlink, const std::optional<Netlink::Link>& link);

    /// The client that is to run; empty for none. With a Library::Change held, so that no report of
    /// the client before is put into force any more. Returns the number of this wish.
    std::uint64_t want(const process::Command& command);
    /// The number of the last wish.
    std::uint64_t wish();
    /// Waits until no other client is running, up to a few seconds. False when they have passed.
    bool awaitSettled(std::uint64_t number);

    /// Ends the client and the thread. For any thread but its own, without a Library::Change.
    void end();

protected:
    struct Names {
        std::string interface;
        std::string thread;  ///< at most 15 characters
        std::string client;  ///< as log lines name it
    };
    /// Watches the interface from here on; acts after start. Throws.
    explicit InterfaceKeeper(Names names);

    const Names names;

    /// A report of the client.
    struct Report {
        bool showsServer;  ///< it shows the client at work with a server
        /// Puts it into force; not called when the client was switched off meanwhile.
        std::function<void(Library::Change& change)> apply;
    };

    // Called on the thread.

    /// Which coming of the interface it is that the client may run on: another number needs another
    /// client. 0: none may run.
    virtual std::uint64_t usable(Netlink& netlink, const std::optional<Netlink::Link>& link) = 0;
    /// The interface was looked at, because something has changed about it. It is new when it was
    /// not there before, or another one. May throw.
    virtual void lookAt(Netlink& netlink, const std::optional<Netlink::Link>& link, bool isNew) = 0;
    /// Reads a report; starts of the client are counted, so that one can be told from the one
    /// before it. Throws BadReport.
    virtual Report read(std::uint64_t start, const std::string& message) = 0;

private:
    const process::LinkMonitor monitor;
    const process::WakeEvent wake;
    std::thread thread;

    std::mutex mutex;  ///< protects what follows
    std::condition_variable settled;
    process::Command wantedCommand;
    std::uint64_t wantedNumber = 0;
    std::uint64_t settledNumber = 0;
    bool isEnding = false;

    // The thread's own.
    int knownIndex = 0;
    std::uint64_t usableInterface = 0;

    void run();
    void wait(const process::Supervisor& client);
    std::uint64_t passWish(process::Supervisor& client);
    bool isWanted(std::uint64_t number);
    void receive(process::Supervisor& client, const std::string& message);
    void look();
};

}  // namespace varo
