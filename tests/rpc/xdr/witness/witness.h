#pragma once

#include "network/rpc/wireRecords.h"

/// The filters that rpcgen makes of network.x, named so that they do not collide with ours. They
/// know the records by network.x's own declarations, which are laid out alike (LayoutTest).
extern "C" {

#define TYPE(name) bool_t witness_xdr_##name(XDR* xdrs, name* object);
#include "network/rpc/records.def"
}
