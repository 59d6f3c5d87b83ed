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

struct Extraction
{
    QString root;      // canonical destination directory, no trailing separator
    QList<QByteArray> extracted;
};

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
    const QString parent = QFileInfo(target).absolutePath();
    if (!QDir().mkpath(parent)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot create directory:"), parent);
        return false;
    }
    // A directory link already present in the destination must not lead the file elsewhere.
    if (!isUnder(extraction.root, QFileInfo(parent).canonicalFilePath())) {
        refuse(entryPath, QStringLiteral("outside destination"));
        return false;
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
    QByteArray buffer;
    while (!input->atEnd()) {
        buffer = input->read(64 * 1024);
        if (buffer.isEmpty())
            break;
        if (output.write(buffer) != buffer.size()) {
            LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot write file:"), target);
            output.close();
            output.remove();
            return false;
        }
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
    }
}
}

QList<QByteArray> Zip::Unzip(const QByteArray& zipFile, const QByteArray& destDir, const QByteArray& password)
{
    Q_UNUSED(password)
    const QString archivePath = QString::fromUtf8(zipFile);
    const QString destination = QString::fromUtf8(destDir);

    KZip zip(archivePath);
    if (!zip.open(QIODevice::ReadOnly)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot open zip file:"), archivePath);
        return {};
    }
    if (destination.isEmpty() || !QDir().mkpath(destination)) {
        LogLine::critical(nullptr, C_source, __LINE__, QStringLiteral("ERROR: cannot create destination directory:"), destination);
        return {};
    }
    Extraction extraction;
    extraction.root = QFileInfo(destination).canonicalFilePath();
    extractDirectory(zip.directory(), extraction);
    return extraction.extracted;
}
