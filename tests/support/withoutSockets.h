#pragma once

#include <functional>

/// Runs an action on a thread of its own for which socket(2) fails for an address family with an
/// error, as a kernel makes it fail that does not have the family.
void withoutSockets(unsigned family, unsigned error, const std::function<void()>& action);
