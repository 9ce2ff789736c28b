#pragma once

#include "framework/BLEntity.h"
#include "framework/singleton.h"
#include "platform/acl.h"
#include "platform/handle.h"

#pragma GCC visibility push(default)

/// The bridge entity: access lists of the ports, and the management VLAN of the integrated ONT.
class zubridge : public BLEntity, public singleton<zubridge> {
public:
    void applyConfiguration(boost::shared_ptr<Storage::Setting> setting) override;
    void saveConfiguration(boost::shared_ptr<Storage::Setting> setting) const override;
    int start() override;
    int applyDefaultSettings() override;
    int stop() override;
    void getDependencies(std::list<std::string>& names) override;

    /// The access lists of the bridge's ports; owned by the bridge.
    ACLContainer_t& aclContainer();

    /// Stores the 6 bytes of the system's MAC address. Returns 0 on success.
    int mngSystemMacGet(const zuHandle_t& handle, unsigned char* mac);

    /// VLAN that carries the management of the ONT. Both return 0 on success.
    int gponOntMngVlanSet(unsigned int vlanId);
    int gponOntMngVlanGet(unsigned int* vlanId);

private:
    friend class singleton<zubridge>;
    zubridge();
    ~zubridge() override;

    ACLContainer_t acls;
};

extern template class singleton<zubridge>;

#pragma GCC visibility pop
