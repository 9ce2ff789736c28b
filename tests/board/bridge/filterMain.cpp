#include "FilterNetwork.h"
#include "support/isolatedTests.h"

/// For the leak check of the address sanitizer: libnftables loses the JSON documents (libjansson)
/// of some transactions, which only it uses here.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libjansson\n"; }

int main(int argumentCount, char** arguments) {
    return runIsolatedTests(argumentCount, arguments, test::makeNetwork);
}
