#include "board/varo/settings/groupsSnmp.h"

namespace varo {

namespace {

constexpr std::int32_t trapPort = 162;  // of the IANA registry, snmptrap

}  // namespace

const Group<varoLib_s_subag>& trapManagersGroup() {
    using Record = varoLib_s_subag;
    static const auto& group =
        *new Group<Record>("trap_managers", Rows::single, Record{.port = trapPort, .managers = {}},
                           {
                               column("port", &Record::port),
                               entries("manager", &Record::managers,
                                       {
                                           ipv4Column("address", &TrapManager::ipAddress),
                                           column("community", &TrapManager::community),
                                       }),
                           });
    return group;
}

const Group<varoLib_s_snmpCommunity>& snmpCommunitiesGroup() {
    using Record = varoLib_s_snmpCommunity;
    static const auto& group =
        *new Group<Record>("snmp_communities", Rows::single, Record{},
                           {
                               entries("community", &Record::communities,
                                       {
                                           column("name", &SnmpCommunity::name),
                                           column("access", &SnmpCommunity::access),
                                       }),
                           });
    return group;
}

const Group<varoLib_s_snmpSystem>& snmpSystemGroup() {
    using Record = varoLib_s_snmpSystem;
    static const auto& group = *new Group<Record>("snmp_system", Rows::single, Record{},
                                                  {
                                                      column("contact", &Record::contact),
                                                      column("location", &Record::location),
                                                      column("name", &Record::name),
                                                  });
    return group;
}

}  // namespace varo
