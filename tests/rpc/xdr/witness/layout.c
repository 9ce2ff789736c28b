#include "layout.h"

#include <network.h>

void witnessLayout(WitnessField add, void* to) {
#define RECORD(record, memorySize, wireSize, ...) \
    {                                             \
        typedef record Record;                    \
        const char* const name = #record;         \
        add(to, name, "", 0, sizeof(Record));     \
        __VA_ARGS__                               \
    }
#define FIELD(field, offset) \
    add(to, name, #field, offsetof(Record, field), sizeof(((Record*)0)->field));
#define RENAMED_TEXT(field, clientsName, offset) FIELD(clientsName, offset)
#include "network/rpc/records.def"
}

void witnessEnumerators(WitnessEnumerator add, void* to) {
#define ENUMERATION(name, ...) __VA_ARGS__
#define ENUMERATOR(name) add(to, #name, (int)(name));
#include "network/rpc/records.def"
}
