#include "privateNamespaces.h"
#include "support/isolatedTests.h"

int main(int argumentCount, char** arguments) {
    return runIsolatedTests(argumentCount, arguments, test::enterPrivateNamespaces);
}
