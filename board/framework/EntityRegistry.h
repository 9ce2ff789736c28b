#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

class BLEntity;

namespace framework {

enum class EntityState {
    registered,  ///< not started yet
    started,
    failed,  ///< could not be started or stopped
    stopped
};

const char* toString(EntityState state);

/// The entities of the process. They are started in the order of their dependencies and stopped in
/// the reverse order. What goes wrong with one of them is reported, and the others go on.
///
/// The state may be asked for at any time, from any thread; the operations that drive the entities
/// are for one thread at a time.
class EntityRegistry {
public:
    /// Receives the messages, without a line end.
    using Report = std::function<void(const std::string& message)>;

    explicit EntityRegistry(Report report);
    EntityRegistry(const EntityRegistry&) = delete;
    EntityRegistry& operator=(const EntityRegistry&) = delete;

    /// Adds an entity, which is not owned and must outlive the registry's use. Returns false, and
    /// reports, when its name is empty or taken.
    bool add(BLEntity& entity);

    /// Starts every entity that was not started before and whose dependencies run. Returns whether
    /// all of them did start.
    bool startAll();

    /// Stops the entities that run, each on a thread of its own, since the stop of an entity may
    /// never return. The time is shared out: an entity may take an equal part of what is left for
    /// those still to be stopped. One that takes longer is reported and left to itself. Returns
    /// whether all of them did stop.
    bool stopAll(std::chrono::milliseconds limit);

    /// Returns every entity to factory settings, in the order of their start. Returns the failures,
    /// one text for each; an entity that does not run is one.
    std::vector<std::string> applyDefaults();

    struct Status {
        std::string name;
        EntityState state;
    };
    /// In the order of registration.
    std::vector<Status> status() const;

private:
    struct Entry {
        BLEntity* entity;
        std::string name;
        EntityState state = EntityState::registered;
    };

    std::vector<Entry> copyOfEntries() const;
    EntityState stateOf(const std::string& name) const;
    void setState(std::size_t index, EntityState state);
    bool startOne(const Entry& entry, const std::vector<std::string>& dependencies);
    bool stopOne(const Entry& entry, std::chrono::milliseconds limit);

    const Report report;
    std::atomic<bool> isStopping{false};

    mutable std::mutex mutex;
    std::vector<Entry> entries;
    std::vector<std::size_t> started;  ///< indexes, in the order of start
};

}  // namespace framework
