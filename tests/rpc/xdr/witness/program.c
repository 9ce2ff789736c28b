/* The program that network.x describes is the one of the procedure table: numbers, arguments and
 * results, compared when this is compiled. */

#include <network.h>

typedef void type_void;
typedef bool_t type_bool;
typedef int type_int;
typedef u_int type_u_int;
typedef char* type_string;
#define TYPE(name) typedef name type_##name;
#include "network/rpc/records.def"

/* The client stub that rpcgen declares has the types of the table. */
#define PROCEDURE(number, name, argument, result)                                                \
    _Static_assert(rpc_network_##name == (number), #name " has another number");                 \
    _Static_assert(                                                                              \
        __builtin_types_compatible_p(__typeof__(rpc_network_##name##_1),                         \
                                     enum clnt_stat(type_##argument*, type_##result*, CLIENT*)), \
        #name " has another argument or result");
#include "network/rpc/procedures.def"

_Static_assert(RPC_NETWORK_PROGRAM == 0x20000009, "another program number");
_Static_assert(RPC_NETWORK_VERSION == 1, "another version number");
