#include "framework/BLEntity.h"

BLEntity::BLEntity(const std::string& name) : entityName(name) {}

BLEntity::~BLEntity() = default;

const std::string& BLEntity::getName() const { return entityName; }
