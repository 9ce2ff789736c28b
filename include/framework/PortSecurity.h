#pragma once

#include "framework/singleton.h"

#pragma GCC visibility push(default)

/// Port security of the switch.
class PortSecurity : public singleton<PortSecurity> {
public:
    /// Refreshes the static MAC entry of the management port. Returns 0 on success.
    int updateMngStaticEntry();

private:
    friend class singleton<PortSecurity>;
    PortSecurity();
    ~PortSecurity();
};

extern template class singleton<PortSecurity>;

#pragma GCC visibility pop
