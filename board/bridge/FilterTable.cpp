#include "board/bridge/FilterTable.h"

#include "board/bridge/Nftables.h"
#include "board/bridge/bridgeCodes.h"
#include "board/bridge/tableChange.h"
#include "board/framework/Framework.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace bridge {

namespace {

using nlohmann::json;

json listing(const char* what, json of) {
    of["family"] = "inet";
    return listNftables({{"list", {{what, std::move(of)}}}});
}

}  // namespace

FilterTable::FilterTable(std::string tableName) : table(std::move(tableName)) {}

void FilterTable::apply(const std::vector<AccessList>& lists) {
    if (lists.empty()) {
        if (!inForce.chains.empty()) {
            runNftables(removeTable(table));
            inForce = {};
        }
        return;
    }
    const std::vector<FilterChain> wanted = filterChains(lists);
    if (inForce.chains.empty()) {
        makeAnew(wanted);
        return;
    }
    try {
        change(inForce, wanted);
    } catch (const Failure& failure) {
        repair(wanted, failure);
    }
}

void FilterTable::run(const json& commands, const TableContent& now,
                      const std::vector<FilterChain>& wanted) {
    if (!commands.empty()) {
        const auto content = contentAfter(now, wanted, runNftables(commands));
        inForce = content ? *content : list().value_or(TableContent());
    }
}

void FilterTable::makeAnew(const std::vector<FilterChain>& wanted) {
    run(makeTable(table, wanted), {}, wanted);
}

void FilterTable::change(const TableContent& now, const std::vector<FilterChain>& wanted) {
    run(changeTable(table, now, wanted), now, wanted);
}

/// A change that is refused because someone else has been at the table is made all the same.
void FilterTable::repair(const std::vector<FilterChain>& wanted, const Failure& cause) {
    const auto warn = [this](const std::string& what) {
        framework::logLine(LogImpl::levelWarning,
                           "the table " + table + " of the packet filter was " + what);
    };
    const std::optional<TableContent> found = list();
    if (!found) {
        makeAnew(wanted);
        warn("removed by someone else: it is made anew, with counters at 0");
    } else if (*found != inForce) {
        change(*found, wanted);
        warn("changed by someone else: it is put right");
    } else {
        throw Failure(cause);
    }
}

std::map<std::string, Count> FilterTable::counts() const {
    std::map<std::string, Count> result;
    if (inForce.chains.empty()) {
        return result;
    }
    for (const json& entry : listing("counters", {{"table", table}})) {
        if (const auto counter = entry.find("counter");
            counter != entry.end() && counter->value("table", "") == table) {
            result[counter->at("name")] = {counter->at("packets"), counter->at("bytes")};
        }
    }
    return result;
}

std::optional<TableContent> FilterTable::list() const {
    try {
        return contentOf(listing("table", {{"name", table}}));
    } catch (const Failure&) {
        if (exists()) {
            throw;
        }
        return std::nullopt;
    }
}

bool FilterTable::exists() const {
    return std::ranges::any_of(listing("tables", json::object()), [this](const json& entry) {
        const auto found = entry.find("table");
        return found != entry.end() && found->value("name", "") == table;
    });
}

}  // namespace bridge
