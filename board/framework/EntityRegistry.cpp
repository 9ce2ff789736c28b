#include "board/framework/EntityRegistry.h"

#include "board/framework/callWithin.h"
#include "board/framework/startOrder.h"
#include "framework/BLEntity.h"

#include <algorithm>
#include <exception>
#include <list>
#include <utility>

namespace framework {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// What the operations of an entity return when they succeed.
constexpr int success = 1;

std::string quoted(const std::string& name) { return "\"" + name + "\""; }

/// Runs an operation of an entity. Returns what went wrong, empty for nothing.
template <class Operation>
std::string failureOf(Operation operation) {
    try {
        const int result = operation();
        return result == success ? "" : "it returned " + std::to_string(result);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "it threw an unknown exception";
    }
}

}  // namespace

const char* toString(EntityState state) {
    switch (state) {
        case EntityState::registered:
            return "registered";
        case EntityState::started:
            return "started";
        case EntityState::failed:
            return "failed";
        case EntityState::stopped:
            return "stopped";
    }
    return "unknown";
}

EntityRegistry::EntityRegistry(Report reporter) : report(std::move(reporter)) {}

bool EntityRegistry::add(BLEntity& entity) {
    const std::string& name = entity.getName();
    if (name.empty()) {
        report("an entity without a name is not registered");
        return false;
    }
    {
        const std::lock_guard guard(mutex);
        if (std::ranges::find(entries, name, &Entry::name) == entries.end()) {
            entries.push_back({&entity, name});
            return true;
        }
    }
    report("entity " + quoted(name) + " is not registered: there is one of that name already");
    return false;
}

bool EntityRegistry::startAll() {
    const std::vector<Entry> all = copyOfEntries();
    std::vector<EntityNeeds> needs;
    std::vector<bool> startable(all.size(), true);
    for (std::size_t index = 0; index < all.size(); ++index) {
        std::list<std::string> dependencies;
        const std::string failure = failureOf([&] {
            all[index].entity->getDependencies(dependencies);
            return success;
        });
        if (!failure.empty()) {
            report("entity " + quoted(all[index].name) +
                   " does not tell its dependencies: " + failure);
            startable[index] = false;
        }
        needs.push_back({all[index].name, std::move(dependencies)});
    }

    const StartOrder plan = findStartOrder(needs);
    for (const std::string& problem : plan.problems) {
        report(problem);
    }
    for (const std::size_t index : plan.impossible) {
        startable[index] = false;
    }

    bool allStarted = true;
    for (const std::size_t index : plan.order) {
        if (all[index].state != EntityState::registered) {
            continue;
        }
        const auto& dependencies = needs[index].dependencies;
        const bool isStarted =
            startable[index] && startOne(all[index], {dependencies.begin(), dependencies.end()});
        setState(index, isStarted ? EntityState::started : EntityState::failed);
        allStarted = allStarted && isStarted;
    }
    return allStarted;
}

bool EntityRegistry::startOne(const Entry& entry, const std::vector<std::string>& dependencies) {
    const auto missing = std::ranges::find_if(dependencies, [this](const std::string& name) {
        return stateOf(name) != EntityState::started;
    });
    if (missing != dependencies.end()) {
        report("entity " + quoted(entry.name) + " is not started: it needs " + quoted(*missing) +
               ", which does not run");
        return false;
    }
    const std::string failure = failureOf([&] { return entry.entity->start(); });
    if (!failure.empty()) {
        report("entity " + quoted(entry.name) + " could not start: " + failure);
    }
    return failure.empty();
}

bool EntityRegistry::stopAll(milliseconds limit) {
    isStopping = true;
    const auto deadline = steady_clock::now() + limit;
    const std::vector<Entry> all = copyOfEntries();
    std::vector<std::size_t> order;
    {
        const std::lock_guard guard(mutex);
        order = std::exchange(started, {});
    }
    std::ranges::reverse(order);

    bool allStopped = true;
    for (std::size_t done = 0; done < order.size(); ++done) {
        const auto left = std::max(steady_clock::duration::zero(), deadline - steady_clock::now());
        const auto part = left / static_cast<long>(order.size() - done);
        const bool isStopped =
            stopOne(all[order[done]], std::chrono::duration_cast<milliseconds>(part));
        setState(order[done], isStopped ? EntityState::stopped : EntityState::failed);
        allStopped = allStopped && isStopped;
    }
    return allStopped;
}

bool EntityRegistry::stopOne(const Entry& entry, milliseconds limit) {
    bool isInTime = true;
    const std::string failure = failureOf([&] {
        const auto result = callWithin(limit, "stop " + entry.name,
                                       [entity = entry.entity] { return entity->stop(); });
        isInTime = result.has_value();
        return result.value_or(success);
    });
    if (!isInTime) {
        report("entity " + quoted(entry.name) + " has not stopped within " +
               std::to_string(limit.count()) + " ms and is left to itself");
    } else if (!failure.empty()) {
        report("entity " + quoted(entry.name) + " did not stop as it should: " + failure);
    }
    return isInTime && failure.empty();
}

std::vector<std::string> EntityRegistry::applyDefaults() {
    const std::vector<Entry> all = copyOfEntries();
    std::vector<std::size_t> order;
    {
        const std::lock_guard guard(mutex);
        order = started;
    }
    std::vector<std::string> failures;
    for (const std::size_t index : order) {
        const std::string failure =
            isStopping ? "it is being stopped"
                       : failureOf([&] { return all[index].entity->applyDefaultSettings(); });
        if (!failure.empty()) {
            failures.push_back(quoted(all[index].name) + ": " + failure);
        }
    }
    for (const Entry& entry : all) {
        if (entry.state != EntityState::started) {
            failures.push_back(quoted(entry.name) + ": it does not run (" + toString(entry.state) +
                               ")");
        }
    }
    return failures;
}

std::vector<EntityRegistry::Status> EntityRegistry::status() const {
    std::vector<Status> result;
    for (const Entry& entry : copyOfEntries()) {
        result.push_back({entry.name, entry.state});
    }
    return result;
}

std::vector<EntityRegistry::Entry> EntityRegistry::copyOfEntries() const {
    const std::lock_guard guard(mutex);
    return entries;
}

EntityState EntityRegistry::stateOf(const std::string& name) const {
    const std::lock_guard guard(mutex);
    const auto found = std::ranges::find(entries, name, &Entry::name);
    return found == entries.end() ? EntityState::registered : found->state;
}

void EntityRegistry::setState(std::size_t index, EntityState state) {
    const std::lock_guard guard(mutex);
    entries[index].state = state;
    if (state == EntityState::started) {
        started.push_back(index);
    }
}

}  // namespace framework
