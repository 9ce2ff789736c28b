// The filters, expanded from the table: what travels, and in which order, stands in records.def.

#include "network/rpc/xdr.h"

#include "network/rpc/xdrFields.h"

using rpc::flag;
using rpc::run;
using rpc::xdrField;
using rpc::xdrFields;

// Types that are a single unit.
#define TYPE(name) \
    bool_t xdr_##name(XDR* xdrs, name* object) { return xdrField(xdrs, *object); }
#define BOOLEAN(name) \
    bool_t xdr_##name(XDR* xdrs, name* object) { return xdrField(xdrs, flag(*object)); }

#define RECORD(name, memorySize, wireSize, ...) \
    bool_t xdr_##name(XDR* xdrs, name* record) { return xdrFields(xdrs __VA_ARGS__); }
#define FIELD(name, place) , record->name
#define FLAG(name, place) , flag(record->name)
#define RUN(...) , run(xdrs __VA_ARGS__)
#include "network/rpc/records.def"
