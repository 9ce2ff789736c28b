#include "platform/zubridge.h"

namespace {

constexpr const char* bridgeInterface = "br0";
constexpr const char* containerKind = "acl";

}  // namespace

template class singleton<zubridge>;

zubridge::zubridge() : BLEntity("bridge"), acls(bridgeInterface, containerKind) {}
zubridge::~zubridge() = default;

void zubridge::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}

void zubridge::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}

int zubridge::start() { return 1; }

int zubridge::applyDefaultSettings() { return 1; }

int zubridge::stop() { return 1; }

void zubridge::getDependencies(std::list<std::string>& names) { names.clear(); }

ACLContainer_t& zubridge::aclContainer() { return acls; }
