#include "board/varo/Library.h"

#include "board/varo/link/Ipv4Keeper.h"
#include "board/varo/link/Ipv6Keeper.h"
#include "board/varo/settings/allSettings.h"
#include "board/varo/store/schema.h"
#include "varo/varoLib.h"

#include <functional>
#include <utility>

namespace varo {

namespace {

constexpr const char* storeName = "varo.db";

Log systemLog() { return support::systemLog("varo: "); }

int factoryThreshold() { return internalConfigSetting().factory().severity; }

}  // namespace

Library::Opened::Opened(Configuration given, Log log)
    : configuration(std::move(given)),
      store(configuration.stateDirectory / storeName, schema(), std::move(log)) {}

Library& Library::instance() {
    static Library& library = *new Library;
    return library;
}

Library::Library() : log(systemLog(), factoryThreshold()) {}

void Library::configure(Configuration given) {
    const std::lock_guard locked(guard);
    log.setReceiver(given.log ? given.log : systemLog());
    configuration = std::move(given);
}

void Library::open() {
    const std::lock_guard alone(lifecycle);
    Lock lock(changing);
    {
        const std::lock_guard locked(guard);
        closed = false;
    }
    auto opened = openStore(lock);
    applyAll(Change(*this, std::move(lock), std::move(opened)));
}

void Library::close() {
    const std::lock_guard alone(lifecycle);
    std::shared_ptr<Opened> last;
    Keepers ended;
    {
        const Lock lock(changing);
        const std::lock_guard locked(guard);
        closed = true;
        last = std::move(current);
        current.reset();
        ended = std::exchange(keepers, {});
    }
    // Their threads may be waiting for the right to change something, which is refused from now
    // on.
    if (ended.ipv4) {
        ended.ipv4->end();
    }
    if (ended.ipv6) {
        ended.ipv6->end();
    }
    if (last) {
        last->store.close();
    }
    log.setThreshold(factoryThreshold());
}

void Library::checkNotClosed() {
    const std::lock_guard locked(guard);
    if (closed) {
        throw Failure(notOpen, "the library is closed");
    }
}

std::shared_ptr<Library::Opened> Library::usable() {
    const std::lock_guard locked(guard);
    if (closed) {
        throw Failure(notOpen, "the library is closed");
    }
    return current && !current->store.isDamaged() ? current : nullptr;
}

std::shared_ptr<Library::Opened> Library::opened() {
    if (auto store = usable()) {
        return store;
    }
    return change().opened;
}

Library::Change::Change(Library& changed)
    : library(changed), lock(library.changing), opened(library.usable()) {
    if (opened) {
        return;
    }
    opened = library.openStore(lock);
    try {
        applyAll(*this);
    } catch (...) {
        // The store is open, which is what the call needs.
        support::report("opening on first use", internalError, std::ref(library.log));
    }
}

std::shared_ptr<Library::Opened> Library::openStore(const Lock&) {
    if (auto store = usable()) {
        return store;
    }
    std::shared_ptr<Opened> damaged;
    Configuration given;
    {
        const std::lock_guard locked(guard);
        damaged = std::move(current);
        current.reset();
        given = configuration;
    }
    if (damaged) {
        damaged->store.close();
    }
    if (given.stateDirectory.empty()) {
        throw Failure(notConfigured, "no state directory is configured");
    }

    auto opened = std::make_shared<Opened>(given, std::ref(log));
    const std::lock_guard locked(guard);
    current = opened;
    return opened;
}

Configuration Library::given() {
    const std::lock_guard locked(guard);
    if (configuration.stateDirectory.empty()) {
        throw Failure(notConfigured, "no state directory is configured");
    }
    return configuration;
}

void configure(Configuration configuration) {
    Library::instance().configure(std::move(configuration));
}

}  // namespace varo

/// Opens the store, unless a call made before has done so, and applies what is stored. With result
/// varo::applyFailed the library is open nevertheless, and answers calls.
int varoLibInit() {
    return varo::guarded(__func__, [] { varo::Library::instance().open(); });
}

/// Waits for the calls that are under way, and closes the file with everything in it.
void varoLibDestroy() {
    varo::guarded(__func__, [] { varo::Library::instance().close(); });
}
