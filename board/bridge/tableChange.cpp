#include "board/bridge/tableChange.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace bridge {

namespace {

using nlohmann::json;

constexpr const char* family = "inet";

/// Collects commands on the parts of a table.
class Commands {
public:
    explicit Commands(std::string tableName) : table(std::move(tableName)) {}

    void onTable(const char* command) {
        commands.push_back({{command, {{"table", {{"family", family}, {"name", table}}}}}});
    }

    void onPart(const char* command, const char* kind, const std::string& name) {
        add(command, kind, {{"name", name}});
    }

    void addInputChain() {
        add("add", "chain",
            {{"name", inputChain},
             {"type", "filter"},
             {"hook", "input"},
             {"prio", 0},
             {"policy", "accept"}});
    }

    /// In front of a rule, or at the end of the chain.
    void addRule(const std::string& chain, const FilterRule& rule, const InstalledRule* successor) {
        json fields = {{"chain", chain}, {"comment", rule.label}, {"expr", rule.expression}};
        if (successor != nullptr) {
            fields["handle"] = successor->handle;
        }
        add(successor == nullptr ? "add" : "insert", "rule", std::move(fields));
    }

    void deleteRule(const std::string& chain, const InstalledRule& rule) {
        add("delete", "rule", {{"chain", chain}, {"handle", rule.handle}});
    }

    json take() { return std::move(commands); }

private:
    void add(const char* command, const char* kind, json fields) {
        fields["family"] = family;
        fields["table"] = table;
        commands.push_back({{command, {{kind, std::move(fields)}}}});
    }

    const std::string table;
    json commands = json::array();
};

/// For each rule wanted the installed one that it is, or null: those that can stay without moving.
std::vector<const InstalledRule*> stayingRules(const std::vector<FilterRule>& wanted,
                                               const std::vector<InstalledRule>& installed) {
    std::vector<const InstalledRule*> staying;
    auto next = installed.begin();
    for (const FilterRule& rule : wanted) {
        const auto found = std::find_if(next, installed.end(), [&](const InstalledRule& candidate) {
            return candidate.label == rule.label;
        });
        staying.push_back(found == installed.end() ? nullptr : &*found);
        if (found != installed.end()) {
            next = found + 1;
        }
    }
    return staying;
}

void changeChain(Commands& commands, const FilterChain& chain,
                 const std::vector<InstalledRule>& installed) {
    const std::vector<const InstalledRule*> staying = stayingRules(chain.rules, installed);
    for (std::size_t index = 0; index < chain.rules.size(); ++index) {
        if (staying[index] == nullptr) {
            const auto successor =
                std::find_if(staying.begin() + static_cast<std::ptrdiff_t>(index), staying.end(),
                             [](const InstalledRule* rule) { return rule != nullptr; });
            commands.addRule(chain.name, chain.rules[index],
                             successor == staying.end() ? nullptr : *successor);
        }
    }
    for (const InstalledRule& rule : installed) {
        if (std::ranges::find(staying, &rule) == staying.end()) {
            commands.deleteRule(chain.name, rule);
        }
    }
}

/// Chains and counters come before the rules that name them, and go after those.
void change(Commands& commands, TableContent content, const std::vector<FilterChain>& chains) {
    std::set<std::string> unusedCounters = content.counters;
    for (const FilterChain& chain : chains) {
        if (!content.chains.contains(chain.name)) {
            chain.name == inputChain ? commands.addInputChain()
                                     : commands.onPart("add", "chain", chain.name);
        }
        for (const FilterRule& rule : chain.rules) {
            if (!rule.counter.empty() && unusedCounters.erase(rule.counter) == 0) {
                commands.onPart("add", "counter", rule.counter);
            }
        }
    }
    for (const FilterChain& chain : chains) {
        changeChain(commands, chain, content.chains[chain.name]);
        content.chains.erase(chain.name);
    }
    for (const auto& [name, rules] : content.chains) {
        commands.onPart("flush", "chain", name);
        commands.onPart("delete", "chain", name);
    }
    for (const std::string& name : unusedCounters) {
        commands.onPart("delete", "counter", name);
    }
}

}  // namespace

TableContent contentOf(const json& listing) {
    TableContent content;
    for (const json& entry : listing) {
        if (const auto chain = entry.find("chain"); chain != entry.end()) {
            content.chains[chain->at("name")];
        } else if (const auto counter = entry.find("counter"); counter != entry.end()) {
            content.counters.insert(counter->at("name").get<std::string>());
        } else if (const auto rule = entry.find("rule"); rule != entry.end()) {
            content.chains[rule->at("chain")].push_back(
                {rule->value("comment", ""), rule->at("handle")});
        }
    }
    return content;
}

json changeTable(const std::string& table, const TableContent& now,
                 const std::vector<FilterChain>& chains) {
    Commands commands(table);
    change(commands, now, chains);
    return commands.take();
}

json makeTable(const std::string& table, const std::vector<FilterChain>& chains) {
    Commands commands(table);
    // A table can only be deleted where there is one.
    commands.onTable("add");
    commands.onTable("delete");
    commands.onTable("add");
    change(commands, {}, chains);
    return commands.take();
}

json removeTable(const std::string& table) {
    Commands commands(table);
    commands.onTable("add");
    commands.onTable("delete");
    return commands.take();
}

std::optional<TableContent> contentAfter(const TableContent& before,
                                         const std::vector<FilterChain>& chains, const json& echo) {
    std::map<std::string, InstalledRule> added;
    for (const json& entry : echo) {
        for (const char* const command : {"add", "insert"}) {
            const auto found = entry.find(command);
            if (found != entry.end() && found->contains("rule")) {
                const json& rule = found->at("rule");
                const std::string label = rule.at("comment");
                added[label] = {label, rule.value("handle", 0ULL)};
            }
        }
    }
    TableContent content;
    for (const FilterChain& chain : chains) {
        std::vector<InstalledRule>& rules = content.chains[chain.name];
        const auto old = before.chains.find(chain.name);
        const std::vector<InstalledRule> none;
        const auto staying =
            stayingRules(chain.rules, old == before.chains.end() ? none : old->second);
        for (std::size_t index = 0; index < chain.rules.size(); ++index) {
            const FilterRule& rule = chain.rules[index];
            const InstalledRule& installed =
                staying[index] != nullptr ? *staying[index] : added[rule.label];
            if (installed.handle == 0) {
                return std::nullopt;
            }
            rules.push_back(installed);
            if (!rule.counter.empty()) {
                content.counters.insert(rule.counter);
            }
        }
    }
    return content;
}

}  // namespace bridge
