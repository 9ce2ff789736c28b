#pragma once

#include "board/support/answer.h"
#include "board/varo/store/RecordStore.h"
#include "board/varo/varoCodes.h"
#include "board/varo/varoConfiguration.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace varo {

class Ipv4Keeper;
class Ipv6Keeper;

/// What looks after the management interface. Null: there is none to look after yet.
struct Keepers {
    std::shared_ptr<Ipv4Keeper> ipv4;
    std::shared_ptr<Ipv6Keeper> ipv6;
};

/// The one instance of the library in the process: its configuration, its open store, its log.
///
/// Calls that only read take the store. Calls that change something hold a Change while they store
/// and apply: changes come into force one after the other, in the order in which they were stored.
class Library {
public:
    /// Never destroyed, so that calls made while the process ends are answered.
    static Library& instance();

    /// An open store, and the configuration that it was opened with.
    struct Opened {
        Opened(Configuration given, Log log);

        const Configuration configuration;
        RecordStore store;
    };

    /// The right to store and apply values, which one caller has at a time.
    class Change {
    public:
        RecordStore& store() const { return opened->store; }
        const Configuration& configuration() const { return opened->configuration; }
        Keepers& keepers() const { return library.keepers; }

    private:
        friend class Library;
        /// Opens the store if need be.
        explicit Change(Library& changed);
        Change(Library& changed, std::unique_lock<std::mutex> held, std::shared_ptr<Opened> store)
            : library(changed), lock(std::move(held)), opened(std::move(store)) {}

        Library& library;
        std::unique_lock<std::mutex> lock;
        std::shared_ptr<Opened> opened;
    };

    void configure(Configuration configuration);

    /// Opens the store and puts all stored values into force. Throws Failure: applyFailed when it
    /// is open nevertheless.
    void open();
    void close();
    /// Throws Failure (notOpen) between close and open.
    void checkNotClosed();

    /// The store, opened if need be. Throws Failure.
    std::shared_ptr<Opened> opened();
    Change change() { return Change(*this); }

    /// Its threshold is the severity of the internal configuration.
    support::LogChannel log;

    /// What the host has configured last, which needs no store. Throws Failure (notConfigured).
    Configuration given();

private:
    using Lock = std::unique_lock<std::mutex>;

    Library();

    std::mutex lifecycle;  ///< held to open and to close for good, beyond `changing`
    std::mutex changing;   ///< held to store and apply values; protects the keepers
    Keepers keepers;
    std::mutex guard;  ///< protects what follows; taken after `changing`
    Configuration configuration;
    std::shared_ptr<Opened> current;
    bool closed = false;

    std::shared_ptr<Opened> usable();
    std::shared_ptr<Opened> openStore(const Lock& changingHeld);
};

/// Runs a body that no exception may leave; returns the result of the call.
template <class Body>
int guarded(const char* call, Body body) noexcept {
    return support::answer(call, internalError, Library::instance().log, body);
}

/// The same for every call but those that open and close the library.
template <class Body>
int answer(const char* call, Body body) noexcept {
    return guarded(call, [&] {
        Library::instance().checkNotClosed();
        body();
    });
}

/// What a pointer argument points to. Throws Failure (invalidArgument) for null.
template <class Value>
Value& required(Value* argument) {
    if (argument == nullptr) {
        throw Failure(invalidArgument, "null pointer");
    }
    return *argument;
}

}  // namespace varo
