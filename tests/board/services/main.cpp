#include <csignal>

#include "support/isolatedTests.h"
#include "tests/board/varo/network/namespaces.h"

int main(int argumentCount, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    return runIsolatedTests(argumentCount, arguments, varotest::enterNamespaces);
}
