#pragma once

namespace fake {

/// Waits for the threads that the product has started and dropped.
void joinThreads();

}  // namespace fake
