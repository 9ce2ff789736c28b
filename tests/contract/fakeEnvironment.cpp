#include "contract/Environment.h"

#include "fake/Platform.h"

#include <memory>

namespace {

std::unique_ptr<fake::Platform> platform;

}  // namespace

Environment::Environment() {
    platform = std::make_unique<fake::Platform>();
    const Interface loopback = interface();
    platform->addressing.interfaces[loopback.name] = {loopback.address, loopback.netmask};
}

Environment::~Environment() { platform.reset(); }

Environment::Interface Environment::interface() { return {"lo", 0x7f000001, 0xff000000}; }
