#pragma once

#include <rpc/rpc.h>

/// Makes a UDP transport refuse arguments that reach beyond the datagram in which they came. The
/// RPC library decodes from a buffer of fixed size, where the bytes of earlier requests still stand
/// behind a short one: a truncated argument would be completed with them. A null transport, or one
/// without operations, is left alone.
void boundArgumentsToDatagram(SVCXPRT* transport);
