#include "mngctl/wire/choices.h"
#include "mngctl/wire/records.h"

namespace mngctl {

namespace {

/// The board keeps an IPv6 server's text in 256 bytes and ends its process over a longer one.
constexpr std::size_t storedTextMaximum = 255;

}  // namespace

void fields(FieldVisitor& visit, rpc_network_set_ip_1_argument& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.address("netmask", record.netmask);
}

void fields(FieldVisitor& visit, rpc_network_set_dns_servers_1_argument& record) {
    visit.address("primary", record.primary);
    visit.address("secondary", record.secondary);
}

void fields(FieldVisitor& visit, rpc_network_add_ra_rule_1_argument& record) {
    visit.address("ipAddress", record.ipAddress);
    visit.address("netmask", record.netmask);
    visit.flag("flag", record.flag);
    visit.number("index", record.index);
}

void fields(FieldVisitor& visit, rpc_network_snmptrap_add_1_argument& record) {
    visit.text("community", record.community);
    visit.address("ipAddress", record.ipAddress);
    visit.flag("flag", record.flag);
}

void fields(FieldVisitor& visit, rpc_network_snmptrap_change_1_argument& record) {
    visit.text("community", record.community);
    visit.address("oldAddress", record.oldAddress);
    visit.address("newAddress", record.newAddress);
}

void fields(FieldVisitor& visit, rpc_network_snmpcommunity_add_1_argument& record) {
    visit.text("name", record.name);
    visit.choice("access", record.access);
    visit.flag("flag", record.flag);
}

void fields(FieldVisitor& visit, rpc_network_snmpcommunity_change_1_argument& record) {
    visit.text("name", record.name);
    visit.choice("access", record.access);
}

void fields(FieldVisitor& visit, rpc_network_snmpsystem_change_1_argument& record) {
    visit.text("text", record.text);
    visit.choice("selector", record.selector);
}

void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_dst_start_1_argument& record) {
    visit.number("month", record.month);
    visit.number("week", record.week);
    visit.number("dayInWeek", record.dayInWeek);
    visit.number("time", record.time);
}

void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_dst_end_1_argument& record) {
    visit.number("month", record.month);
    visit.number("week", record.week);
    visit.number("dayInWeek", record.dayInWeek);
    visit.number("time", record.time);
}

void fields(FieldVisitor& visit, rpc_network_set_sntp_timezone_1_argument& record) {
    visit.number("offset", record.offset);
    visit.text("name", record.name);
}

void fields(FieldVisitor& visit, rpc_network_set_vendor_1_argument& record) {
    visit.flag("dhcp", record.dhcp);
    visit.flag("vendor", record.vendor);
}

void fields(FieldVisitor& visit, rpc_network_set_option82_1_argument& record) {
    visit.flag("dhcp", record.dhcp);
    visit.flag("option82", record.option82);
}

void fields(FieldVisitor& visit, rpc_network_set_ipv6addr_1_argument& record) {
    visit.text("address", record.address);
    visit.number("prefixLength", record.prefixLength);
}

void fields(FieldVisitor& visit, rpc_network_set_mgmt_vlan_mode_1_argument& record) {
    visit.number("vlanId", record.vlanId);
    visit.choice("mode", record.mode);
}

void fields(FieldVisitor& visit, rpc_network_set_def_vlan_mode_1_argument& record) {
    visit.number("vlanId", record.vlanId);
    visit.choice("mode", record.mode);
}

void fields(FieldVisitor& visit, rpc_network_set_ipv6dns_servers_1_argument& record) {
    visit.text("primary", record.primary, storedTextMaximum);
    visit.text("secondary", record.secondary, storedTextMaximum);
}

}  // namespace mngctl
