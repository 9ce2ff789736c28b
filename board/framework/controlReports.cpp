#include "board/framework/controlReports.h"

#include "board/framework/reporters.h"

#include <exception>
#include <string>
#include <vector>

namespace framework {

namespace {

/// An answer with the storage that its pointers point into.
template <class Record, class Report>
struct Answer {
    std::string reason;
    Report report;
    Record record;
};

/// Asks for the report and has it filled into the record, or answers why there is none.
template <class Record, class Report, class Fill>
Record* answerWith(Answer<Record, Report>& answer, Reporter<Report>& reporter, Fill fill) {
    answer = {};
    try {
        answer.report = reporter.ask();
        fill(answer.record, answer.report);
    } catch (const std::exception& error) {
        answer = {};
        fill(answer.record, answer.report);  // its texts are sent all the same
        answer.record.result = -1;
        answer.reason = error.what();
    }
    answer.record.reply = answer.reason.data();
    return &answer.record;
}

}  // namespace

controlVlans* answerVlans() {
    static Answer<controlVlans, VlanReport> answer;
    static std::vector<controlVlan> vlans;
    return answerWith(answer, vlanReporter(), [](controlVlans& record, VlanReport& report) {
        vlans.clear();
        for (VlanReport::Vlan& vlan : report.vlans) {
            vlans.push_back({vlan.id,
                             {static_cast<u_int>(vlan.members.size()), vlan.members.data()},
                             {static_cast<u_int>(vlan.pvidPorts.size()), vlan.pvidPorts.data()}});
        }
        record.vlans = {static_cast<u_int>(vlans.size()), vlans.data()};
        record.defaultVlan = report.defaultVlan;
        record.defaultNative = report.defaultNative ? TRUE : FALSE;
        record.managementVlan = report.managementVlan;
    });
}

controlDhcp* answerDhcp() {
    static Answer<controlDhcp, DhcpIdentity> answer;
    return answerWith(answer, dhcpIdentityReporter(), [](controlDhcp& record, DhcpIdentity& dhcp) {
        record.vendorClassOn = dhcp.isVendorClassOn ? TRUE : FALSE;
        record.vendorClass = dhcp.vendorClass.data();
        record.option82On = dhcp.isOption82On ? TRUE : FALSE;
        record.circuitId = dhcp.circuitId.data();
    });
}

}  // namespace framework
