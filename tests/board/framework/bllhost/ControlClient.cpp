#include "ControlClient.h"

#include "rte/BLL/core/rpcDispatch.h"
#include "support/loopback.h"

#include <rpc/pmap_clnt.h>
#include <sys/time.h>

#include <sstream>
#include <stdexcept>

namespace test {

namespace {

constexpr timeval patience{60, 0};
/// Longer than a request takes, which would else be served twice.
constexpr timeval retransmission{30, 0};

char* textOf(const std::string& text) { return const_cast<char*>(text.c_str()); }

/// A message whose second text claims a length that no text has.
bool_t encodeBrokenMessage(XDR* xdrs, char** name) {
    u_int impossible = ~0U;
    return xdr_wrapstring(xdrs, name) && xdr_u_int(xdrs, &impossible);
}

std::string onOff(bool_t value) { return value != FALSE ? "on" : "off"; }

}  // namespace

// Not by clnt_create(3), whose cache of addresses leaks.
ControlClient::ControlClient(int protocol) {
    sockaddr_in address = loopbackAddress();
    address.sin_port = htons(pmap_getport(&address, BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION,
                                          static_cast<u_int>(protocol)));
    int createOne = RPC_ANYSOCK;
    if (address.sin_port != 0) {
        client.reset(protocol == IPPROTO_UDP
                         ? clntudp_create(&address, BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION,
                                          retransmission, &createOne)
                         : clnttcp_create(&address, BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION,
                                          &createOne, 0, 0));
    }
    if (!client) {
        throw std::runtime_error(clnt_spcreateerror("control program"));
    }
    timeval total = patience;
    clnt_control(client.get(), CLSET_TIMEOUT, reinterpret_cast<char*>(&total));
}

std::string ControlClient::finish(clnt_stat result, controlReply& reply) {
    if (result != RPC_SUCCESS) {
        throw std::runtime_error(clnt_sperror(client.get(), "control program"));
    }
    std::string text = std::to_string(reply.result) + ": " + reply.reply;
    clnt_freeres(client.get(), (rpcFilter<controlReply, xdr_controlReply>), &reply);
    return text;
}

std::string ControlClient::externalMessage(const std::string& name, const std::string& value) {
    controlMessage message{textOf(name), textOf(value)};
    controlReply reply{};
    return finish(bll_external_message_1(&message, &reply, client.get()), reply);
}

std::string ControlClient::setShelfId(const std::string& id) {
    char* text = textOf(id);
    controlReply reply{};
    return finish(bll_set_shelf_id_1(&text, &reply, client.get()), reply);
}

std::string ControlClient::setFeature(const std::string& name, bool on) {
    controlFeature feature{textOf(name), on};
    controlReply reply{};
    return finish(bll_set_feature_1(&feature, &reply, client.get()), reply);
}

std::string ControlClient::setProfileMode(bool on) {
    bool_t value = on;
    controlReply reply{};
    return finish(bll_set_profile_mode_1(&value, &reply, client.get()), reply);
}

std::string ControlClient::setClearConfig(bool on) {
    bool_t value = on;
    controlReply reply{};
    return finish(bll_set_clear_config_1(&value, &reply, client.get()), reply);
}

std::string ControlClient::applyDefaults() {
    controlReply reply{};
    return finish(bll_apply_defaults_1(nullptr, &reply, client.get()), reply);
}

std::string ControlClient::stop() {
    controlReply reply{};
    return finish(bll_stop_1(nullptr, &reply, client.get()), reply);
}

std::vector<std::string> ControlClient::status() {
    controlStatus status{};
    if (bll_get_status_1(nullptr, &status, client.get()) != RPC_SUCCESS) {
        throw std::runtime_error(clnt_sperror(client.get(), "control program"));
    }
    std::vector<std::string> lines{
        "shelfId " + std::string(status.shelfId),
        "profileMode " + onOff(status.profileMode),
        "clearConfigInProgress " + onOff(status.clearConfigInProgress),
    };
    for (u_int index = 0; index < status.features.features_len; ++index) {
        const controlFeature& feature = status.features.features_val[index];
        lines.push_back("feature " + std::string(feature.name) + " " + onOff(feature.on));
    }
    for (u_int index = 0; index < status.entities.entities_len; ++index) {
        const controlEntity& entity = status.entities.entities_val[index];
        lines.push_back("entity " + std::string(entity.name) + " " + entity.state);
    }
    clnt_freeres(client.get(), (rpcFilter<controlStatus, xdr_controlStatus>), &status);
    return lines;
}

std::vector<std::string> ControlClient::ruleCounters() {
    bllRuleCounters counters{};
    if (bll_control_rule_counters_1(nullptr, &counters, client.get()) != RPC_SUCCESS) {
        throw std::runtime_error(clnt_sperror(client.get(), "control program"));
    }
    std::vector<std::string> lines{"status " + std::to_string(counters.status)};
    for (u_int index = 0; index < counters.rules.rules_len; ++index) {
        const bllRuleCounter& rule = counters.rules.rules_val[index];
        std::ostringstream line;
        line << (rule.permit != FALSE ? "permit " : "deny ") << std::hex << rule.address << " "
             << rule.netmask << std::dec << " " << rule.packets << " packets " << rule.bytes
             << " bytes";
        lines.push_back(line.str());
    }
    clnt_freeres(client.get(), (rpcFilter<bllRuleCounters, xdr_bllRuleCounters>), &counters);
    return lines;
}

std::vector<std::string> ControlClient::vlans() {
    controlVlans vlans{};
    if (bll_control_vlans_1(nullptr, &vlans, client.get()) != RPC_SUCCESS) {
        throw std::runtime_error(clnt_sperror(client.get(), "control program"));
    }
    std::vector<std::string> lines;
    if (vlans.result != 0) {
        lines.push_back(std::to_string(vlans.result) + ": " + vlans.reply);
    }
    for (u_int index = 0; index < vlans.vlans.vlans_len; ++index) {
        const controlVlan& vlan = vlans.vlans.vlans_val[index];
        std::string line = "vlan " + std::to_string(vlan.id) + ": members";
        for (u_int port = 0; port < vlan.members.members_len; ++port) {
            line += " " + std::to_string(vlan.members.members_val[port]);
        }
        line += ", pvid";
        for (u_int port = 0; port < vlan.pvidPorts.pvidPorts_len; ++port) {
            line += " " + std::to_string(vlan.pvidPorts.pvidPorts_val[port]);
        }
        lines.push_back(line);
    }
    lines.push_back("default " + std::to_string(vlans.defaultVlan) +
                    (vlans.defaultNative != FALSE ? " native" : " tagged"));
    lines.push_back("stored " + std::to_string(vlans.managementVlan));
    clnt_freeres(client.get(), (rpcFilter<controlVlans, xdr_controlVlans>), &vlans);
    return lines;
}

clnt_stat ControlClient::sendBrokenMessage() {
    const std::string name = "a text that is decoded before the failure";
    char* text = textOf(name);
    return clnt_call(client.get(), BLL_EXTERNAL_MESSAGE, (rpcFilter<char*, encodeBrokenMessage>),
                     &text, rpcVoidFilter, nullptr, patience);
}

}  // namespace test
