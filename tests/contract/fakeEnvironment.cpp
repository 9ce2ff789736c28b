#include "contract/Environment.h"
#include "fake/Platform.h"

#include <memory>

namespace {

std::unique_ptr<fake::Platform> platform;

}  // namespace

Environment::Environment() {
    platform = std::make_unique<fake::Platform>();
    const Interface loopback = interface();
    platform->addressing.interfaces["mng0"] = {};
    platform->addressing.macAddresses["mng0"] = {2, 0, 0x5e, 0x10, 0, 0x0a};
    platform->addressing.interfaces[loopback.name] = {loopback.address, loopback.netmask};
}

Environment::~Environment() { platform.reset(); }

Environment::Interface Environment::interface() { return {"lo", 0x7f000001, 0xff000000}; }
