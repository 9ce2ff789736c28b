#pragma once

/// What main() of a suite does whose tests need namespaces of their own: `enter` moves the process
/// into them, or throws. Answers the program's status; without the namespaces that is a failure.
int runIsolatedTests(int argumentCount, char** arguments, void (*enter)());
