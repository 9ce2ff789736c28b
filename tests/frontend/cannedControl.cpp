#include "cannedBoard.h"

namespace canned {

namespace {

bool_t filterNothing(XDR* /*stream*/, bool_t* /*value*/) { return TRUE; }

void sendReply(SVCXPRT* transport, std::string text) {
    controlReply reply{board().behaviour.refuse ? -1 : 0, text.data()};
    std::string reason = "not now";
    if (board().behaviour.refuse) {
        reply.reply = reason.data();
    }
    svc_sendreply(transport, asFilter(xdr_controlReply), &reply);
}

void sendCounters(SVCXPRT* transport) {
    const Board& all = board();
    std::vector<bllRuleCounter> counters;
    for (const auto& rule : all.state.rules) {
        const auto place = static_cast<unsigned>(counters.size() + 1);
        counters.push_back({rule.ipAddress, rule.netmask, rule.flag, place, 0x100000000U * place});
    }
    counters.push_back({0, 0, FALSE, 7, 420});
    if (all.behaviour.counters == "wrong") {
        counters.front().permit = !counters.front().permit;
    }
    const bool failed = all.behaviour.counters == "failed";
    bllRuleCounters answer{failed ? -1 : 0, {static_cast<u_int>(counters.size()), counters.data()}};
    svc_sendreply(transport, asFilter(xdr_bllRuleCounters), &answer);
}

void sendStatus(SVCXPRT* transport) {
    const State& state = board().state;
    std::string shelf = state.shelfId;
    std::string featureNames[] = {"httpserver", "snmp"};
    controlFeature features[] = {{featureNames[0].data(), state.webServer ? TRUE : FALSE},
                                 {featureNames[1].data(), TRUE}};
    std::string entityName = "network";
    std::string entityState = "started";
    controlEntity entities[] = {{entityName.data(), entityState.data()}};
    controlStatus status{};
    status.shelfId = shelf.data();
    status.profileMode = state.profileMode ? TRUE : FALSE;
    status.clearConfigInProgress = state.clearConfig ? TRUE : FALSE;
    status.features.features_len = 2;
    status.features.features_val = features;
    status.entities.entities_len = 1;
    status.entities.entities_val = entities;
    svc_sendreply(transport, asFilter(xdr_controlStatus), &status);
}

/// Decodes the argument, has it handled, and releases it.
template <class Argument, class Filter, class Handle>
void withArgument(SVCXPRT* transport, Filter* filter, const Handle& handle) {
    Argument argument{};
    if (!svc_getargs(transport, asFilter(filter), &argument)) {
        return svcerr_decode(transport);
    }
    handle(argument);
    svc_freeargs(transport, asFilter(filter), &argument);
}

/// What the board tells of what it has in force.
void dispatchReport(const svc_req* request, SVCXPRT* transport) {
    switch (request->rq_proc) {
        case BLL_CONTROL_RULE_COUNTERS:
            tell("counters");
            if (board().behaviour.counters == "none") {
                return svcerr_noproc(transport);
            }
            return sendCounters(transport);
        case BLL_CONTROL_VLANS:
            tell("vlans");
            return sendVlans(transport);
        case BLL_CONTROL_DHCP:
            tell("dhcp");
            return sendDhcp(transport);
        default:
            return svcerr_noproc(transport);
    }
}

}  // namespace

void dispatchControl(svc_req* request, SVCXPRT* transport) {
    State& state = board().state;
    const bool accept = !board().behaviour.refuse;
    switch (request->rq_proc) {
        case NULLPROC: {
            bool_t nothing = FALSE;
            svc_sendreply(transport, asFilter(filterNothing), &nothing);
            return;
        }
        case BLL_EXTERNAL_MESSAGE:
            return withArgument<controlMessage>(transport, xdr_controlMessage, [&](auto& message) {
                tell(std::string("message ") + message.name + " " + message.value);
                sendReply(transport, std::string(message.name) + " is now " + message.value +
                                         "\nby \x1b[31mnetwork\n");
            });
        case BLL_SET_SHELF_ID:
            return withArgument<char*>(transport, xdr_wrapstring, [&](char* id) {
                tell(std::string("shelf ") + id);
                if (accept) {
                    state.shelfId = id;
                }
                sendReply(transport, "");
            });
        case BLL_SET_FEATURE:
            return withArgument<controlFeature>(transport, xdr_controlFeature, [&](auto& feature) {
                tell(std::string("feature ") + feature.name + (feature.on ? " on" : " off"));
                if (accept) {
                    state.webServer = feature.on != 0;
                }
                sendReply(transport, "");
            });
        case BLL_SET_PROFILE_MODE:
            return withArgument<bool_t>(transport, xdr_bool, [&](bool_t on) {
                tell(on ? "profile on" : "profile off");
                state.profileMode = on != 0;
                sendReply(transport, "");
            });
        case BLL_SET_CLEAR_CONFIG:
            return withArgument<bool_t>(transport, xdr_bool, [&](bool_t start) {
                tell(start ? "clear-config start" : "clear-config finish");
                state.clearConfig = start != 0;
                sendReply(transport, "");
            });
        case BLL_APPLY_DEFAULTS:
            tell("defaults");
            return sendReply(transport, "");
        case BLL_GET_STATUS:
            tell("status");
            return sendStatus(transport);
        case BLL_STOP:
            tell("stop");
            return sendReply(transport, "");
        default:
            return dispatchReport(request, transport);
    }
}

}  // namespace canned
