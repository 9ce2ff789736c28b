#include "mngctl/wire/choices.h"

namespace mngctl {

template <>
std::span<const Choice> choicesOf<rpcArpType>() {
    static constexpr Choice choices[] = {{"other", rpcArpOther},
                                         {"invalid", rpcArpInvalid},
                                         {"dynamic", rpcArpDynamic},
                                         {"static", rpcArpStatic}};
    return choices;
}

template <>
std::span<const Choice> choicesOf<rpcVlanMode>() {
    static constexpr Choice choices[] = {
        {"none", rpcVlanNone}, {"tagged", rpcVlanTagged}, {"native", rpcVlanNative}};
    return choices;
}

template <>
std::span<const Choice> choicesOf<rpcNetworkSprotocol>() {
    static constexpr Choice choices[] = {
        {"tls", rpcSprotocolTls}, {"ssl", rpcSprotocolSsl}, {"both", rpcSprotocolBoth}};
    return choices;
}

template <>
std::span<const Choice> choicesOf<rpcSnmpCommunityAccess>() {
    static constexpr Choice choices[] = {{"none", rpcSnmpCommunityNone},
                                         {"read-only", rpcSnmpCommunityReadOnly},
                                         {"read-write", rpcSnmpCommunityReadWrite}};
    return choices;
}

template <>
std::span<const Choice> choicesOf<rpcSnmpSystemSelector>() {
    static constexpr Choice choices[] = {{"contact", rpcSnmpSystemContact},
                                         {"location", rpcSnmpSystemLocation},
                                         {"name", rpcSnmpSystemName}};
    return choices;
}

}  // namespace mngctl
