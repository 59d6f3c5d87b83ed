#pragma once
#include <QByteArray>
#include <QString>
#include <QVector>

#include <vector>

// Depth-first walk of the regular files under a local directory, one fstatat() per file and
// no time-zone conversion. Paths come out relative to the root, as bytes, in the byte order
// of the whole relative path (the order SQLite's BINARY collation gives the records), so that
// a pass can merge them with the records it streams. Symbolic links are neither listed nor
// followed; hidden files and directories are.
class DSyncLocalWalk
{
public:
    struct File
    {
        QByteArray relativePath;
        QByteArray name; // last component
        qint64 size = -1;
        qint64 modified = -1; // ms since the epoch
    };

    DSyncLocalWalk() = default;
    ~DSyncLocalWalk();
    DSyncLocalWalk(const DSyncLocalWalk&) = delete;
    DSyncLocalWalk& operator=(const DSyncLocalWalk&) = delete;

    bool open(const QString& root);
    // The next regular file; false at the end.
    bool next(File& file);

private:
    struct Entry
    {
        QByteArray name;
        bool directory = false;
    };
    struct Level
    {
        int fd = -1;
        QByteArray prefix; // relative path of the directory with its trailing '/', empty at the root
        std::vector<Entry> entries;
        size_t index = 0;
    };

    bool push(int fd, const QByteArray& prefix);
    void pop();

    std::vector<Level> m_levels;
};
