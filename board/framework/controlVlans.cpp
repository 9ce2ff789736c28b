#include "board/framework/controlVlans.h"

#include "board/framework/vlanReport.h"

#include <exception>
#include <string>
#include <vector>

namespace framework {

namespace {

/// An answer with the storage that its pointers point into.
struct Answer {
    std::string reason;
    VlanReport report;
    std::vector<controlVlan> vlans;
    controlVlans record;
} answer;

void fill() {
    answer.report = vlanReport();
    answer.vlans.clear();
    for (VlanReport::Vlan& vlan : answer.report.vlans) {
        answer.vlans.push_back(
            {vlan.id,
             {static_cast<u_int>(vlan.members.size()), vlan.members.data()},
             {static_cast<u_int>(vlan.pvidPorts.size()), vlan.pvidPorts.data()}});
    }
    answer.record.vlans = {static_cast<u_int>(answer.vlans.size()), answer.vlans.data()};
    answer.record.defaultVlan = answer.report.defaultVlan;
    answer.record.defaultNative = answer.report.defaultNative ? TRUE : FALSE;
    answer.record.managementVlan = answer.report.managementVlan;
}

}  // namespace

controlVlans* answerVlans() {
    answer.record = {};
    answer.reason.clear();
    try {
        fill();
    } catch (const std::exception& error) {
        answer.record = {};
        answer.record.result = -1;
        answer.reason = error.what();
    }
    answer.record.reply = answer.reason.data();
    return &answer.record;
}

}  // namespace framework
