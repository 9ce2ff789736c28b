#pragma once

#include "platform/acl.h"

#include <string>
#include <vector>

namespace test {

/// A user of the container that makes the calls of the network entity: the list has a catch-all at
/// its end, and is off the port while it is edited and while it has no rules.
class RemoteAccess {
public:
    explicit RemoteAccess(ACLContainer_t& container);

    void start();
    void stop();

    /// At a place from 1, or 0 for the end. Return 0 on success.
    int add(unsigned int address, unsigned int netmask, bool permit, unsigned int place = 0);
    int remove(unsigned int place);

    /// "permit 192.0.2.0 0.0.0.255" and so on, by the ids in order.
    std::vector<std::string> rules() const;

private:
    ACLContainer_t& acls;
    const std::string name = "RA_mng0";
    unsigned int catchAll = 0;
    bool isAssigned = false;
    std::vector<unsigned int> ids;
};

}  // namespace test
