#include "settingsdocument.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QThread>
#include <QtEndian>

#include <algorithm>
#include <cctype>
#include <cstring>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
#ifdef Q_OS_UNIX
constexpr int C_lockPollMs = 20;
#endif

// Offset of the first byte that is not part of well-formed UTF-8, or -1.
qsizetype firstInvalidUtf8(const QByteArray& bytes)
{
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype size = bytes.size();
    qsizetype i = 0;
    while (i < size) {
        const unsigned char c = data[i];
        int length = 0;
        unsigned int codePoint = 0;
        if (c < 0x80) {
            ++i;
            continue;
        } else if ((c & 0xE0) == 0xC0) {
            length = 2;
            codePoint = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            length = 3;
            codePoint = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            length = 4;
            codePoint = c & 0x07;
        } else {
            return i;
        }
        if (i + length > size)
            return i;
        for (int k = 1; k < length; ++k) {
            if ((data[i + k] & 0xC0) != 0x80)
                return i;
            codePoint = (codePoint << 6) | (data[i + k] & 0x3F);
        }
        static const unsigned int minimum[5] = {0, 0, 0x80, 0x800, 0x10000};
        if (codePoint < minimum[length] || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
            return i;
        i += length;
    }
    return -1;
}

void lineAndColumn(const QByteArray& bytes, qsizetype offset, int& line, int& column)
{
    offset = qBound<qsizetype>(0, offset, bytes.size());
    line = 1;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < offset; ++i) {
        if (bytes.at(i) == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    column = int(offset - lineStart) + 1;
}

#ifdef Q_OS_UNIX
QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}
#endif

QString asideName(const QString& path)
{
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString candidate = path + QStringLiteral(".damaged-") + stamp;
    for (int n = 2; QFileInfo::exists(candidate); ++n)
        candidate = path + QStringLiteral(".damaged-") + stamp + QLatin1Char('-') + QString::number(n);
    return candidate;
}

// Flush to the device, then to the disk; false with the reason when either fails.
bool flushToDisk(QFile& file, QString& error)
{
    if (!file.flush()) {
        error = file.errorString();
        return false;
    }
#ifdef Q_OS_UNIX
    if (::fsync(file.handle()) != 0 && errno != EINVAL && errno != EROFS) {
        error = systemError();
        return false;
    }
#endif
    return true;
}

#ifdef Q_OS_UNIX
// Bytes at the start that two texts share.
qsizetype commonPrefix(const QByteArray& a, const QByteArray& b)
{
    const qsizetype size = qMin(a.size(), b.size());
    constexpr qsizetype block = 4096;
    qsizetype i = 0;
    while (i + block <= size && std::memcmp(a.constData() + i, b.constData() + i, block) == 0)
        i += block;
    while (i < size && a.at(i) == b.at(i))
        ++i;
    return i;
}

// Makes the file hold `bytes` when its first `start` bytes already match them: only the rest is
// written (a value changed near the end of a large document writes a few pages, not the whole
// file), then the length is set unless it already is `sizeOnDisk`, and everything reaches the disk.
bool rewrite(QFile& file, const QByteArray& bytes, qsizetype start, qsizetype sizeOnDisk, QString& error)
{
    // Written straight to the descriptor: a short write is retried until the system says why.
    const char* data = bytes.constData() + start;
    qsizetype left = bytes.size() - start;
    off_t offset = off_t(start);
    while (left > 0) {
        const ssize_t written = ::pwrite(file.handle(), data, size_t(left), offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            error = written < 0 ? systemError() : QStringLiteral("nothing could be written");
            return false;
        }
        data += written;
        left -= written;
        offset += written;
    }
    if (bytes.size() != sizeOnDisk && ::ftruncate(file.handle(), off_t(bytes.size())) != 0) {
        error = systemError();
        return false;
    }
    return flushToDisk(file, error);
}
#else
qsizetype commonPrefix(const QByteArray&, const QByteArray&)
{
    return 0;
}

bool rewrite(QFile& file, const QByteArray& bytes, qsizetype, qsizetype, QString& error)
{
    if (!file.resize(0) || !file.seek(0) || file.write(bytes) != bytes.size()) {
        error = file.errorString();
        return false;
    }
    return flushToDisk(file, error);
}
#endif
}

SettingsDocument::Reading SettingsDocument::read(const QString& path)
{
    QFile file(path);
    if (!file.exists()) {
        Reading reading;
        reading.state = CeMissing;
        return reading;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        Reading reading;
        reading.state = CeUnusable;
        reading.reason = QStringLiteral("cannot be read: %1").arg(file.errorString());
        return reading;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        Reading reading;
        reading.state = CeUnusable;
        reading.bytes = bytes;
        reading.reason = QStringLiteral("cannot be read: %1").arg(file.errorString());
        return reading;
    }
    return parse(bytes);
}

SettingsDocument::Reading SettingsDocument::parse(const QByteArray& bytes)
{
    Reading reading;
    reading.bytes = bytes;
    reading.digest = digest(bytes);

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    // What the load receives is Qt's parse, whatever is said of the file below.
    if (error.error == QJsonParseError::NoError && document.isObject())
        reading.object = document.object();

    reading.state = CeUnusable;
    if (std::all_of(bytes.cbegin(), bytes.cend(), [](char c) { return std::isspace(uchar(c)); })) {
        reading.reason = bytes.isEmpty() ? QStringLiteral("the file is empty")
                                         : QStringLiteral("the file holds only blanks");
        return reading;
    }
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        reading.reason = QStringLiteral("not UTF-8 text (it is UTF-16)");
        return reading;
    }
    // Qt's parser refuses malformed UTF-8 itself: the byte-level look only serves a diagnosis.
    const qsizetype invalid = error.error == QJsonParseError::NoError ? -1 : firstInvalidUtf8(bytes);
    if (invalid >= 0) {
        lineAndColumn(bytes, invalid, reading.line, reading.column);
        reading.reason = QStringLiteral("not UTF-8 text (byte 0x%1)")
                             .arg(uint(uchar(bytes.at(invalid))), 2, 16, QLatin1Char('0'));
        return reading;
    }
    if (error.error != QJsonParseError::NoError) {
        // Qt reports the offset just past the offending character, except for trailing garbage.
        const qsizetype offset = error.error == QJsonParseError::GarbageAtEnd ? error.offset : error.offset - 1;
        lineAndColumn(bytes, offset, reading.line, reading.column);
        reading.reason = QStringLiteral("not valid JSON (%1)").arg(error.errorString());
        return reading;
    }
    if (!document.isObject()) {
        reading.reason = QStringLiteral("not a JSON object");
        return reading;
    }
    reading.state = CeLoaded;
    return reading;
}

QString SettingsDocument::describe(const Reading& reading, const QString& path)
{
    QString text = path + QStringLiteral(": ") + reading.reason;
    if (reading.line > 0)
        text += QStringLiteral(" at line %1, column %2").arg(reading.line).arg(reading.column);
    return text;
}

// 64-bit XXH64 of the bytes, as hexadecimal text. A digest only tells whether the file changed
// since a program read it (nobody gains by forging one), so a hash at memory speed serves better
// than a cryptographic one: a station's document can be several megabytes.
QByteArray SettingsDocument::digest(const QByteArray& bytes)
{
    constexpr quint64 p1 = 0x9E3779B185EBCA87ULL;
    constexpr quint64 p2 = 0xC2B2AE3D27D4EB4FULL;
    constexpr quint64 p3 = 0x165667B19E3779F9ULL;
    constexpr quint64 p4 = 0x85EBCA77C2B2AE63ULL;
    constexpr quint64 p5 = 0x27D4EB2F165667C5ULL;
    const auto rotate = [](quint64 x, int r) { return (x << r) | (x >> (64 - r)); };
    const auto round = [&](quint64 accumulator, quint64 input) { return rotate(accumulator + input * p2, 31) * p1; };
    const auto read64 = [](const uchar* p) { quint64 v; std::memcpy(&v, p, 8); return qFromLittleEndian(v); };
    const auto read32 = [](const uchar* p) { quint32 v; std::memcpy(&v, p, 4); return qFromLittleEndian(v); };

    const auto* p = reinterpret_cast<const uchar*>(bytes.constData());
    const quint64 length = quint64(bytes.size());
    const uchar* const end = p + length;
    quint64 hash;
    if (length >= 32) {
        quint64 v1 = p1 + p2, v2 = p2, v3 = 0, v4 = quint64(0) - p1;
        for (const uchar* limit = end - 32; p <= limit; p += 32) {
            v1 = round(v1, read64(p));
            v2 = round(v2, read64(p + 8));
            v3 = round(v3, read64(p + 16));
            v4 = round(v4, read64(p + 24));
        }
        hash = rotate(v1, 1) + rotate(v2, 7) + rotate(v3, 12) + rotate(v4, 18);
        for (const quint64 v : {v1, v2, v3, v4})
            hash = (hash ^ round(0, v)) * p1 + p4;
    } else {
        hash = p5;
    }
    hash += length;
    for (; end - p >= 8; p += 8)
        hash = rotate(hash ^ round(0, read64(p)), 27) * p1 + p4;
    if (end - p >= 4) {
        hash = rotate(hash ^ (quint64(read32(p)) * p1), 23) * p2 + p3;
        p += 4;
    }
    for (; p < end; ++p)
        hash = rotate(hash ^ (*p * p5), 11) * p1;
    hash ^= hash >> 33;
    hash *= p2;
    hash ^= hash >> 29;
    hash *= p3;
    hash ^= hash >> 32;
    return QByteArray::number(hash, 16).rightJustified(16, '0');
}

SettingsDocument::EnWriteResult SettingsDocument::writeInPlace(const QString& path, const QByteArray& bytes,
                                                               QString* error)
{
    QFile file(path);
    const bool existed = file.exists();
    QByteArray previous;
    bool hasPrevious = false;
    if (file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        previous = file.readAll();
        hasPrevious = existed && file.error() == QFileDevice::NoError;
    } else if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        // A file readable only for writing cannot be kept: it is written as before, unguarded.
        if (error)
            *error = file.errorString();
        return CeCannotOpen;
    }
    makePrivate(path);

    QString reason;
    // A file that is not read whole is written whole.
    const qsizetype start = hasPrevious ? commonPrefix(bytes, previous) : 0;
    if (hasPrevious && start == bytes.size() && bytes.size() == previous.size())
        return CeWritten;
    if (rewrite(file, bytes, start, hasPrevious ? previous.size() : -1, reason))
        return CeWritten;
    if (error)
        *error = reason;
    if (!existed) {
        file.close();
        QFile::remove(path);
        return CeRestored;
    }
    // How far the failed write went is not known: the previous bytes go back from where it began.
    QString restoreError;
    if (hasPrevious && rewrite(file, previous, start, -1, restoreError))
        return CeRestored;
    return CeLost;
}

bool SettingsDocument::makePrivate(const QString& path)
{
#ifdef Q_OS_UNIX
    struct stat status;
    const QByteArray native = QFile::encodeName(path);
    if (::stat(native.constData(), &status) != 0)
        return false;
    const mode_t mode = status.st_mode & 07777;
    if ((mode & 0077) == 0)
        return true;
    return ::chmod(native.constData(), mode & 0700) == 0;
#else
    return QFile::setPermissions(path, QFile::permissions(path) & (QFile::ReadOwner | QFile::WriteOwner));
#endif
}

bool SettingsDocument::moveAside(const QString& path, QString* movedTo, QString* error)
{
    const QString target = asideName(path);
    QFile file(path);
    if (!file.rename(target)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    if (movedTo)
        *movedTo = target;
    return true;
}

bool SettingsDocument::copyAside(const QString& path, QString* copiedTo)
{
    const QString target = asideName(path);
    if (!QFile::copy(path, target))
        return false;
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    if (copiedTo)
        *copiedTo = target;
    return true;
}

// --- Lock ----------------------------------------------------------------------------------

SettingsLock::SettingsLock(const QString& documentPath)
    : m_path(documentPath + QStringLiteral(".lock"))
{
}

SettingsLock::~SettingsLock()
{
    unlock();
}

bool SettingsLock::lock(int timeoutMs, QString* error)
{
    if (m_descriptor >= 0)
        return true;
#ifdef Q_OS_UNIX
    const QByteArray native = QFile::encodeName(m_path);
    const int descriptor = ::open(native.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        if (error)
            *error = QStringLiteral("cannot open %1: %2").arg(m_path, systemError());
        return false;
    }
    QElapsedTimer clock;
    clock.start();
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            if (error)
                *error = QStringLiteral("cannot lock %1: %2").arg(m_path, systemError());
            ::close(descriptor);
            return false;
        }
        if (clock.elapsed() >= timeoutMs) {
            if (error)
                *error = QStringLiteral("%1 is held by another program").arg(m_path);
            ::close(descriptor);
            return false;
        }
        QThread::msleep(C_lockPollMs);
    }
    m_descriptor = descriptor;
    return true;
#else
    // No advisory locks here: cooperating programs rely on the check of what they loaded.
    Q_UNUSED(timeoutMs)
    Q_UNUSED(error)
    return true;
#endif
}

void SettingsLock::unlock()
{
#ifdef Q_OS_UNIX
    if (m_descriptor >= 0) {
        ::flock(m_descriptor, LOCK_UN);
        ::close(m_descriptor);
    }
#endif
    m_descriptor = -1;
}
