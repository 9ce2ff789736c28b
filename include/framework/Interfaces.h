#pragma once

#include "framework/BLEntity.h"
#include "framework/singleton.h"

#pragma GCC visibility push(default)

/// The entity that owns the board's interfaces. Other entities only name it as a dependency.
class Interfaces : public BLEntity, public singleton<Interfaces> {
public:
    void applyConfiguration(boost::shared_ptr<Storage::Setting> setting) override;
    void saveConfiguration(boost::shared_ptr<Storage::Setting> setting) const override;
    int start() override;
    int applyDefaultSettings() override;
    int stop() override;
    void getDependencies(std::list<std::string>& names) override;

private:
    friend class singleton<Interfaces>;
    Interfaces();
    ~Interfaces() override;
};

extern template class singleton<Interfaces>;

#pragma GCC visibility pop
