#pragma once

#include "network/Network.h"
#include "network/rpc/wireRecords.h"

/// Copies what the wire record carries of the entity's network information. The record's `flag4`
/// and `flag5` are left as they are.
void toWire(const Network::NetworkInfo& info, rpcNetworkInfo& out);
