#pragma once

/* The records and enumerators as rpcgen declares them from network.x, for comparison. For C and
 * C++. */

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Called with `to`; an empty field name stands for the record as a whole. */
typedef void (*WitnessField)(void* to, const char* record, const char* field, size_t offset,
                             size_t size);
typedef void (*WitnessEnumerator)(void* to, const char* name, int value);

/* Calls `add` for every record and field of records.def, in its order. */
void witnessLayout(WitnessField add, void* to);

/* Calls `add` for every enumerator of records.def, in its order. */
void witnessEnumerators(WitnessEnumerator add, void* to);

#ifdef __cplusplus
}
#endif
