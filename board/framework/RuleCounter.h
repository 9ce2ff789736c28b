#pragma once

namespace framework {

/// A rule of the remote-access list and what it has matched. Addresses are in host byte order.
struct RuleCounter {
    unsigned int address;
    unsigned int netmask;
    bool permit;
    unsigned long long packets;
    unsigned long long bytes;
};

}  // namespace framework
