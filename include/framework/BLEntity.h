#pragma once

#include "framework/Storage.h"

#include <list>
#include <string>

#pragma GCC visibility push(default)

/// A business-logic entity: a part of the process that the framework starts, stops, and returns to
/// factory settings. The order of the virtual operations is part of the contract (slots 2 to 5
/// after those of Storage::StorageItem, then the destructor pair).
class BLEntity : public Storage::StorageItem {
public:
    /// The name by which other entities name this one in their dependencies.
    explicit BLEntity(const std::string& name);

    /// Starts the entity; its dependencies run already. Returns 1, or 0 when it could not start.
    virtual int start() = 0;

    /// Writes the factory values. Returns 1 when every step succeeded and any other value when not.
    virtual int applyDefaultSettings() = 0;

    /// Stops the entity; what depends on it has stopped already. Returns 1. It may wait for threads
    /// of the entity, without a limit of its own: a host that must end in bounded time says so
    /// itself.
    virtual int stop() = 0;

    /// Replaces the content of the list by the names of the entities that must start before this
    /// one.
    virtual void getDependencies(std::list<std::string>& names) = 0;

    virtual ~BLEntity();

    const std::string& getName() const;

private:
    std::string entityName;
};

#pragma GCC visibility pop
