#include "layout.h"

#include <network.h>

#define LAYOUT(record, memorySize, wireSize, fields) \
    {                                                \
        typedef record Record;                       \
        const char* const name = #record;            \
        add(to, name, "", 0, sizeof(Record));        \
        fields                                       \
    }
#define FIELD(field, offset) \
    add(to, name, #field, offsetof(Record, field), sizeof(((Record*)0)->field));
#define TRUTH(field, offset) FIELD(field, offset)

void witnessLayout(WitnessField add, void* to) {
#include "../layouts.def"
}

#define ENUMERATOR(name) add(to, #name, (int)(name));

void witnessEnumerators(WitnessEnumerator add, void* to) {
#include "../enumerators.def"
}
