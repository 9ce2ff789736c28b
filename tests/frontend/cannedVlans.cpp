#include "cannedBoard.h"

#include <cstring>

namespace canned {

bool answerVlan(rpcproc_t procedure, void* argument, void* result) {
    State& state = board().state;
    switch (procedure) {
        case rpc_network_get_network_info:
            return give<rpcNetworkInfo>(result, state.info);
        case rpc_network_set_vlan:
            return take<unsigned>(state.info.mngVlanId, argument);
        case rpc_network_set_def_vlan_mode: {
            const auto& wanted = as<rpc_network_set_def_vlan_mode_1_argument>(argument);
            state.info.defVid = wanted.vlanId;
            std::memcpy(&state.info.defVlanMode, &wanted.mode, sizeof wanted.mode);
            return true;
        }
        default:
            return false;
    }
}

void sendVlans(SVCXPRT* transport) {
    const std::string& behaviour = board().behaviour.vlans;
    if (behaviour == "none") {
        return svcerr_noproc(transport);
    }
    int both[] = {1, 100};
    controlVlan list[] = {{1, {2, both}, {1, both}},
                          {10, {0, nullptr}, {0, nullptr}},
                          {20, {1, both + 1}, {1, both + 1}}};
    std::string reason;
    controlVlans answer{0, nullptr, {3, list}, 20, TRUE, behaviour == "stored" ? 10U : 0U};
    if (behaviour == "failed") {
        reason = "no \x1b[31mswitch";
        answer = {-1, nullptr, {0, nullptr}, 0, FALSE, 0};
    }
    answer.reply = reason.data();
    svc_sendreply(transport, asFilter(xdr_controlVlans), &answer);
}

}  // namespace canned
