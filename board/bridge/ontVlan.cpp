#include "board/framework/Framework.h"
#include "platform/zubridge.h"

#include <exception>
#include <string>

namespace {

constexpr int failed = 1;

}  // namespace

int zubridge::gponOntMngVlanSet(unsigned int vlanId) {
    try {
        board::framework().settings.setOntManagementVlan(vlanId);
        return 0;
    } catch (const std::exception& error) {
        board::logLine(
            LogImpl::levelError,
            std::string("the VLAN of the ONT's management is not changed: ") + error.what());
        return failed;
    }
}

int zubridge::gponOntMngVlanGet(unsigned int* vlanId) {
    if (vlanId == nullptr) {
        return failed;
    }
    *vlanId = board::framework().settings.values().ontManagementVlan;
    return 0;
}
