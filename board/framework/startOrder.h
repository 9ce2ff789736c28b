#pragma once

#include <cstddef>
#include <list>
#include <set>
#include <string>
#include <vector>

namespace framework {

/// What the order of start is found from.
struct EntityNeeds {
    std::string name;
    std::list<std::string> dependencies;
};

struct StartOrder {
    /// Indexes of all entities: each stands behind what it depends on, as far as that is possible,
    /// and otherwise in the order given.
    std::vector<std::size_t> order;
    /// Indexes of the entities that cannot be started: they stand in a circle, or need an entity
    /// that does not exist. What depends on them is not listed.
    std::set<std::size_t> impossible;
    /// Why: one message for each circle and each name that does not exist.
    std::vector<std::string> problems;
};

/// Names of entities are unique.
StartOrder findStartOrder(const std::vector<EntityNeeds>& entities);

}  // namespace framework
