#include "platform/acl.h"

#include "board/bridge/aclLists.h"

ACLContainer_t::ACLContainer_t(const std::string& bridge, const std::string& kind)
    : lists(std::make_unique<Lists>(bridge, kind)) {}

ACLContainer_t::~ACLContainer_t() = default;
