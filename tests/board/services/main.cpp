#include "support/isolatedTests.h"
#include "tests/board/varo/network/namespaces.h"

#include <csignal>

int main(int argumentCount, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    return runIsolatedTests(argumentCount, arguments, varotest::enterNamespaces);
}
