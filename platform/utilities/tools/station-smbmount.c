/*
 * station-smbmount: mounts one SMB share at one mount point in user space.
 *
 *   station-smbmount [-c CREDENTIALS_FILE] [-o FUSE_OPTIONS] [-t TIMEOUT_MS] [-n WORKERS]
 *                    //server[:port]/share[/dir] MOUNTPOINT
 *
 * Credentials are lines "username=...", "password=..." and "domain=..." read from
 * CREDENTIALS_FILE (which must not be readable by group or others) or, without -c, from
 * standard input up to its end. They are never taken from the command line.
 *
 * The credentials and the share are checked before mounting: a wrong password, an unknown
 * share or an unreachable server end the program with a message on stderr and a non-zero
 * exit code (2 access denied, 3 server unreachable, 4 share not found, 5 other error,
 * 6 mount failed, 1 usage). Once mounted, "ready" is written on stdout and the program
 * serves the mount in the foreground until it is unmounted or receives SIGTERM/SIGINT.
 *
 * A libsmbclient context answers one call at a time and is not thread-safe: requests are
 * served by WORKERS processes of this program (-n, default 4), each with its own context and
 * connection (smbmount-forward.c), so that several files are copied at once. A file closed by
 * a program is closed on the server before its close() returns (see "Open files").
 */
#define FUSE_USE_VERSION 31
#define _GNU_SOURCE

#include <fuse.h>
#include <libsmbclient.h>

#include "smbmount-forward.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

enum {
    ExitUsage = 1,
    ExitAccessDenied = 2,
    ExitUnreachable = 3,
    ExitNoShare = 4,
    ExitOther = 5,
    ExitMountFailed = 6
};

static char g_user[256];
static char g_password[256];
static char g_domain[256];
static char g_base[4096]; /* "smb://server/share[/dir]" without trailing slash */
static int g_timeoutMs = 10000;
static uint16_t g_port;

/* Connections to the server, each served by a worker process. */
static int g_workers = 4;

static void wipe(void)
{
    explicit_bzero(g_password, sizeof(g_password));
}

static void authenticate(SMBCCTX* context, const char* server, const char* share, char* workgroup, int workgroupLength,
                         char* user, int userLength, char* password, int passwordLength)
{
    (void)context;
    (void)server;
    (void)share;
    if (g_domain[0])
        snprintf(workgroup, (size_t)workgroupLength, "%s", g_domain);
    snprintf(user, (size_t)userLength, "%s", g_user);
    snprintf(password, (size_t)passwordLength, "%s", g_password);
}

/* Builds the URL of a path below the base; every byte outside a safe set is %-encoded
 * because libsmbclient decodes its URLs. */
static int urlOf(const char* path, char* url, size_t size)
{
    static const char hex[] = "0123456789ABCDEF";
    size_t n = strlen(g_base);
    if (n >= size)
        return -ENAMETOOLONG;
    memcpy(url, g_base, n);
    for (const unsigned char* p = (const unsigned char*)path; *p; ++p) {
        const int safe = (*p >= 'a' && *p <= 'z') || (*p >= 'A' && *p <= 'Z') || (*p >= '0' && *p <= '9')
            || strchr("/-._~ ", *p) != NULL;
        if (n + (safe ? 1 : 3) >= size)
            return -ENAMETOOLONG;
        if (safe) {
            url[n++] = (char)*p;
        } else {
            url[n++] = '%';
            url[n++] = hex[*p >> 4];
            url[n++] = hex[*p & 0x0F];
        }
    }
    url[n] = '\0';
    return 0;
}

#define URL_OF(path, url)                                                                                              \
    char url[8192];                                                                                                    \
    do {                                                                                                               \
        const int urlError = urlOf((path), url, sizeof(url));                                                          \
        if (urlError)                                                                                                  \
            return urlError;                                                                                           \
    } while (0)

/* --- Connection check ---------------------------------------------------------------------
 * Before every call libsmbclient asks the server whether its cached connection is alive (an
 * echo): one round trip more per call. Within C_trustMs of an answered echo the connection is
 * taken as alive; a call that fails as a lost connection does makes the next call ask again
 * (and libsmbclient then connects anew). */
enum { C_trustMs = 1000 };
static smbc_check_server_fn g_checkServer;
static struct timespec g_checkedAt;
static int g_trusted;

static long long millisecondsSince(const struct timespec* then)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (long long)(now.tv_sec - then->tv_sec) * 1000 + (now.tv_nsec - then->tv_nsec) / 1000000;
}

static int checkServer(SMBCCTX* context, SMBCSRV* server)
{
    if (g_trusted && millisecondsSince(&g_checkedAt) < C_trustMs)
        return 0;
    const int result = g_checkServer(context, server);
    g_trusted = result == 0;
    clock_gettime(CLOCK_MONOTONIC, &g_checkedAt);
    return result;
}

static int failure(void)
{
    const int error = errno ? errno : EIO;
    switch (error) {
    case EIO:
    case ECONNRESET:
    case ECONNABORTED:
    case ENOTCONN:
    case ETIMEDOUT:
    case EPIPE:
    case EHOSTUNREACH:
    case ENETUNREACH:
    case ECONNREFUSED:
        g_trusted = 0;
        break;
    default:
        break;
    }
    return -error;
}

/* --- Open files ----------------------------------------------------------------------------
 * A close() on the mount closes the file on the server before it returns (on the flush that
 * close() waits for), not on the release, which the kernel sends without waiting: a rename or
 * unlink that follows, possibly served by another worker, finds the file closed (the server
 * refuses to rename or delete an open file). A call that still comes on the handle (another
 * descriptor of the same open file) opens the file again. */

typedef struct {
    int fd;    /* -1: closed by a flush; -2: slot free */
    int flags; /* to open it again */
} OpenFile;

static OpenFile* g_files;
static int g_fileCount;

/* A handle (slot + 1) for a file just opened; 0 when out of memory. */
static uint64_t keepOpenFile(int fd, int flags)
{
    int slot = 0;
    while (slot < g_fileCount && g_files[slot].fd != -2)
        ++slot;
    if (slot == g_fileCount) {
        const int count = g_fileCount ? 2 * g_fileCount : 64;
        OpenFile* grown = realloc(g_files, (size_t)count * sizeof(OpenFile));
        if (!grown)
            return 0;
        for (int i = g_fileCount; i < count; ++i)
            grown[i].fd = -2;
        g_files = grown;
        g_fileCount = count;
    }
    g_files[slot].fd = fd;
    g_files[slot].flags = flags & ~(O_CREAT | O_EXCL | O_TRUNC);
    return (uint64_t)slot + 1;
}

static OpenFile* openFileOf(const struct fuse_file_info* fi)
{
    const uint64_t slot = fi->fh - 1;
    return fi->fh && slot < (uint64_t)g_fileCount && g_files[slot].fd != -2 ? &g_files[slot] : NULL;
}

/* The descriptor of an open file, opened again at `path` when a flush closed it; -errno. */
static int descriptorOf(const char* path, struct fuse_file_info* fi)
{
    OpenFile* file = openFileOf(fi);
    if (!file)
        return -EBADF;
    if (file->fd < 0) {
        char url[8192];
        const int urlError = urlOf(path, url, sizeof(url));
        if (urlError)
            return urlError;
        const int fd = smbc_open(url, file->flags, 0);
        if (fd < 0)
            return failure();
        file->fd = fd;
    }
    return file->fd;
}

static int opGetattr(const char* path, struct stat* st, struct fuse_file_info* fi)
{
    memset(st, 0, sizeof(*st));
    if (fi && fi->fh) {
        const int fd = descriptorOf(path, fi);
        if (fd < 0)
            return fd;
        if (smbc_fstat(fd, st) < 0)
            return failure();
    } else {
        URL_OF(path, url);
        if (smbc_stat(url, st) < 0)
            return failure();
    }
    st->st_uid = getuid();
    st->st_gid = getgid();
    return 0;
}

static int opReaddir(const char* path, void* buffer, fuse_fill_dir_t fill, off_t offset, struct fuse_file_info* fi,
                     enum fuse_readdir_flags flags)
{
    (void)offset;
    (void)fi;
    (void)flags;
    URL_OF(path, url);
    const int dir = smbc_opendir(url);
    if (dir < 0)
        return failure();
    struct smbc_dirent* entry;
    errno = 0;
    while ((entry = smbc_readdir((unsigned int)dir)) != NULL) {
        if (entry->smbc_type != SMBC_DIR && entry->smbc_type != SMBC_FILE && entry->smbc_type != SMBC_LINK)
            continue;
        if (fill(buffer, entry->name, NULL, 0, 0))
            break;
    }
    smbc_closedir(dir);
    return 0;
}

/* libsmbclient refuses seeking a write-only handle: open read-write instead. */
static int openFlags(int flags)
{
    flags &= ~O_APPEND;
    if ((flags & O_ACCMODE) == O_WRONLY)
        flags = (flags & ~O_ACCMODE) | O_RDWR;
    return flags;
}

static int openPath(const char* path, int flags, mode_t mode, struct fuse_file_info* fi)
{
    URL_OF(path, url);
    const int fd = smbc_open(url, flags, mode);
    if (fd < 0)
        return failure();
    fi->fh = keepOpenFile(fd, flags);
    if (!fi->fh) {
        smbc_close(fd);
        return -ENOMEM;
    }
    return 0;
}

static int opOpen(const char* path, struct fuse_file_info* fi)
{
    return openPath(path, openFlags(fi->flags), 0, fi);
}

static int opCreate(const char* path, mode_t mode, struct fuse_file_info* fi)
{
    return openPath(path, openFlags(fi->flags) | O_CREAT, mode, fi);
}

static int opRead(const char* path, char* buffer, size_t size, off_t offset, struct fuse_file_info* fi)
{
    const int fd = descriptorOf(path, fi);
    if (fd < 0)
        return fd;
    if (smbc_lseek(fd, offset, SEEK_SET) < 0)
        return failure();
    size_t done = 0;
    while (done < size) {
        const ssize_t n = smbc_read(fd, buffer + done, size - done);
        if (n < 0)
            return failure();
        if (n == 0)
            break;
        done += (size_t)n;
    }
    return (int)done;
}

static int opWrite(const char* path, const char* buffer, size_t size, off_t offset, struct fuse_file_info* fi)
{
    const int fd = descriptorOf(path, fi);
    if (fd < 0)
        return fd;
    if (smbc_lseek(fd, offset, SEEK_SET) < 0)
        return failure();
    size_t done = 0;
    while (done < size) {
        const ssize_t n = smbc_write(fd, buffer + done, size - done);
        if (n <= 0)
            return n < 0 ? failure() : -EIO;
        done += (size_t)n;
    }
    return (int)done;
}

/* The file is closed on the server here (see "Open files"); the error of a write the server
 * kept until now reaches the program's close(). */
static int opFlush(const char* path, struct fuse_file_info* fi)
{
    (void)path;
    OpenFile* file = openFileOf(fi);
    if (!file || file->fd < 0)
        return 0;
    const int fd = file->fd;
    file->fd = -1;
    return smbc_close(fd) < 0 ? failure() : 0;
}

static int opRelease(const char* path, struct fuse_file_info* fi)
{
    (void)path;
    OpenFile* file = openFileOf(fi);
    if (!file)
        return -EBADF;
    const int fd = file->fd;
    file->fd = -2;
    return fd >= 0 && smbc_close(fd) < 0 ? failure() : 0;
}

static int opUnlink(const char* path)
{
    URL_OF(path, url);
    return smbc_unlink(url) < 0 ? failure() : 0;
}

static int opMkdir(const char* path, mode_t mode)
{
    URL_OF(path, url);
    return smbc_mkdir(url, mode) < 0 ? failure() : 0;
}

static int opRmdir(const char* path)
{
    URL_OF(path, url);
    return smbc_rmdir(url) < 0 ? failure() : 0;
}

/* RENAME_NOREPLACE: the kernel refuses it itself when the target exists, after looking it up
 * under the directory's lock just before; a file another client creates meanwhile is replaced,
 * as libsmbclient's rename does. */
static int opRename(const char* from, const char* to, unsigned int flags)
{
    if (flags & ~(unsigned int)RENAME_NOREPLACE)
        return -EINVAL;
    URL_OF(from, fromUrl);
    URL_OF(to, toUrl);
    return smbc_rename(fromUrl, toUrl) < 0 ? failure() : 0;
}

static int opTruncate(const char* path, off_t size, struct fuse_file_info* fi)
{
    if (fi && fi->fh) {
        const int fd = descriptorOf(path, fi);
        if (fd < 0)
            return fd;
        return smbc_ftruncate(fd, size) < 0 ? failure() : 0;
    }
    URL_OF(path, url);
    const int fd = smbc_open(url, O_RDWR, 0);
    if (fd < 0)
        return failure();
    const int result = smbc_ftruncate(fd, size) < 0 ? failure() : 0;
    smbc_close(fd);
    return result;
}

static void toTimeval(const struct timespec* in, const struct timespec* current, struct timeval* out)
{
    struct timespec t = *in;
    if (in->tv_nsec == UTIME_NOW)
        clock_gettime(CLOCK_REALTIME, &t);
    else if (in->tv_nsec == UTIME_OMIT)
        t = *current;
    out->tv_sec = t.tv_sec;
    out->tv_usec = t.tv_nsec / 1000;
}

static int opUtimens(const char* path, const struct timespec times[2], struct fuse_file_info* fi)
{
    (void)fi;
    URL_OF(path, url);
    struct stat st;
    memset(&st, 0, sizeof(st));
    if ((times[0].tv_nsec == UTIME_OMIT || times[1].tv_nsec == UTIME_OMIT) && smbc_stat(url, &st) < 0)
        return failure();
    struct timeval tv[2];
    toTimeval(&times[0], &st.st_atim, &tv[0]);
    toTimeval(&times[1], &st.st_mtim, &tv[1]);
    return smbc_utimes(url, tv) < 0 ? failure() : 0;
}

/* SMB keeps no Unix mode or owner: accepted and ignored, as copying tools expect. */
static int opChmod(const char* path, mode_t mode, struct fuse_file_info* fi)
{
    (void)path;
    (void)mode;
    (void)fi;
    return 0;
}

static int opChown(const char* path, uid_t uid, gid_t gid, struct fuse_file_info* fi)
{
    (void)path;
    (void)uid;
    (void)gid;
    (void)fi;
    return 0;
}

static int opStatfs(const char* path, struct statvfs* st)
{
    URL_OF(path, url);
    return smbc_statvfs(url, st) < 0 ? failure() : 0;
}

static int opFsync(const char* path, int datasync, struct fuse_file_info* fi)
{
    (void)path;
    (void)datasync;
    (void)fi;
    return 0;
}

static void* opInit(struct fuse_conn_info* connection, struct fuse_config* config)
{
    (void)connection;
    config->use_ino = 0;
    config->hard_remove = 1;
    return NULL;
}

static const struct fuse_operations c_operations = {
    .getattr = opGetattr,
    .mkdir = opMkdir,
    .unlink = opUnlink,
    .rmdir = opRmdir,
    .rename = opRename,
    .chmod = opChmod,
    .chown = opChown,
    .truncate = opTruncate,
    .open = opOpen,
    .read = opRead,
    .write = opWrite,
    .statfs = opStatfs,
    .flush = opFlush,
    .release = opRelease,
    .fsync = opFsync,
    .readdir = opReaddir,
    .init = opInit,
    .create = opCreate,
    .utimens = opUtimens,
};

static void usage(void)
{
    fprintf(stderr, "usage: station-smbmount [-c CREDENTIALS_FILE] [-o FUSE_OPTIONS] [-t TIMEOUT_MS] [-n WORKERS] "
                    "//server[:port]/share[/dir] MOUNTPOINT\n"
                    "Credentials (username=, password=, domain= lines) come from the file or standard input.\n");
}

static void keepValue(const char* line, const char* key, char* target, size_t size)
{
    const size_t n = strlen(key);
    if (strncmp(line, key, n) != 0)
        return;
    size_t length = strlen(line + n);
    if (length >= size)
        length = size - 1;   /* longer values cannot be valid credentials anyway */
    memcpy(target, line + n, length);
    target[length] = '\0';
}

static int readCredentials(FILE* in)
{
    char line[1024];
    while (fgets(line, sizeof(line), in)) {
        line[strcspn(line, "\r\n")] = '\0';
        keepValue(line, "username=", g_user, sizeof(g_user));
        keepValue(line, "user=", g_user, sizeof(g_user));
        keepValue(line, "password=", g_password, sizeof(g_password));
        keepValue(line, "domain=", g_domain, sizeof(g_domain));
        keepValue(line, "workgroup=", g_domain, sizeof(g_domain));
    }
    explicit_bzero(line, sizeof(line));
    return g_user[0] ? 0 : -1;
}

static int credentialsFromFile(const char* path)
{
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    struct stat st;
    if (fd < 0 || fstat(fd, &st) < 0) {
        fprintf(stderr, "station-smbmount: cannot read credentials file %s: %s\n", path, strerror(errno));
        return -1;
    }
    if (st.st_mode & (S_IRWXG | S_IRWXO)) {
        fprintf(stderr, "station-smbmount: credentials file %s is readable by others; refused\n", path);
        close(fd);
        return -1;
    }
    FILE* in = fdopen(fd, "r");
    const int result = readCredentials(in);
    fclose(in);
    return result;
}

/* "//server[:port]/share[/dir]" (backslashes accepted) -> base URL and port. */
static int parseShare(const char* text, uint16_t* port)
{
    char copy[4096];
    snprintf(copy, sizeof(copy), "%s", text);
    for (char* p = copy; *p; ++p)
        if (*p == '\\')
            *p = '/';
    char* p = copy;
    while (*p == '/')
        ++p;
    char* slash = strchr(p, '/');
    if (!*p || !slash || !slash[1])
        return -1;
    *slash = '\0';
    char* colon = strrchr(p, ':');
    *port = 0;
    if (colon) {
        char* end = NULL;
        const long value = strtol(colon + 1, &end, 10);
        if (*end || value <= 0 || value > 65535)
            return -1;
        *port = (uint16_t)value;
        *colon = '\0';
    }
    char* rest = slash + 1;
    size_t n = strlen(rest);
    while (n > 0 && rest[n - 1] == '/')
        rest[--n] = '\0';
    /* the share and directory are encoded like every other path */
    char prefixed[4100];
    snprintf(prefixed, sizeof(prefixed), "/%s", rest);
    const size_t hostLength = strlen(p);
    if (hostLength + 7 >= sizeof(g_base))
        return -1;
    memcpy(g_base, "smb://", 6);
    memcpy(g_base + 6, p, hostLength + 1);
    char encoded[sizeof(g_base)];
    if (urlOf(prefixed, encoded, sizeof(encoded)) != 0)
        return -1;
    memcpy(g_base, encoded, sizeof(g_base));
    return 0;
}

static int exitCodeFor(int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
        return ExitAccessDenied;
    case ECONNREFUSED:
    case EHOSTUNREACH:
    case ENETUNREACH:
    case ETIMEDOUT:
    case EHOSTDOWN:
    case ECONNRESET:
    case ECONNABORTED:
    case ENOTCONN:
    case EIO:
        return ExitUnreachable;
    case ENOENT:
    case ENODEV:
    case ENOTDIR:
        return ExitNoShare;
    default:
        return ExitOther;
    }
}

static const char* explain(int code)
{
    switch (code) {
    case ExitAccessDenied:
        return "access denied (wrong user name, domain or password?)";
    case ExitUnreachable:
        return "server unreachable";
    case ExitNoShare:
        return "share or directory not found";
    default:
        return "cannot open the share";
    }
}

/* A context of its own, the default of the compatibility calls the operations use. */
static SMBCCTX* newContext(void)
{
    SMBCCTX* context = smbc_new_context();
    if (!context)
        return NULL;
    smbc_setDebug(context, 0);
    smbc_setOptionDebugToStderr(context, 1);
    smbc_setFunctionAuthDataWithContext(context, authenticate);
    smbc_setOptionUseKerberos(context, 0);
    smbc_setOptionFallbackAfterKerberos(context, 1);
    smbc_setOptionNoAutoAnonymousLogin(context, 1);
    if (g_timeoutMs > 0)
        smbc_setTimeout(context, g_timeoutMs);
    if (g_port)
        smbc_setPort(context, g_port);
    g_checkServer = smbc_getFunctionCheckServer(context);
    smbc_setFunctionCheckServer(context, checkServer);
    if (!smbc_init_context(context)) {
        const int error = errno;
        smbc_free_context(context, 1);
        errno = error;
        return NULL;
    }
    smbc_set_context(context);
    return context;
}

static int prepareWorker(void)
{
    return newContext() ? 0 : -1;
}

int main(int argc, char* argv[])
{
    const char* credentialsFile = NULL;
    const char* fuseOptions = NULL;
    int option;
    while ((option = getopt(argc, argv, "c:o:t:n:h")) != -1) {
        switch (option) {
        case 'c':
            credentialsFile = optarg;
            break;
        case 'o':
            fuseOptions = optarg;
            break;
        case 't':
            g_timeoutMs = atoi(optarg);
            break;
        case 'n':
            g_workers = atoi(optarg);
            if (g_workers < 1 || g_workers > C_maxWorkers) {
                fprintf(stderr, "station-smbmount: -n takes 1 to %d workers\n", C_maxWorkers);
                return ExitUsage;
            }
            break;
        default:
            usage();
            return ExitUsage;
        }
    }
    if (argc - optind != 2) {
        usage();
        return ExitUsage;
    }
    const char* shareText = argv[optind];
    const char* mountPoint = argv[optind + 1];

    if (parseShare(shareText, &g_port) != 0) {
        fprintf(stderr, "station-smbmount: invalid share %s (expected //server[:port]/share[/dir])\n", shareText);
        return ExitUsage;
    }
    if ((credentialsFile ? credentialsFromFile(credentialsFile) : readCredentials(stdin)) != 0) {
        fprintf(stderr, "station-smbmount: no user name in the credentials\n");
        wipe();
        return ExitUsage;
    }

    SMBCCTX* context = newContext();
    if (!context) {
        fprintf(stderr, "station-smbmount: cannot initialise the SMB client: %s\n", strerror(errno));
        wipe();
        return ExitOther;
    }

    /* Credentials and share are checked here, so that failures happen at mount time. */
    const int probe = smbc_opendir(g_base);
    if (probe < 0) {
        const int error = errno;
        const int code = exitCodeFor(error);
        fprintf(stderr, "station-smbmount: %s: %s (%s)\n", shareText, explain(code), strerror(error));
        smbc_free_context(context, 1);
        wipe();
        return code;
    }
    smbc_closedir(probe);
    /* The workers make their own connections; this process only forwards requests. */
    smbc_set_context(NULL);
    smbc_free_context(context, 1);
    const int started = forwardStart(g_workers, &c_operations, prepareWorker);
    wipe();
    if (started != 0) {
        fprintf(stderr, "station-smbmount: cannot start its workers: %s\n", strerror(-started));
        return ExitOther;
    }
    struct fuse_operations operations = *forwardOperations();
    operations.chmod = opChmod;
    operations.chown = opChown;
    operations.fsync = opFsync;
    operations.init = opInit;

    /* Commas and backslashes of the share name are escaped for the option parser. */
    char fsname[2048];
    size_t length = 0;
    for (const char* p = shareText; *p && length + 2 < sizeof(fsname); ++p) {
        if (*p == ',' || *p == '\\')
            fsname[length++] = '\\';
        fsname[length++] = *p;
    }
    fsname[length] = '\0';
    char options[4096];
    snprintf(options, sizeof(options), "fsname=%s,subtype=smb%s%s", fsname, fuseOptions ? "," : "",
             fuseOptions ? fuseOptions : "");
    char* fuseArgv[] = {argv[0], "-o", options, NULL};
    struct fuse_args args = FUSE_ARGS_INIT(3, fuseArgv);
    /* fuse_new() replaces the list by one it allocates: freed on every way out. */
    struct fuse* fuse = fuse_new(&args, &operations, sizeof(operations), NULL);
    if (!fuse) {
        fprintf(stderr, "station-smbmount: invalid mount options %s\n", options);
        fuse_opt_free_args(&args);
        forwardStop();
        return ExitUsage;
    }
    if (fuse_mount(fuse, mountPoint) != 0) {
        fprintf(stderr, "station-smbmount: cannot mount at %s\n", mountPoint);
        fuse_destroy(fuse);
        fuse_opt_free_args(&args);
        forwardStop();
        return ExitMountFailed;
    }
    fuse_set_signal_handlers(fuse_get_session(fuse));
    printf("ready\n");
    fflush(stdout);

    const int result = g_workers > 1 ? fuse_loop_mt(fuse, 0) : fuse_loop(fuse);

    fuse_remove_signal_handlers(fuse_get_session(fuse));
    fuse_unmount(fuse);
    fuse_destroy(fuse);
    fuse_opt_free_args(&args);
    forwardStop();
    return result == 0 ? 0 : ExitOther;
}
