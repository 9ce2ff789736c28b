#include "board/bridge/Nftables.h"

#include "board/bridge/bridgeCodes.h"
#include "board/support/Descriptor.h"

#include <linux/netlink.h>
#include <nftables/libnftables.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

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

}  // namespace

json runNftables(const json& commands) { return run(commands, NFT_CTX_OUTPUT_ECHO); }

// A listing would be echoed as well, behind itself.
json listNftables(const json& command) { return run(json::array({command}), 0); }

}  // namespace bridge
