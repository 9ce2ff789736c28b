#pragma once

#include "framework/Notification.h"
#include "framework/singleton.h"

#include <string>

#pragma GCC visibility push(default)

/// What the system knows of itself: here, the identity of the shelf.
class sysInfo : public singleton<sysInfo> {
public:
    using ShelfIdEvent = Notification::Event<const std::string&>;

    /// Stores the shelf identity; an empty text while none is set.
    void getShelfId(std::string& id) const;

    /// Fired with the new identity after it changed.
    ShelfIdEvent& shelfIdChanged();

private:
    friend class singleton<sysInfo>;
    sysInfo();
    ~sysInfo();

    ShelfIdEvent shelfIdEvent;
};

extern template class singleton<sysInfo>;

#pragma GCC visibility pop
