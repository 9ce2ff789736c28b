#include "cannedBoard.h"

#include <cstring>

namespace canned {

namespace {

void clearText(std::string& text, void* result) {
    if (text.empty()) {
        refuse(result);
    }
    text.clear();
}

/// With the lease, the client's address; as on the board, separated by blanks.
std::string addressList(const State& state) {
    std::string list = "fe80::5eff:fe10:a/64";
    if (state.dhcp6) {
        list = "2001:db8::100/128 " + list;
    }
    return state.ipv6Address.empty() ? list : state.ipv6Address + " " + list;
}

}  // namespace

bool answerIpv6(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_get_ipv6addr: {
            auto& data = as<rpcNetworkIpv6Data>(result);
            copy(data.addresses, addressList(state));
            copy(data.gateway, state.ipv6Gateway);
            return true;
        }
        case rpc_network_set_ipv6addr: {
            const auto& wanted = as<rpc_network_set_ipv6addr_1_argument>(argument);
            state.ipv6Address =
                std::string(wanted.address) + "/" + std::to_string(wanted.prefixLength);
            return true;
        }
        case rpc_network_set_ipv6gw:
            state.ipv6Gateway = as<char*>(argument);
            return true;
        case rpc_network_remove_ipv6addr:
            clearText(state.ipv6Address, result);
            return true;
        case rpc_network_remove_ipv6gw:
            clearText(state.ipv6Gateway, result);
            return true;
        case rpc_network_get_ipv6proto:
            return give<bool_t>(result, state.dhcp6 ? TRUE : FALSE);
        case rpc_network_set_ipv6proto:
            if (!board().behaviour.refuse) {
                state.dhcp6 = as<bool_t>(argument) != FALSE;
            }
            return true;
        default:
            return false;
    }
}

void sendDhcp(SVCXPRT* transport) {
    const State& state = board().state;
    std::string reason;
    std::string vendorClass = "VANTORIX";
    std::string circuitId = "VANTORIX:" + state.shelfId + " eth 1:1:\x1b";
    controlDhcp answer{0,
                       nullptr,
                       state.info.vendorClassEnabled,
                       vendorClass.data(),
                       state.info.option82Enabled,
                       circuitId.data()};
    if (board().behaviour.refuse) {
        reason = "no client";
        answer.result = -1;
    }
    answer.reply = reason.data();
    svc_sendreply(transport, asFilter(xdr_controlDhcp), &answer);
}

}  // namespace canned
