#pragma once

namespace varotest {

/// Gives the process a network of its own, with a loopback interface that is up, and beside it one
/// named "lan" for `ip netns` and `ip -n`. Both go with the process. Throws.
void enterNamespaces();

}  // namespace varotest
