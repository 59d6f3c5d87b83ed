#pragma once
#include <QString>
#include <QtGlobal>

// The distant directory of one alias, held open while the alias's pass runs. Every distant
// operation of the pass goes through it, relative to the open directory, so that nothing is
// ever written at or above the root, nor on another file system that comes to take its path
// (a share unmounted under the pass leaves its bare mount point on the local disk).
// verify() tells whether the path still names the file system found at open().
class DSyncDistantRoot
{
public:
    struct Entry
    {
        bool exists = false;
        bool isDirectory = false;
        bool isSymLink = false;
        qint64 size = -1;
        qint64 modified = -1; // ms since the epoch
    };

    DSyncDistantRoot() = default;
    ~DSyncDistantRoot();
    DSyncDistantRoot(const DSyncDistantRoot&) = delete;
    DSyncDistantRoot& operator=(const DSyncDistantRoot&) = delete;

    // False when the path is not a directory that can be opened.
    bool open(const QString& path);
    void close();
    QString path() const { return m_path; }
    // The open directory, for copies that run relative to it on other threads.
    int descriptor() const { return m_fd; }
    QString errorString() const { return m_error; }
    // On another device than its parent when opened.
    bool isMountPoint() const { return m_mountPoint; }
    static bool isMountPoint(const QString& path);
    // On a network file system (SMB, NFS, or one served in user space such as the share helper's).
    bool isNetwork() const { return m_network; }
    // A user-space file system: without a write-back cache (the default) a write has reached
    // it when write() returns, so that what fstat() says before close() stays true after it.
    bool isUserSpace() const { return m_userSpace; }
    // Keeps modification times to the nanosecond as they are set (ext4, XFS, Btrfs, tmpfs):
    // what a copy was given is what it has, no need to ask.
    bool keepsExactTimes() const { return m_exactTimes; }

    // The path still names the directory opened, on the same device, and when it was a mount
    // point (a device other than its parent's) it still is one.
    bool verify();

    // Paths below are relative to the root, without "." or ".." components.
    Entry entry(const QString& relativePath) const;
    // A descriptor the caller closes, -1 on failure. createNew() never replaces a file.
    int openForReading(const QString& relativePath);
    int createNew(const QString& relativePath);
    // Makes the directories of a relative path that are missing (never the root itself);
    // `created` tells whether the last one was made here (and so was empty).
    bool makeDirectories(const QString& relativeDirectory, bool* created = nullptr);
    // Replaces `to` by `from` (both relative).
    bool rename(const QString& from, const QString& to);
    // Moves a file out of the root, to an absolute path on the same file system.
    bool moveOut(const QString& relativePath, const QString& target);
    bool remove(const QString& relativePath);
    // Removes the files under the root whose names start with prefix and end with suffix;
    // the number removed, -1 when one of them could not be removed.
    int removeFiles(const QString& prefix, const QString& suffix);

private:
    bool setError(const QString& what);

    QString m_path;
    int m_fd = -1;
    quint64 m_device = 0;
    quint64 m_inode = 0;
    bool m_mountPoint = false;
    bool m_network = false;
    bool m_userSpace = false;
    bool m_exactTimes = false;
    QString m_error;
};
