#include "board/framework/Framework.h"
#include "platform/zubridge.h"

#include <exception>
#include <string>

namespace {

constexpr int failed = 1;

}  // namespace

int zubridge::gponOntMngVlanSet(unsigned int vlanId) {
    try {
        framework::framework().settings.setOntManagementVlan(vlanId);
        return 0;
    } catch (const std::exception& error) {
        framework::logLine(
            LogImpl::levelError,
            std::string("the VLAN of the ONT's management is not changed: ") + error.what());
        return failed;
    }
}

int zubridge::gponOntMngVlanGet(unsigned int* vlanId) {
    if (vlanId == nullptr) {
        return failed;
    }
    *vlanId = framework::framework().settings.values().ontManagementVlan;
    return 0;
}
