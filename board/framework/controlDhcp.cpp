#include "board/framework/controlDhcp.h"

#include "board/framework/dhcpReport.h"

#include <exception>
#include <string>

namespace framework {

namespace {

/// An answer with the storage that its pointers point into.
struct Answer {
    std::string reason;
    DhcpReport report;
    controlDhcp record;
} answer;

}  // namespace

controlDhcp* answerDhcp() {
    answer.record = {};
    answer.reason.clear();
    try {
        answer.report = dhcpReport();
    } catch (const std::exception& error) {
        answer.report = {};
        answer.record.result = -1;
        answer.reason = error.what();
    }
    answer.record.reply = answer.reason.data();
    answer.record.vendorClassOn = answer.report.isVendorClassOn ? TRUE : FALSE;
    answer.record.vendorClass = answer.report.vendorClass.data();
    answer.record.option82On = answer.report.isOption82On ? TRUE : FALSE;
    answer.record.circuitId = answer.report.circuitId.data();
    return &answer.record;
}

}  // namespace framework
