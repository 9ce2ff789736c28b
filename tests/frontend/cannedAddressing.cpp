#include "cannedBoard.h"

#include <cstring>

namespace canned {

namespace {

bool isInNetwork(const State& state, unsigned address) {
    return ((address ^ state.info.ipAddress) & state.info.netmask) == 0;
}

/// As on the board, half of the work leaves the interface without an address.
void setIp(State& state, bool halfWay, const rpc_network_set_ip_1_argument& wanted, void* result) {
    state.info.dhcpEnabled = FALSE;
    state.info.ipAddress = halfWay ? 0 : wanted.ipAddress;
    state.info.netmask = halfWay ? 0 : wanted.netmask;
    if (halfWay || !isInNetwork(state, state.gateway)) {
        state.gateway = 0;
    }
    if (halfWay) {
        refuse(result);
    }
}

/// The old route goes first. The new one needs a gateway that can be reached.
void setGateway(State& state, unsigned gateway, void* result) {
    if (gateway == state.gateway) {
        return;
    }
    state.gateway = 0;
    if (gateway != 0 && !isInNetwork(state, gateway)) {
        return refuse(result);
    }
    state.gateway = gateway;
}

void addRule(State& state, bool halfWay, const rpc_network_add_ra_rule_1_argument& wanted,
             void* result) {
    auto& rules = state.rules;
    const bool append = wanted.index == 0 || wanted.index > rules.size();
    rules.insert(append ? rules.end() : rules.begin() + (wanted.index - 1),
                 {0, wanted.ipAddress, wanted.netmask, wanted.flag});
    if (halfWay) {
        refuse(result);
    }
}

void removeRule(State& state, bool halfWay, unsigned position, void* result) {
    if (halfWay) {
        state.rules.pop_back();
        return refuse(result);
    }
    if (position == 0) {
        return state.rules.clear();
    }
    if (position > state.rules.size()) {
        return refuse(result);
    }
    state.rules.erase(state.rules.begin() + (position - 1));
}

void readRule(const State& state, unsigned index, rpcNetworkRemoteAccessResult& result) {
    if (index >= state.rules.size()) {
        return refuse(&result);
    }
    result.rule = state.rules[index];
    result.rule.index = index + 1;
}

}  // namespace

bool answerAddressing(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    const auto failing = [](const char* name) { return board().behaviour.failHalfWay == name; };
    switch (procedure) {
        case rpc_network_get_network_info:
            return give<rpcNetworkInfo>(result, state.info);
        case rpc_network_get_gateway:
            as<rpcNetworkIpResult>(result).ipAddress = state.gateway;
            return true;
        case rpc_network_set_ip:
            setIp(state, failing("set_ip"), as<rpc_network_set_ip_1_argument>(argument), result);
            return true;
        case rpc_network_set_gateway:
            setGateway(state, as<unsigned>(argument), result);
            return true;
        case rpc_network_set_protocol:
            return take<bool_t>(state.info.dhcpEnabled, argument);
        case rpc_network_set_vendor: {
            const auto& wanted = as<rpc_network_set_vendor_1_argument>(argument);
            state.info.vendorClassEnabled = wanted.vendor;
            if (wanted.dhcp && wanted.vendor) {
                state.info.dhcpEnabled = TRUE;
            }
            return true;
        }
        case rpc_network_set_option82:
            state.info.option82Enabled = as<rpc_network_set_option82_1_argument>(argument).option82;
            return true;
        case rpc_network_add_ra_rule:
            addRule(state, failing("add_ra_rule"), as<rpc_network_add_ra_rule_1_argument>(argument),
                    result);
            return true;
        case rpc_network_remove_ra_rule:
            removeRule(state, failing("remove_ra_rule"), as<unsigned>(argument), result);
            return true;
        case rpc_network_iterate_rules:
            readRule(state, as<unsigned>(argument), as<rpcNetworkRemoteAccessResult>(result));
            return true;
        default:
            return false;
    }
}

}  // namespace canned
