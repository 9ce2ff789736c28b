#include "support/isolatedTests.h"
#include "support/privateNamespaces.h"

namespace {

/// A loopback interface that is up and nothing else, and an empty /run, so that a port mapper can
/// be started beside the machine's.
void enter() {
    enterPrivateNamespaces(CLONE_NEWNET | CLONE_NEWNS | CLONE_NEWIPC);
    coverDirectory("/run");
    shell("mkdir /run/rpcbind && ip link set lo up");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    return runIsolatedTests(argumentCount, arguments, enter);
}
