// The bridge, as far as the product imports it.

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "platform/zubridge.h"

#include <fmt/core.h>

using fake::Platform;
using fake::quoted;

struct ACLContainer_t::Lists {
    std::string description;
};

ACLContainer_t::ACLContainer_t(const std::string& bridge, const std::string& kind)
    : lists(std::make_unique<Lists>(Lists{fmt::format("{}, {}", quoted(bridge), quoted(kind))})) {
    Platform::current().journal.write(fmt::format("ACLContainer_t({})", lists->description));
}

ACLContainer_t::~ACLContainer_t() {
    Platform::current().journal.write(fmt::format("~ACLContainer_t({})", lists->description));
}

zubridge::zubridge() : BLEntity("bridge"), acls("br0", "acl") {}
zubridge::~zubridge() = default;
void zubridge::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}
void zubridge::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}
int zubridge::start() { return 1; }
int zubridge::applyDefaultSettings() { return 1; }
int zubridge::stop() { return 1; }
void zubridge::getDependencies(std::list<std::string>& names) { names.clear(); }

template class singleton<zubridge>;
