#pragma once

#include "board/varo/store/Group.h"

#include <string>
#include <vector>

namespace varo {

/// What the file of a record store looks like. Its version stands in SQLite's user_version.
struct Schema {
    /// The record groups. A table that the file does not have is created when it is opened, so that
    /// a new group makes no new version.
    std::vector<const Table*> tables;
    /// SQL that upgrades the tables which older files have: the first from version 1 to 2, and so
    /// on. A change to the columns of a group needs a step here; steps that were released never
    /// change.
    std::vector<std::string> steps;

    int version() const { return 1 + static_cast<int>(steps.size()); }
};

/// The schema of the library's own store.
const Schema& schema();

}  // namespace varo
