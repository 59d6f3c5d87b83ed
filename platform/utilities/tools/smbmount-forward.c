#define _GNU_SOURCE
#include "smbmount-forward.h"

#include <errno.h>
#include <pthread.h>
#include <signal.h>
#include <stddef.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/statvfs.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum { C_chunk = 64 * 1024, C_pathSize = 4096 };

enum Operation {
    OpGetattr = 1, OpReaddir, OpOpen, OpCreate, OpRead, OpWrite, OpFlush, OpRelease, OpUnlink,
    OpMkdir, OpRmdir, OpRename, OpTruncate, OpUtimens, OpStatfs
};

typedef struct {
    int operation;
    int flags;
    unsigned mode;
    int withHandle;
    uint64_t handle; /* the worker's own */
    int64_t offset;
    uint64_t size;
    struct timespec times[2];
    uint32_t namesSize; /* the path, and for a rename the target, each ending with a zero */
    char names[2 * C_pathSize];
} Request;

/* What is sent of a request: its fields and names as far as they go. */
static size_t requestSize(const Request* request)
{
    return offsetof(Request, names) + request->namesSize;
}

static const char* targetOf(const Request* request)
{
    return request->names + strlen(request->names) + 1;
}

typedef struct {
    int64_t result;
    uint64_t handle;
    int more; /* a directory listing continues in the next message */
    struct stat status;
    struct statvfs fileSystem;
} Response;

typedef struct {
    int socket;
    pid_t pid;
    pthread_mutex_t lock;
} Worker;

static Worker g_workers[C_maxWorkers];
static int g_workerCount;
static atomic_uint g_next;

/* --- Worker side ------------------------------------------------------------------------- */

typedef struct {
    int socket;
    char* names;
    size_t used;
    Response* response;
} Listing;

static int sendResponse(int sock, Response* response, const void* data, size_t size)
{
    struct iovec parts[2] = {{response, sizeof(*response)}, {(void*)data, size}};
    struct msghdr message = {.msg_iov = parts, .msg_iovlen = size ? 2 : 1};
    return sendmsg(sock, &message, MSG_NOSIGNAL) < 0 ? -1 : 0;
}

static int addName(void* buffer, const char* name, const struct stat* status, off_t offset,
                   enum fuse_fill_dir_flags flags)
{
    (void)status;
    (void)offset;
    (void)flags;
    Listing* listing = buffer;
    const size_t length = strlen(name) + 1;
    if (listing->used + length > C_chunk) {
        listing->response->more = 1;
        if (sendResponse(listing->socket, listing->response, listing->names, listing->used) != 0)
            return 1;
        listing->used = 0;
    }
    memcpy(listing->names + listing->used, name, length);
    listing->used += length;
    return 0;
}

static void serve(int sock, const struct fuse_operations* local)
{
    static char input[sizeof(Request) + C_chunk];
    static char output[C_chunk];
    for (;;) {
        const ssize_t received = recv(sock, input, sizeof(input), 0);
        const Request* request = (const Request*)input;
        if ((size_t)received < offsetof(Request, names) || request->namesSize > sizeof(request->names)
            || (size_t)received < requestSize(request))
            _exit(0);
        const char* path = request->names;
        const char* data = input + requestSize(request);
        const size_t dataSize = (size_t)received - requestSize(request);
        Response response;
        memset(&response, 0, sizeof(response));
        struct fuse_file_info file;
        memset(&file, 0, sizeof(file));
        file.fh = request->handle;
        file.flags = request->flags;
        struct fuse_file_info* withFile = request->withHandle ? &file : NULL;
        size_t payload = 0;
        switch (request->operation) {
        case OpGetattr:
            response.result = local->getattr(path, &response.status, withFile);
            break;
        case OpReaddir: {
            Listing listing = {sock, output, 0, &response};
            response.result = local->readdir(path, &listing, addName, 0, &file, 0);
            response.more = 0;
            payload = listing.used;
            break;
        }
        case OpOpen:
            response.result = local->open(path, &file);
            response.handle = file.fh;
            break;
        case OpCreate:
            response.result = local->create(path, request->mode, &file);
            response.handle = file.fh;
            break;
        case OpRead:
            response.result = local->read(path, output, request->size > C_chunk ? C_chunk : request->size,
                                          request->offset, &file);
            payload = response.result > 0 ? (size_t)response.result : 0;
            break;
        case OpWrite:
            response.result = local->write(path, data, dataSize, request->offset, &file);
            break;
        case OpFlush:
            response.result = local->flush(path, &file);
            break;
        case OpRelease:
            response.result = local->release(path, &file);
            break;
        case OpUnlink:
            response.result = local->unlink(path);
            break;
        case OpMkdir:
            response.result = local->mkdir(path, request->mode);
            break;
        case OpRmdir:
            response.result = local->rmdir(path);
            break;
        case OpRename:
            response.result = local->rename(path, targetOf(request), (unsigned)request->flags);
            break;
        case OpTruncate:
            response.result = local->truncate(path, request->offset, withFile);
            break;
        case OpUtimens:
            response.result = local->utimens(path, request->times, withFile);
            break;
        case OpStatfs:
            response.result = local->statfs(path, &response.fileSystem);
            break;
        default:
            response.result = -ENOSYS;
        }
        if (sendResponse(sock, &response, output, payload) != 0)
            _exit(0);
    }
}

int forwardStart(int workerCount, const struct fuse_operations* local, int (*prepare)(void))
{
    if (workerCount < 1 || workerCount > C_maxWorkers)
        return -EINVAL;
    const pid_t parent = getpid();
    for (int i = 0; i < workerCount; ++i) {
        int pair[2];
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0) {
            const int error = errno;
            forwardStop();
            return -error;
        }
        const pid_t pid = fork();
        if (pid < 0) {
            const int error = errno;
            close(pair[0]);
            close(pair[1]);
            forwardStop();
            return -error;
        }
        if (pid == 0) {
            /* A worker ends with the process it serves. */
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent)
                _exit(0);
            signal(SIGINT, SIG_IGN);
            for (int j = 0; j < i; ++j)
                close(g_workers[j].socket);
            close(pair[0]);
            if (prepare() != 0)
                _exit(1);
            serve(pair[1], local);
        }
        close(pair[1]);
        g_workers[i].socket = pair[0];
        g_workers[i].pid = pid;
        pthread_mutex_init(&g_workers[i].lock, NULL);
        g_workerCount = i + 1;
    }
    return 0;
}

void forwardStop(void)
{
    for (int i = 0; i < g_workerCount; ++i) {
        close(g_workers[i].socket);
        kill(g_workers[i].pid, SIGTERM);
        waitpid(g_workers[i].pid, NULL, 0);
    }
    g_workerCount = 0;
}

/* --- Forwarding side --------------------------------------------------------------------- */

/* Handles given to the kernel name their worker: (worker + 1) << 32 | the worker's handle. */
static uint64_t handleFor(int worker, uint64_t own)
{
    return ((uint64_t)(worker + 1) << 32) | (own & 0xFFFFFFFFu);
}

static int workerOfHandle(uint64_t handle)
{
    return (int)(handle >> 32) - 1;
}

static int freeWorker(void)
{
    const unsigned first = atomic_fetch_add(&g_next, 1u);
    for (int i = 0; i < g_workerCount; ++i) {
        const int candidate = (int)((first + (unsigned)i) % (unsigned)g_workerCount);
        if (pthread_mutex_trylock(&g_workers[candidate].lock) == 0)
            return candidate;
    }
    const int chosen = (int)(first % (unsigned)g_workerCount);
    pthread_mutex_lock(&g_workers[chosen].lock);
    return chosen;
}

static int lockedWorker(uint64_t handle)
{
    const int worker = workerOfHandle(handle);
    if (worker < 0 || worker >= g_workerCount)
        return -1;
    pthread_mutex_lock(&g_workers[worker].lock);
    return worker;
}

static void unlock(int worker)
{
    pthread_mutex_unlock(&g_workers[worker].lock);
}

static int sendRequest(int worker, const Request* request, const void* data, size_t size)
{
    struct iovec parts[2] = {{(void*)request, requestSize(request)}, {(void*)data, size}};
    struct msghdr message = {.msg_iov = parts, .msg_iovlen = size ? 2 : 1};
    return sendmsg(g_workers[worker].socket, &message, MSG_NOSIGNAL) < 0 ? -EIO : 0;
}

/* The response's size of payload, or -EIO when the worker is gone. */
static ssize_t receiveResponse(int worker, Response* response, void* data, size_t size)
{
    struct iovec parts[2] = {{response, sizeof(*response)}, {data, size}};
    struct msghdr message = {.msg_iov = parts, .msg_iovlen = 2};
    const ssize_t received = recvmsg(g_workers[worker].socket, &message, 0);
    if (received < (ssize_t)sizeof(*response))
        return -EIO;
    return received - (ssize_t)sizeof(*response);
}

/* One request, one response; the worker is unlocked on return. */
static int64_t call(int worker, Request* request, const void* data, size_t dataSize, Response* response, void* payload,
                    size_t payloadSize, ssize_t* received)
{
    int64_t result = sendRequest(worker, request, data, dataSize);
    if (result == 0) {
        const ssize_t n = receiveResponse(worker, response, payload, payloadSize);
        result = n < 0 ? n : response->result;
        if (received)
            *received = n;
    }
    unlock(worker);
    return result;
}

/* The request's path, or for a rename its path and target. */
static int setNames(Request* request, const char* path, const char* target)
{
    const size_t pathLength = strlen(path);
    const size_t targetLength = target ? strlen(target) : 0;
    if (pathLength >= C_pathSize || targetLength >= C_pathSize)
        return -ENAMETOOLONG;
    memcpy(request->names, path, pathLength + 1);
    memcpy(request->names + pathLength + 1, target ? target : "", targetLength + 1);
    request->namesSize = (uint32_t)(pathLength + targetLength + 2);
    return 0;
}

#define NEW_REQUEST(request, op, name)                                                                                 \
    Request request;                                                                                                   \
    memset(&request, 0, offsetof(Request, names));                                                                     \
    request.operation = (op);                                                                                          \
    do {                                                                                                               \
        const int pathError = setNames(&request, (name), NULL);                                                        \
        if (pathError)                                                                                                 \
            return pathError;                                                                                          \
    } while (0)

/* For a request that may name an open file: the (locked) worker that opened it, with the
 * request naming its handle, or a free worker; -EBADF for a handle of no worker. */
static int workerFor(const struct fuse_file_info* fi, Request* request)
{
    if (!fi || !fi->fh)
        return freeWorker();
    const int worker = lockedWorker(fi->fh);
    if (worker < 0)
        return -EBADF;
    request->withHandle = 1;
    request->handle = fi->fh & 0xFFFFFFFFu;
    return worker;
}

static int forwardGetattr(const char* path, struct stat* status, struct fuse_file_info* fi)
{
    NEW_REQUEST(request, OpGetattr, path);
    const int worker = workerFor(fi, &request);
    if (worker < 0)
        return worker;
    Response response;
    const int64_t result = call(worker, &request, NULL, 0, &response, NULL, 0, NULL);
    if (result == 0)
        *status = response.status;
    return (int)result;
}

static int forwardReaddir(const char* path, void* buffer, fuse_fill_dir_t fill, off_t offset, struct fuse_file_info* fi,
                          enum fuse_readdir_flags flags)
{
    (void)offset;
    (void)fi;
    (void)flags;
    NEW_REQUEST(request, OpReaddir, path);
    char* names = malloc(C_chunk);
    if (!names)
        return -ENOMEM;
    const int worker = freeWorker();
    if (sendRequest(worker, &request, NULL, 0) != 0) {
        unlock(worker);
        free(names);
        return -EIO;
    }
    int result = 0;
    int full = 0;
    for (;;) {
        Response response;
        const ssize_t n = receiveResponse(worker, &response, names, C_chunk);
        if (n < 0) {
            result = -EIO;
            break;
        }
        for (ssize_t at = 0; at < n && !full;) {
            const char* name = names + at;
            full = fill(buffer, name, NULL, 0, 0);
            at += (ssize_t)strlen(name) + 1;
        }
        if (!response.more) {
            result = (int)response.result;
            break;
        }
    }
    free(names);
    unlock(worker);
    return result;
}

static int forwardOpen(const char* path, struct fuse_file_info* fi, int operation, mode_t mode)
{
    NEW_REQUEST(request, operation, path);
    request.flags = fi->flags;
    request.mode = mode;
    const int worker = freeWorker();
    Response response;
    const int64_t result = call(worker, &request, NULL, 0, &response, NULL, 0, NULL);
    if (result == 0)
        fi->fh = handleFor(worker, response.handle);
    return (int)result;
}

static int forwardOpenFile(const char* path, struct fuse_file_info* fi)
{
    return forwardOpen(path, fi, OpOpen, 0);
}

static int forwardCreate(const char* path, mode_t mode, struct fuse_file_info* fi)
{
    return forwardOpen(path, fi, OpCreate, mode);
}

static int forwardRead(const char* path, char* buffer, size_t size, off_t offset, struct fuse_file_info* fi)
{
    size_t done = 0;
    while (done < size) {
        NEW_REQUEST(request, OpRead, path);
        request.withHandle = 1;
        request.handle = fi->fh & 0xFFFFFFFFu;
        request.offset = offset + (off_t)done;
        request.size = size - done > C_chunk ? C_chunk : size - done;
        const int worker = lockedWorker(fi->fh);
        if (worker < 0)
            return -EBADF;
        Response response;
        ssize_t received = 0;
        const int64_t result = call(worker, &request, NULL, 0, &response, buffer + done, request.size, &received);
        if (result < 0)
            return done ? (int)done : (int)result;
        done += (size_t)received;
        if (received < (ssize_t)request.size)
            break;
    }
    return (int)done;
}

static int forwardWrite(const char* path, const char* buffer, size_t size, off_t offset, struct fuse_file_info* fi)
{
    size_t done = 0;
    while (done < size) {
        NEW_REQUEST(request, OpWrite, path);
        request.withHandle = 1;
        request.handle = fi->fh & 0xFFFFFFFFu;
        request.offset = offset + (off_t)done;
        const size_t piece = size - done > C_chunk ? C_chunk : size - done;
        const int worker = lockedWorker(fi->fh);
        if (worker < 0)
            return -EBADF;
        Response response;
        const int64_t result = call(worker, &request, buffer + done, piece, &response, NULL, 0, NULL);
        if (result < 0)
            return done ? (int)done : (int)result;
        done += (size_t)result;
        if ((size_t)result < piece)
            break;
    }
    return (int)done;
}

/* A request on an open file and nothing else: flush and release. */
static int forwardOnHandle(int operation, const char* path, struct fuse_file_info* fi)
{
    NEW_REQUEST(request, operation, path);
    request.withHandle = 1;
    request.handle = fi->fh & 0xFFFFFFFFu;
    const int worker = lockedWorker(fi->fh);
    if (worker < 0)
        return -EBADF;
    Response response;
    return (int)call(worker, &request, NULL, 0, &response, NULL, 0, NULL);
}

static int forwardFlush(const char* path, struct fuse_file_info* fi)
{
    return forwardOnHandle(OpFlush, path, fi);
}

static int forwardRelease(const char* path, struct fuse_file_info* fi)
{
    return forwardOnHandle(OpRelease, path, fi);
}

static int forwardPath(int operation, const char* path, mode_t mode)
{
    NEW_REQUEST(request, operation, path);
    request.mode = mode;
    Response response;
    return (int)call(freeWorker(), &request, NULL, 0, &response, NULL, 0, NULL);
}

static int forwardUnlink(const char* path)
{
    return forwardPath(OpUnlink, path, 0);
}

static int forwardMkdir(const char* path, mode_t mode)
{
    return forwardPath(OpMkdir, path, mode);
}

static int forwardRmdir(const char* path)
{
    return forwardPath(OpRmdir, path, 0);
}

static int forwardRename(const char* from, const char* to, unsigned int flags)
{
    NEW_REQUEST(request, OpRename, from);
    request.flags = (int)flags;
    const int namesError = setNames(&request, from, to);
    if (namesError)
        return namesError;
    Response response;
    return (int)call(freeWorker(), &request, NULL, 0, &response, NULL, 0, NULL);
}

static int forwardTruncate(const char* path, off_t size, struct fuse_file_info* fi)
{
    NEW_REQUEST(request, OpTruncate, path);
    request.offset = size;
    const int worker = workerFor(fi, &request);
    if (worker < 0)
        return worker;
    Response response;
    return (int)call(worker, &request, NULL, 0, &response, NULL, 0, NULL);
}

static int forwardUtimens(const char* path, const struct timespec times[2], struct fuse_file_info* fi)
{
    (void)fi;
    NEW_REQUEST(request, OpUtimens, path);
    request.times[0] = times[0];
    request.times[1] = times[1];
    Response response;
    return (int)call(freeWorker(), &request, NULL, 0, &response, NULL, 0, NULL);
}

static int forwardStatfs(const char* path, struct statvfs* status)
{
    NEW_REQUEST(request, OpStatfs, path);
    Response response;
    const int64_t result = call(freeWorker(), &request, NULL, 0, &response, NULL, 0, NULL);
    if (result == 0)
        *status = response.fileSystem;
    return (int)result;
}

static struct fuse_operations g_forward;

const struct fuse_operations* forwardOperations(void)
{
    return &g_forward;
}

/* Filled at load time; the operations answered without the server come from the local table. */
__attribute__((constructor)) static void fillForward(void)
{
    g_forward.getattr = forwardGetattr;
    g_forward.readdir = forwardReaddir;
    g_forward.open = forwardOpenFile;
    g_forward.create = forwardCreate;
    g_forward.read = forwardRead;
    g_forward.write = forwardWrite;
    g_forward.flush = forwardFlush;
    g_forward.release = forwardRelease;
    g_forward.unlink = forwardUnlink;
    g_forward.mkdir = forwardMkdir;
    g_forward.rmdir = forwardRmdir;
    g_forward.rename = forwardRename;
    g_forward.truncate = forwardTruncate;
    g_forward.utimens = forwardUtimens;
    g_forward.statfs = forwardStatfs;
}
