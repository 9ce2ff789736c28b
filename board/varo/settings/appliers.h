#pragma once

#include "board/varo/link/Keepers.h"
#include "board/varo/store/RecordStore.h"
#include "board/varo/varoConfiguration.h"

namespace varo {

// What puts stored values into force on the machine. The caller holds a Library::Change, or is
// opening the store. All throw Failure; the stored values stay.

/// Every group, in the order in which they depend on each other. A failing one does not keep the
/// others from being applied; the last failure is thrown.
void applyAll(RecordStore& store, const Configuration& configuration, Keepers& keepers);

/// The library's own log threshold.
void applyInternalConfig(RecordStore& store);

/// The management interface's address and gateway, or its DHCP client. The keeper is made when
/// there is none yet and an interface to look after.
void applyIpv4(RecordStore& store, const Configuration& configuration, Keepers& keepers);

/// The same of IPv6, where both can be in force. To be applied after IPv4, which takes the
/// interface up.
void applyIpv6(RecordStore& store, const Configuration& configuration, Keepers& keepers);

/// Writes the resolver settings in force, of both families, to the configured file.
void applyResolver(RecordStore& store, const Configuration& configuration);

}  // namespace varo
