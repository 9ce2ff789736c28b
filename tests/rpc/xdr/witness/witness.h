#pragma once

#include "network/rpc/records.h"

/// The filters that rpcgen makes of network.x, named so that they do not collide with ours. They
/// know the records by network.x's own declarations, which are laid out alike (LayoutTest).
extern "C" {

#define ENUMERATION(name) bool_t witness_xdr_##name(XDR* xdrs, name* object);
#define UNIT(name) ENUMERATION(name)
#define FLAG(name) ENUMERATION(name)
#define RECORD(name) ENUMERATION(name)
#define ARGUMENT(name) ENUMERATION(name)
#include "network/rpc/records.def"
#undef ENUMERATION
#undef UNIT
#undef FLAG
#undef RECORD
#undef ARGUMENT
}
