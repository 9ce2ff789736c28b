#pragma once

#include <semaphore.h>

/// The event server's counter of waiting requests ("hassesKpiSem", sem_overview(7)), opened by
/// semaf_init; null until then, and while it cannot be opened.
extern __attribute__((visibility("default"))) sem_t* kpi_sem;

/// Tells the web manager, through the queue of the network's events, why the board last restarted.
void announceRestartCause();

/// Brings the event server's semaphores to 0. One that cannot be opened is passed over, and none is
/// created.
void drainEventServerSemaphores();
