#pragma once

#include "framework/singleton.h"

#include <string>

#pragma GCC visibility push(default)

/// The DHCP relay agent of the access node (RFC 3046). It puts the SNMP system texts into the
/// identification that it inserts.
class dhcpra : public singleton<dhcpra> {
public:
    void setSystemContact(const std::string& text);
    void setSystemLocation(const std::string& text);
    void setSystemName(const std::string& text);

private:
    friend class singleton<dhcpra>;
    dhcpra();
    ~dhcpra();
};

/// The PPPoE intermediate agent of the access node (Broadband Forum TR-101), told the same texts.
class pppoeia : public singleton<pppoeia> {
public:
    void setSystemContact(const std::string& text);
    void setSystemLocation(const std::string& text);
    void setSystemName(const std::string& text);

private:
    friend class singleton<pppoeia>;
    pppoeia();
    ~pppoeia();
};

extern template class singleton<dhcpra>;
extern template class singleton<pppoeia>;

#pragma GCC visibility pop
