#include "board/bridge/aclChecks.h"

#include "board/bridge/bridgeCodes.h"
#include "board/support/addresses.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace bridge {

namespace {

constexpr std::size_t nameLimit = 100;

constexpr unsigned int matchOnField = 1;
constexpr unsigned int ipv4Source = 20;

}  // namespace

void checkListName(const std::string& name) {
    const auto isPrintable = [](char character) { return character >= ' ' && character <= '~'; };
    if (name.empty() || name.size() > nameLimit || !std::ranges::all_of(name, isPrintable)) {
        throw Failure(invalidName,
                      fmt::format("a name has 1 to {} printable characters", nameLimit));
    }
}

void checkListType(int type) {
    if (type != ACLContainer_t::aclRemoteAccess) {
        throw Failure(unsupported, fmt::format("there are no lists of type {}", type));
    }
}

void checkDirection(bool outgoing) {
    if (outgoing) {
        throw Failure(unsupported, "packets that leave a port are not filtered");
    }
}

void checkCondition(const zubridge_acl_condition& condition) {
    if (condition.kind != matchOnField || condition.selector != ipv4Source ||
        condition.flags != 0) {
        throw Failure(unsupported,
                      fmt::format("there are no conditions of kind {}, selector {}, flags {}",
                                  condition.kind, condition.selector, condition.flags));
    }
}

std::string describe(const SavedRule& rule) {
    return fmt::format("{} {}, wildcard {}", rule.permit ? "permit" : "deny",
                       support::ipv4Text(rule.address), support::ipv4Text(rule.wildcard));
}

}  // namespace bridge
