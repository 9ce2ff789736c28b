#include "tests/board/varo/network/namespaces.h"

#include "support/privateNamespaces.h"

namespace varotest {

void enterNamespaces() {
    enterPrivateNamespaces(CLONE_NEWNET | CLONE_NEWNS);
    coverDirectory("/run");
    shell("ip link set lo up && ip netns add lan && ip -n lan link set lo up");
}

}  // namespace varotest
