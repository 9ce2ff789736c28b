#include "board/framework/managementPort.h"

#include "platform/interfaces.h"

namespace framework {

namespace {

/// Never destroyed, so that calls are answered while the process ends.
std::string& linuxName() {
    static std::string& name = *new std::string("mng0");
    return name;
}

}  // namespace

void nameManagementPort(const std::string& name) { linuxName() = name; }

}  // namespace framework

int interfaceMngGet(int* portId) {
    if (portId == nullptr) {
        return -1;
    }
    *portId = framework::managementPort;
    return 0;
}

int interfaceLinuxnameGet(int portId, int size, char* name) {
    const std::string& known = framework::linuxName();
    if (portId != framework::managementPort || name == nullptr || size < 0 ||
        known.size() >= static_cast<std::size_t>(size)) {
        return -1;
    }
    name[known.copy(name, known.size())] = '\0';
    return 0;
}
