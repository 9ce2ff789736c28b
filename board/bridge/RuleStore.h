#pragma once

#include "board/bridge/rulesDocument.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace bridge {

/// The rules of the remote-access list, kept across restarts in the file `remote-access.json` of a
/// state directory. Until open() nothing is kept.
///
/// The product starts with an empty list, and what was stored is put into force again rule by rule.
/// Until that is complete the file is not touched: a process that ends half-way has lost nothing.
class RuleStore {
public:
    /// Reads the file. One that is damaged is renamed and reported. Throws std::system_error when
    /// it can be neither read nor set aside.
    void open(const std::filesystem::path& stateDirectory,
              const std::function<void(const std::string& message)>& report);

    const std::filesystem::path& file() const { return path; }

    /// The rules that have yet to be put into force.
    const std::vector<SavedRule>& awaited() const { return toReplay; }

    /// Ends the waiting: these rules are in force, and those could not be.
    void endReplay(std::vector<SavedRule> inForce, std::vector<WaitingRule> waiting);

    /// Stores the rules in force; those that wait stay stored as well. Throws Failure when that
    /// fails; the file is then unchanged.
    void save(std::vector<SavedRule> inForce);

    /// Writes the file as it is, to find out whether it can be written. Throws Failure.
    void checkWritable();

    /// The list is gone, its rules stay stored: from now on they count as waiting.
    void release();

    /// Forgets all rules, those that wait too. Throws Failure.
    void clear();

private:
    void write(SavedRules rules);

    std::filesystem::path path;  ///< empty: nothing is kept
    SavedRules stored;
    std::vector<SavedRule> toReplay;
};

}  // namespace bridge
