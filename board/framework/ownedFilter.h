#pragma once

#include <rpc/rpc.h>

namespace framework {

/// The same filter, except that a decoding that fails leaves nothing behind: the texts decoded
/// before the failure are released, which generated filters leave to the caller, and the RPC
/// library does not do.
template <class Record, bool_t (*filter)(XDR*, Record*)>
bool_t ownedFilter(XDR* xdrs, Record* record) {
    if (filter(xdrs, record)) {
        return TRUE;
    }
    if (xdrs->x_op == XDR_DECODE) {
        XDR release{};
        release.x_op = XDR_FREE;
        filter(&release, record);
    }
    return FALSE;
}

}  // namespace framework
