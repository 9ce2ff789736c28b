// Filters of the types that are a single unit on the wire.

#include "network/rpc/xdrFields.h"

using wire::flag;
using wire::xdrField;

#define ENUMERATION(name) \
    bool_t xdr_##name(XDR* xdrs, name* object) { return xdrField(xdrs, *object); }
#define UNIT(name) \
    bool_t xdr_##name(XDR* xdrs, name* object) { return xdrField(xdrs, *object); }
#define FLAG(name) \
    bool_t xdr_##name(XDR* xdrs, name* object) { return xdrField(xdrs, flag(*object)); }
#define RECORD(name)
#define ARGUMENT(name)
#include "network/rpc/records.def"
