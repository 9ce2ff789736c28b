// The board works on the machine's kernel: its contract is tested in a network namespace with an
// interface of its own.

#include "support/isolatedTests.h"
#include "support/privateNamespaces.h"

namespace {

void enter() {
    enterPrivateNamespaces(CLONE_NEWNET);
    shell(
        "ip link set lo up && ip link add mng0 type veth peer name lan0 && "
        "ip link set lan0 up && ip link set mng0 up");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    return runIsolatedTests(argumentCount, arguments, enter);
}
