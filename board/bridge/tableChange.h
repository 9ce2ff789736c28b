#pragma once

#include "board/bridge/filterRules.h"

#include <nlohmann/json.hpp>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace bridge {

/// A rule in the kernel.
struct InstalledRule {
    std::string label;
    unsigned long long handle;  ///< unique in the table

    bool operator==(const InstalledRule&) const = default;
};

/// What a table of the kernel holds.
struct TableContent {
    std::map<std::string, std::vector<InstalledRule>> chains;
    std::set<std::string> counters;

    bool operator==(const TableContent&) const = default;
};

/// What a table holds, as nftables lists it.
TableContent contentOf(const nlohmann::json& listing);

/// The commands that make a table hold chains; none when it does. A rule that stays where it is, in
/// relation to the others that stay, is not touched. Commands are for libnftables-json(5).
nlohmann::json changeTable(const std::string& table, const TableContent& now,
                           const std::vector<FilterChain>& chains);

/// The same for a table that does not exist, or that is to be replaced.
nlohmann::json makeTable(const std::string& table, const std::vector<FilterChain>& chains);

nlohmann::json removeTable(const std::string& table);

/// What a table holds after a change, told by what it held before and by the echo of the commands,
/// which has the handles of new rules. Nothing when the echo is not complete.
std::optional<TableContent> contentAfter(const TableContent& before,
                                         const std::vector<FilterChain>& chains,
                                         const nlohmann::json& echo);

}  // namespace bridge
