#include "framework/sysInfo.h"

#include "board/framework/Framework.h"

template class singleton<sysInfo>;

sysInfo::sysInfo() = default;
sysInfo::~sysInfo() = default;

void sysInfo::getShelfId(std::string& id) const {
    id = framework::framework().settings.values().shelfId;
}

sysInfo::ShelfIdEvent& sysInfo::shelfIdChanged() { return shelfIdEvent; }
