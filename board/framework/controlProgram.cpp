#include "board/framework/controlProgram.h"

#include "board/framework/Framework.h"
#include "board/framework/controlActions.h"
#include "board/framework/controlReports.h"
#include "board/framework/ownedFilter.h"
#include "control.h"
#include "rte/BLL/core/rpcDispatch.h"

#include <boost/thread/thread.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace framework {

namespace {

std::function<void()> stopHandler;

// The results of the request being served; there is one at a time.
std::string replyText;
controlReply reply;
bool isStopRequested = false;

/// What the record for the counters of rules can carry.
constexpr std::size_t ruleRecordLimit = 201;

std::vector<bllRuleCounter> ruleRecords;
bllRuleCounters ruleCounters;

/// A status and the storage that its pointers point into.
struct Status {
    SettingsValues settings;
    std::vector<EntityRegistry::Status> states;
    std::vector<controlFeature> features;
    std::vector<controlEntity> entities;
    controlStatus record;
} status;

/// The RPC library's records hold pointers to characters that they do not change.
char* textOf(const std::string& text) { return const_cast<char*>(text.c_str()); }

/// Makes a reply of what a body returns or throws. Nothing else may leave it: the caller is C.
template <class Body>
void* replyOf(Body body) {
    reply.result = -1;
    try {
        replyText = body();
        reply.result = 0;
    } catch (const std::exception& error) {
        replyText = error.what();
    } catch (...) {
        replyText = "unknown exception";
    }
    reply.reply = textOf(replyText);
    return &reply;
}

template <class Record>
const Record& as(void* argument) {
    return *static_cast<const Record*>(argument);
}

void* externalMessage(void* argument, svc_req*) {
    const auto& message = as<controlMessage>(argument);
    return replyOf([&] { return control::externalMessage(message.name, message.value); });
}

void* setShelfId(void* argument, svc_req*) {
    return replyOf([&] { return control::setShelfId(as<char*>(argument)); });
}

void* setFeature(void* argument, svc_req*) {
    const auto& feature = as<controlFeature>(argument);
    return replyOf([&] { return control::setFeature(feature.name, feature.on != FALSE); });
}

void* setProfileMode(void* argument, svc_req*) {
    return replyOf([&] { return control::setProfileMode(as<bool_t>(argument) != FALSE); });
}

void* setClearConfig(void* argument, svc_req*) {
    return replyOf([&] { return control::setClearConfig(as<bool_t>(argument) != FALSE); });
}

void* applyDefaults(void*, svc_req*) { return replyOf(control::applyDefaults); }

void fillStatus() {
    status.settings = framework().settings.values();
    status.states = framework().entities.status();
    status.features.clear();
    for (const auto& [name, on] : status.settings.features) {
        status.features.push_back({textOf(name), on});
    }
    status.entities.clear();
    for (const auto& entity : status.states) {
        status.entities.push_back({textOf(entity.name), const_cast<char*>(toString(entity.state))});
    }
    status.record = {
        textOf(status.settings.shelfId),
        status.settings.profileMode,
        framework().clearConfigInProgress,
        {static_cast<u_int>(status.features.size()), status.features.data()},
        {static_cast<u_int>(status.entities.size()), status.entities.data()},
    };
}

void* getStatus(void*, svc_req* request) {
    try {
        fillStatus();
        return &status.record;
    } catch (const std::exception&) {
        svcerr_systemerr(request->rq_xprt);
        return nullptr;
    }
}

/// An answer without rules tells clients that the counters cannot be read; the log tells why.
void* getRuleCounters(void*, svc_req*) {
    ruleRecords.clear();
    int result = -1;
    try {
        const std::vector<RuleCounter> counters = control::ruleCounters();
        if (counters.size() > ruleRecordLimit) {
            throw std::length_error("there are " + std::to_string(counters.size()) + " of them");
        }
        for (const RuleCounter& counter : counters) {
            ruleRecords.push_back(
                {counter.address, counter.netmask, counter.permit, counter.packets, counter.bytes});
        }
        result = 0;
    } catch (const std::exception& error) {
        logLine(LogImpl::levelDebug,
                std::string("the counters of the remote-access rules: ") + error.what());
    }
    ruleCounters = {result, {static_cast<u_int>(ruleRecords.size()), ruleRecords.data()}};
    return &ruleCounters;
}

void* requestStop(void*, svc_req*) {
    return replyOf([] {
        isStopRequested = true;
        return "the process is going to end";
    });
}

void* getVlans(void*, svc_req*) { return answerVlans(); }

void* getDhcp(void*, svc_req*) { return answerDhcp(); }

/// Size of the largest argument.
constexpr std::size_t areaSize =
    std::max({sizeof(controlMessage), sizeof(controlFeature), sizeof(char*), sizeof(bool_t)});

template <class Record, bool_t (*filter)(XDR*, Record*)>
constexpr xdrproc_t argument = rpcFilter<Record, ownedFilter<Record, filter>>;

constexpr xdrproc_t messageArgument = argument<controlMessage, xdr_controlMessage>;
constexpr xdrproc_t textArgument = argument<char*, xdr_wrapstring>;
constexpr xdrproc_t featureArgument = argument<controlFeature, xdr_controlFeature>;
constexpr xdrproc_t boolArgument = argument<bool_t, xdr_bool>;
constexpr xdrproc_t replyResult = rpcFilter<controlReply, xdr_controlReply>;
constexpr xdrproc_t countersResult = rpcFilter<bllRuleCounters, xdr_bllRuleCounters>;
constexpr xdrproc_t statusResult = rpcFilter<controlStatus, xdr_controlStatus>;
constexpr xdrproc_t vlansResult = rpcFilter<controlVlans, xdr_controlVlans>;
constexpr xdrproc_t dhcpResult = rpcFilter<controlDhcp, xdr_controlDhcp>;

const std::array<RpcProcedure, BLL_CONTROL_DHCP + 1> procedures = [] {
    std::array<RpcProcedure, BLL_CONTROL_DHCP + 1> table{};
    table[BLL_EXTERNAL_MESSAGE] = {messageArgument, replyResult, externalMessage};
    table[BLL_SET_SHELF_ID] = {textArgument, replyResult, setShelfId};
    table[BLL_SET_FEATURE] = {featureArgument, replyResult, setFeature};
    table[BLL_SET_PROFILE_MODE] = {boolArgument, replyResult, setProfileMode};
    table[BLL_SET_CLEAR_CONFIG] = {boolArgument, replyResult, setClearConfig};
    table[BLL_APPLY_DEFAULTS] = {rpcVoidFilter, replyResult, applyDefaults};
    table[BLL_GET_STATUS] = {rpcVoidFilter, statusResult, getStatus};
    table[BLL_STOP] = {rpcVoidFilter, replyResult, requestStop};
    table[BLL_CONTROL_RULE_COUNTERS] = {rpcVoidFilter, countersResult, getRuleCounters};
    table[BLL_CONTROL_VLANS] = {rpcVoidFilter, vlansResult, getVlans};
    table[BLL_CONTROL_DHCP] = {rpcVoidFilter, dhcpResult, getDhcp};
    return table;
}();

}  // namespace

void setControlStopHandler(std::function<void()> handler) { stopHandler = std::move(handler); }

void serveControlRequest(svc_req* request, SVCXPRT* transport) {
    // An interruption of the loop takes effect in the loop, not as an exception in a handler.
    const boost::this_thread::disable_interruption uninterrupted;
    alignas(std::max_align_t) std::array<std::byte, areaSize> area;
    rpcDispatch(procedures, area, request, transport);
    if (std::exchange(isStopRequested, false) && stopHandler) {
        stopHandler();
    }
}

}  // namespace framework
