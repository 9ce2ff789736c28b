#include "framework/Interfaces.h"

template class singleton<Interfaces>;

// The interfaces of a Linux host are there before the process: nothing is to be brought up, kept or
// returned to factory settings here. The entity exists for others to depend on.

Interfaces::Interfaces() : BLEntity("interfaces") {}
Interfaces::~Interfaces() = default;

void Interfaces::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}

void Interfaces::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}

int Interfaces::start() { return 1; }

int Interfaces::applyDefaultSettings() { return 1; }

int Interfaces::stop() { return 1; }

void Interfaces::getDependencies(std::list<std::string>& names) { names.clear(); }
