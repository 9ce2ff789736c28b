#pragma once

#include "mngctl/wire/fields.h"

#include <control.h>

namespace mngctl {

// The names of each enumeration's values, and the fields of each record in wire order by their
// names on the wire.

#define ENUMERATION(type, ...) \
    template <>                \
    std::span<const Choice> choicesOf<type>();
#define RECORD(type, memorySize, wireSize, ...) void fields(FieldVisitor& visit, type& record);
#include "network/rpc/records.def"

// The control program.

void fields(FieldVisitor& visit, controlReply& record);
void fields(FieldVisitor& visit, controlFeature& record);
void fields(FieldVisitor& visit, controlEntity& record);
void fields(FieldVisitor& visit, controlStatus& record);

}  // namespace mngctl
