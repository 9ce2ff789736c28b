#pragma once

#include "board/bridge/AccessList.h"
#include "board/bridge/bridgeCodes.h"
#include "board/bridge/tableChange.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bridge {

/// What a rule has matched.
struct Count {
    unsigned long long packets = 0;
    unsigned long long bytes = 0;
};

/// The access lists in the kernel: a table of nftables, family inet, that is ours alone.
class FilterTable {
public:
    explicit FilterTable(std::string table);

    /// Makes the table hold these lists, in one transaction that leaves alone what stays: a packet
    /// meets the old lists or the new ones, and counters go on. The first call replaces what a
    /// former process has left; without lists there is no table. Throws Failure; the table is then
    /// as it was.
    void apply(const std::vector<AccessList>& lists);

    /// By the name of the counter.
    std::map<std::string, Count> counts() const;

private:
    void run(const nlohmann::json& commands, const TableContent& now,
             const std::vector<FilterChain>& wanted);
    void makeAnew(const std::vector<FilterChain>& wanted);
    void change(const TableContent& now, const std::vector<FilterChain>& wanted);
    void repair(const std::vector<FilterChain>& wanted, const Failure& cause);
    std::optional<TableContent> list() const;
    bool exists() const;

    const std::string table;
    TableContent inForce;  ///< without chains: there is no table of this process
};

}  // namespace bridge
