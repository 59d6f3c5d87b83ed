/*
 * Requests of one user-space mount served by several processes at once.
 *
 * The client library behind the mount answers one call at a time per process, each call a
 * round trip to the server. forwardStart() forks worker processes, each with its own
 * connection (made by the `prepare` function it is given) and each running the `local`
 * operations for the requests it receives; the operations it returns forward every request
 * of the mount to a worker: requests on an open file to the worker that opened it, the others
 * to a worker that is free. Several copies thus reach the server at the same time.
 * The flush that close() waits for is forwarded too, so that the worker closes the file on the
 * server before close() returns.
 */
#pragma once
#define FUSE_USE_VERSION 31
#include <fuse.h>

enum { C_maxWorkers = 8 };

/* 0, or -errno when a worker could not be started (none is then left running). */
int forwardStart(int workerCount, const struct fuse_operations* local, int (*prepare)(void));
const struct fuse_operations* forwardOperations(void);
/* Ends the workers (also done when this process ends). */
void forwardStop(void);
