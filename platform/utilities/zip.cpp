#include "utilities/zip.h"
#include "utilities/logline.h"

#include <KZip>
#include <KArchiveDirectory>
#include <KZipFileEntry>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopedPointer>

namespace {
const char* const C_source = "platform/utilities/zip";

constexpr qint64 C_chunkSize = 64 * 1024;

struct Extraction
{
    QString root;      // canonical destination directory, no trailing separator
    QList<QByteArray> extracted;
    const Zip::Limits* limits = nullptr;
    qint64 total = 0;  // inflated bytes so far
    QString excess;    // the limit a file broke while being written, if any
};

// The limit that a file of `size` inflated bytes, stored in `stored` bytes, breaks when the
// whole package comes to `total` bytes; empty when it breaks none.
QString excessOf(qint64 size, qint64 stored, qint64 total, const Zip::Limits& limits)
{
    if (size > limits.maxEntrySize)
        return QStringLiteral("entry size limit of %1 bytes").arg(limits.maxEntrySize);
    if (total > limits.maxTotalSize)
        return QStringLiteral("total size limit of %1 bytes").arg(limits.maxTotalSize);
    if (size > limits.ratioFloor && size > stored * limits.maxRatio)
        return QStringLiteral("compression ratio limit of %1:1").arg(limits.maxRatio);
    return QString();
}

// Inflates one file from `input` into `output` (nowhere when null), counting the bytes as they
// come, not as the archive claims them. Returns the broken limit (the output is then
// incomplete), or empty; `failed` tells a write error. A read error ends the file, as the end
// of its data does.
QString pump(QIODevice* input, qint64 stored, QIODevice* output, const Zip::Limits& limits, qint64& total,
             bool& failed)
{
    failed = false;
    QByteArray buffer(C_chunkSize, Qt::Uninitialized);
    qint64 size = 0;
    for (;;) {
        const qint64 read = input->read(buffer.data(), buffer.size());
        if (read <= 0)
            return QString();
        size += read;
        total += read;
        const QString excess = excessOf(size, stored, total, limits);
        if (!excess.isEmpty())
            return excess;
        if (output && output->write(buffer.constData(), read) != read) {
            failed = true;
            return QString();
        }
    }
}

int entryCount(const KArchiveDirectory* directory)
{
    const QStringList names = directory->entries();
    int count = names.size();
    for (const QString& name : names) {
        const KArchiveEntry* entry = directory->entry(name);
        if (entry && entry->isDirectory() && entry->symLinkTarget().isEmpty())
            count += entryCount(static_cast<const KArchiveDirectory*>(entry));
    }
    return count;
}

// Checks every file against the limits before anything is written: first the sizes the
// archive claims, then the sizes inflating really gives. Returns the first broken limit
// with the file's name, or empty.
QString measure(const KArchiveDirectory* directory, const Zip::Limits& limits, qint64& claimedTotal, qint64& total)
{
    const QStringList names = directory->entries();
    for (const QString& name : names) {
        const KArchiveEntry* entry = directory->entry(name);
        if (!entry || !entry->symLinkTarget().isEmpty())
            continue;
        if (entry->isDirectory()) {
            const QString excess = measure(static_cast<const KArchiveDirectory*>(entry), limits, claimedTotal, total);
            if (!excess.isEmpty())
                return excess;
            continue;
        }
        const auto* file = static_cast<const KZipFileEntry*>(entry);
        claimedTotal += file->size();
        QString excess = excessOf(file->size(), file->compressedSize(), claimedTotal, limits);
        if (!excess.isEmpty())
            return QStringLiteral("%1 claims %2 bytes, over the %3").arg(file->path()).arg(file->size()).arg(excess);
        // An unreadable file is left to the extraction, which reports it.
        QScopedPointer<QIODevice> input(file->createDevice());
        bool failed = false;
        excess = input ? pump(input.data(), file->compressedSize(), nullptr, limits, total, failed) : QString();
        if (!excess.isEmpty())
            return QStringLiteral("%1 inflates past the %2").arg(file->path(), excess);
    }
    return QString();
}

bool isUnder(const QString& root, const QString& path)
{
    return path == root || path.startsWith(root + QLatin1Char('/'));
}

// Why an entry path may not be written below the destination; empty when it may.
QString refusalReason(const QString& entryPath)
{
    if (entryPath.isEmpty())
        return QStringLiteral("empty name");
    if (entryPath.contains(QLatin1Char('\\')))
        return QStringLiteral("backslash in name");
    const bool hasDrive = entryPath.size() > 1 && entryPath.at(0).isLetter() && entryPath.at(1) == QLatin1Char(':');
    if (entryPath.startsWith(QLatin1Char('/')) || hasDrive)
        return QStringLiteral("absolute path");
    const QStringList parts = entryPath.split(QLatin1Char('/'));
    if (parts.contains(QStringLiteral("..")))
        return QStringLiteral("parent directory reference");
    return QString();
}

void refuse(const QString& entryPath, const QString& reason)
{
    LogLine::critical(nullptr, C_source, __LINE__,
                      QStringLiteral("ERROR: zip entry refused (%1):").arg(reason), entryPath);
}

bool extractFile(const KZipFileEntry* entry, const QString& entryPath, Extraction& extraction)
{
    const QString target = QDir::cleanPath(extraction.root + QLatin1Char('/') + entryPath);
    if (!isUnder(extraction.root, target) || target == extraction.root) {
        refuse(entryPath, QStringLiteral("outside destination"));
        return false;
    }
    // The parent is made one directory at a time, each checked before the next is created in
    // it: a directory link already present in the destination must not lead anything elsewhere.
    QString parent = extraction.root;
    const QString relativeParent = target.mid(extraction.root.size() + 1).section(QLatin1Char('/'), 0, -2);
    const QStringList directories = relativeParent.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& directory : directories) {
        const QString next = parent + QLatin1Char('/') + directory;
        if (!QFileInfo(next).isSymLink() && !QFileInfo::exists(next) && !QDir(parent).mkdir(directory)) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot create directory:"), next);
            return false;
        }
        parent = QFileInfo(next).canonicalFilePath();
        if (parent.isEmpty() || !isUnder(extraction.root, parent) || !QFileInfo(parent).isDir()) {
            refuse(entryPath, QStringLiteral("outside destination"));
            return false;
        }
    }
    const QFileInfo existing(target);
    if (existing.isSymLink() || (existing.exists() && !existing.isFile())) {
        if (existing.isDir() || !QFile::remove(target)) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot replace:"), target);
            return false;
        }
    }

    QScopedPointer<QIODevice> input(entry->createDevice());
    QFile output(target);
    if (!input || !output.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot write file:"), target);
        return false;
    }
    bool failed = false;
    const QString excess = pump(input.data(), entry->compressedSize(), &output, *extraction.limits, extraction.total,
                                failed);
    if (!excess.isEmpty() || failed) {
        if (failed)
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot write file:"), target);
        else
            extraction.excess = QStringLiteral("%1 inflates past the %2").arg(entryPath, excess);
        output.close();
        output.remove();
        return false;
    }
    return true;
}

void extractDirectory(const KArchiveDirectory* directory, Extraction& extraction)
{
    const QStringList names = directory->entries();
    for (const QString& name : names) {
        const KArchiveEntry* entry = directory->entry(name);
        if (!entry)
            continue;
        if (!entry->symLinkTarget().isEmpty()) {
            const QString path = entry->isFile() ? static_cast<const KZipFileEntry*>(entry)->path() : name;
            refuse(path, QStringLiteral("symbolic link"));
            continue;
        }
        if (entry->isDirectory()) {
            if (name == QLatin1String("..") || name.contains(QLatin1Char('\\'))) {
                refuse(name + QLatin1Char('/'), QStringLiteral("parent directory reference"));
                continue;
            }
            extractDirectory(static_cast<const KArchiveDirectory*>(entry), extraction);
            if (!extraction.excess.isEmpty())
                return;
            continue;
        }
        const auto* file = static_cast<const KZipFileEntry*>(entry);
        const QString path = file->path();
        const QString reason = refusalReason(path);
        if (!reason.isEmpty()) {
            refuse(path, reason);
            continue;
        }
        if (extractFile(file, path, extraction))
            extraction.extracted.append(path.toUtf8());
        if (!extraction.excess.isEmpty())
            return;
    }
}

void refusePackage(const QString& archivePath, const QString& excess)
{
    LogLine::critical(nullptr, C_source, __LINE__,
                      QStringLiteral("ERROR: zip package refused, %1:").arg(excess), archivePath);
}
}

QList<QByteArray> Zip::Unzip(const QByteArray& zipFile, const QByteArray& destDir, const QByteArray& password,
                             const Limits& limits)
{
    Q_UNUSED(password)
    const QString archivePath = QString::fromUtf8(zipFile);
    const QString destination = QString::fromUtf8(destDir);

    KZip zip(archivePath);
    if (!zip.open(QIODevice::ReadOnly)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot open zip file:"), archivePath);
        return {};
    }
    const int entries = entryCount(zip.directory());
    if (entries > limits.maxEntries) {
        refusePackage(archivePath, QStringLiteral("%1 entries, over the entry count limit of %2")
                                       .arg(entries).arg(limits.maxEntries));
        return {};
    }
    qint64 claimedTotal = 0;
    qint64 total = 0;
    const QString excess = measure(zip.directory(), limits, claimedTotal, total);
    if (!excess.isEmpty()) {
        refusePackage(archivePath, excess);
        return {};
    }

    if (destination.isEmpty() || !QDir().mkpath(destination)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot create destination directory:"), destination);
        return {};
    }
    Extraction extraction;
    extraction.root = QFileInfo(destination).canonicalFilePath();
    extraction.limits = &limits;
    extractDirectory(zip.directory(), extraction);
    if (!extraction.excess.isEmpty()) {
        // The archive changed since it was measured: take back what was written.
        refusePackage(archivePath, extraction.excess);
        for (const QByteArray& path : qAsConst(extraction.extracted))
            QFile::remove(extraction.root + QLatin1Char('/') + QString::fromUtf8(path));
        return {};
    }
    return extraction.extracted;
}

bool Zip::Write(const QByteArray& zipFile, const QList<QPair<QByteArray, QByteArray>>& files, QString* error)
{
    const QString archivePath = QString::fromUtf8(zipFile);
    KZip zip(archivePath);
    if (!zip.open(QIODevice::WriteOnly)) {
        if (error)
            *error = zip.errorString();
        return false;
    }
    zip.setCompression(KZip::DeflateCompression);
    for (const auto& file : files) {
        if (!zip.writeFile(QString::fromUtf8(file.first), file.second, 0100600)) {
            if (error)
                *error = zip.errorString();
            zip.close();
            QFile::remove(archivePath);
            return false;
        }
    }
    if (!zip.close()) {
        if (error)
            *error = zip.errorString();
        QFile::remove(archivePath);
        return false;
    }
    return true;
}
