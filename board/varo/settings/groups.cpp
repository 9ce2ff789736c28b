#include "board/varo/settings/groups.h"

#include "board/varo/settings/groupsServices.h"
#include "board/varo/settings/groupsSnmp.h"
#include "board/varo/settings/groupsTime.h"
#include "board/varo/store/schema.h"

namespace varo {

// Groups are made on first use, so that calls are answered before main() as well, and never
// destroyed, so that they are while the process ends.

namespace {

varoLib_s_dhcp factoryDhcp() {
    varoLib_s_dhcp dhcp{};
    dhcp.dhcpEnabled = 1;
    return dhcp;
}

}  // namespace

const Group<varoLib_s_internalConfig>& internalConfigGroup() {
    using Record = varoLib_s_internalConfig;
    static const auto& group =
        *new Group<Record>("internal_config", Rows::single, Record{.severity = 3},
                           {
                               column("severity", &Record::severity),
                           });
    return group;
}

const Group<Ipv4Settings>& ipv4Group() {
    using Record = Ipv4Settings;
    static const auto& group = *new Group<Record>("ipv4", Rows::single, Record{},
                                                  {
                                                      ipv4Column("address", &Record::address),
                                                      ipv4Column("netmask", &Record::netmask),
                                                      ipv4Column("gateway", &Record::gateway),
                                                  });
    return group;
}

const Group<varoLib_s_dhcp>& dhcpGroup() {
    using Record = varoLib_s_dhcp;
    static const auto& group =
        *new Group<Record>("dhcp", Rows::single, factoryDhcp(),
                           {
                               column("enabled", &Record::dhcpEnabled),
                               column("vendor_class", &Record::vendorClassEnabled),
                               column("option82", &Record::option82Enabled),
                               column("circuit_id", &Record::circuitId),
                           });
    return group;
}

const Group<Ipv6Settings>& ipv6Group() {
    using Record = Ipv6Settings;
    static const auto& group =
        *new Group<Record>("ipv6", Rows::single, Record{},
                           {
                               column("address", &Record::address),
                               column("prefix_length", &Record::prefixLength),
                               column("gateway", &Record::gateway),
                           });
    return group;
}

const Group<varoLib_s_dhcp6>& dhcp6Group() {
    using Record = varoLib_s_dhcp6;
    static const auto& group =
        *new Group<Record>("dhcp6", Rows::single, Record{.updateSelector = 0, .dhcpEnabled = 1},
                           {
                               column("enabled", &Record::dhcpEnabled),
                           });
    return group;
}

const Group<varoLib_s_dns>& dnsGroup() {
    using Record = varoLib_s_dns;
    static const auto& group =
        *new Group<Record>("dns", Rows::bySource, Record{},
                           {
                               column("domain", &Record::domain),
                               ipv4Column("primary_server", &Record::ip_pri),
                               ipv4Column("secondary_server", &Record::ip_sec),
                           });
    return group;
}

const Group<varoLib_s_dns6>& dns6Group() {
    using Record = varoLib_s_dns6;
    static const auto& group = *new Group<Record>("dns6", Rows::bySource, Record{},
                                                  {
                                                      column("domain", &Record::domain),
                                                      column("primary_server", &Record::ipv6_pri),
                                                      column("secondary_server", &Record::ipv6_sec),
                                                  });
    return group;
}

const Schema& schema() {
    static const auto& all = *new Schema{
        .tables = {&internalConfigGroup(), &ipv4Group(), &dhcpGroup(), &ipv6Group(), &dhcp6Group(),
                   &dnsGroup(), &dns6Group(), &telnetGroup(), &sshGroup(), &ftpGroup(),
                   &trapManagersGroup(), &snmpCommunitiesGroup(), &snmpSystemGroup(),
                   &timeZoneGroup(), &ntpGroup(), &acsGroup()},
        .steps = {},
    };
    return all;
}

}  // namespace varo
