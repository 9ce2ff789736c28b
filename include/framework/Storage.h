#pragma once

#include <boost/shared_ptr.hpp>

#pragma GCC visibility push(default)

namespace Storage {

/// A set of configuration values that the framework keeps for an item. Opaque here: an entity only
/// ever receives it by pointer.
class Setting;

/// Something whose configuration the framework can hand in and ask for.
/// It is never deleted through this base; slots 0 and 1 of the virtual table are its operations.
class StorageItem {
public:
    StorageItem(const StorageItem&) = delete;
    StorageItem& operator=(const StorageItem&) = delete;

    virtual void applyConfiguration(boost::shared_ptr<Setting> setting) = 0;
    virtual void saveConfiguration(boost::shared_ptr<Setting> setting) const = 0;

protected:
    StorageItem() = default;
    ~StorageItem() = default;
};

}  // namespace Storage

#pragma GCC visibility pop
