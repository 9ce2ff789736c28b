#include "board/bridge/FilterTable.h"

#include "board/bridge/bridgeCodes.h"
#include "board/bridge/tableChange.h"
#include "board/framework/Framework.h"
#include "board/support/Descriptor.h"

#include <linux/netlink.h>
#include <nftables/libnftables.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace bridge {

namespace {

using nlohmann::json;

struct Closer {
    void operator()(nft_ctx* context) const { nft_ctx_free(context); }
};
using Context = std::unique_ptr<nft_ctx, Closer>;

/// The library ends the process where it gets no socket, so it is tried beforehand.
void checkKernel() {
    const support::Descriptor probe(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_NETFILTER));
    if (!probe) {
        throw Failure(filterFailed,
                      std::string("the kernel has no packet filter: ") + std::strerror(errno));
    }
}

/// A context for each transaction: its socket belongs to the network namespace of this moment, and
/// no child process inherits it for long.
Context makeContext(unsigned int moreFlags) {
    checkKernel();
    Context context(nft_ctx_new(NFT_CTX_DEFAULT));
    if (!context || nft_ctx_buffer_output(context.get()) != 0 ||
        nft_ctx_buffer_error(context.get()) != 0) {
        throw Failure(filterFailed, "libnftables cannot be set up");
    }
    nft_ctx_output_set_flags(context.get(),
                             NFT_CTX_OUTPUT_JSON | NFT_CTX_OUTPUT_HANDLE | moreFlags);
    return context;
}

/// "internal:0:0-0: Error: Could not process rule: ...", and then a picture of the command line.
std::string reasonIn(std::string_view message) {
    constexpr std::string_view mark = "Error: ";
    if (const auto start = message.find(mark); start != message.npos) {
        message.remove_prefix(start + mark.size());
    }
    message = message.substr(0, message.find('\n'));
    return message.empty() ? "it gives no reason" : std::string(message);
}

json run(const json& commands, unsigned int outputFlags) {
    const std::string input = json{{"nftables", commands}}.dump();
    const Context context = makeContext(outputFlags);
    if (nft_run_cmd_from_buffer(context.get(), input.c_str()) != 0) {
        throw Failure(filterFailed,
                      "nftables: " + reasonIn(nft_ctx_get_error_buffer(context.get())));
    }
    const std::string_view output = nft_ctx_get_output_buffer(context.get());
    return output.empty() ? json() : json::parse(output).at("nftables");
}

/// Runs commands in libnftables-json(5) form, all in one transaction: they take effect together or
/// not at all. Returns them with the handles of what they made, null for nothing. Throws Failure
/// with the first line of nft's own message. Not for two threads at a time: the library keeps state
/// of the process.
json runNftables(const json& commands) { return run(commands, NFT_CTX_OUTPUT_ECHO); }

/// Runs one command that lists; returns what it lists. A listing would be echoed as well, behind
/// itself.
json listNftables(const json& command) { return run(json::array({command}), 0); }

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
