#pragma once

#include <memory>

namespace varo {

class Ipv4Keeper;
class Ipv6Keeper;

/// What looks after the management interface. Null: there is none to look after yet.
struct Keepers {
    std::shared_ptr<Ipv4Keeper> ipv4;
    std::shared_ptr<Ipv6Keeper> ipv6;
};

}  // namespace varo
