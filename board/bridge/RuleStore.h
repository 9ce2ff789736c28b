#pragma once

#include "board/bridge/rulesDocument.h"
#include "board/support/StateFile.h"

#include <filesystem>
#include <vector>

namespace bridge {

/// The rules of the remote-access list, kept across restarts. Until open() nothing is kept.
///
/// The product starts with an empty list, and what was stored is put into force again rule by rule.
/// Until that is complete the file is not touched: a process that ends half-way has lost nothing.
class RuleStore {
public:
    /// Reads the file; see support::StateFile.
    void open(const std::filesystem::path& stateDirectory, const support::Log& log);

    const std::filesystem::path& file() const { return stored.path(); }

    /// The rules that have yet to be put into force.
    const std::vector<SavedRule>& awaited() const { return toReplay; }

    /// Ends the waiting: these rules are in force, and those could not be.
    void endReplay(std::vector<SavedRule> inForce, std::vector<WaitingRule> waiting);

    /// Stores the rules in force; those that wait stay stored as well. Throws Failure when that
    /// fails; the file is then unchanged.
    void save(std::vector<SavedRule> inForce);

    /// Writes the file as it is, to find out whether it can be written: a new rule is stored once
    /// it has its condition, and a store that cannot take it must be known before. Throws Failure.
    void checkWritable();

    /// The list is gone, its rules stay stored: from now on they count as waiting.
    void release();

    /// Forgets all rules, those that wait too. Throws Failure.
    void clear();

private:
    void write(SavedRules changed);

    support::StateFile<SavedRules> stored{rulesFormat};
    std::vector<SavedRule> toReplay;
};

}  // namespace bridge
