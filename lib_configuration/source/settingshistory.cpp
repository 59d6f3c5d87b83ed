#include "settingshistory.h"

#include "settingsdocument.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>

namespace {
const QString C_lastModificationKey = QStringLiteral("general.lastModification");
const QString C_masked = QStringLiteral("********");
constexpr int C_sequenceDigits = 8;

QString metaPathOf(const QString& versionPath)
{
    return versionPath.chopped(5) + QStringLiteral(".meta");
}

bool writePrivate(const QString& path, const QByteArray& bytes, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error)
            *error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(bytes);
    if (!file.commit()) {
        if (error)
            *error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

void collect(const QString& prefix, const QJsonObject& before, const QJsonObject& after,
             QVector<SettingsHistory::Difference>& out)
{
    QStringList keys = before.keys() + after.keys();
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const QString& key : keys) {
        const QString path = prefix.isEmpty() ? key : prefix + QLatin1Char('.') + key;
        const QJsonValue a = before.value(key);
        const QJsonValue b = after.value(key);
        if (a.isObject() && b.isObject())
            collect(path, a.toObject(), b.toObject(), out);
        else if (a != b)
            out.append({path, a, b});
    }
}
}

SettingsHistory::SettingsHistory(const QString& documentPath)
    : m_documentPath(documentPath)
    , m_directoryPath(documentPath + QStringLiteral(".history"))
{
}

QStringList SettingsHistory::versionFiles() const
{
    static const QRegularExpression name(QStringLiteral("^\\d{%1}\\.json$").arg(C_sequenceDigits));
    QStringList files;
    const QStringList entries = QDir(m_directoryPath).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString& entry : entries) {
        if (name.match(entry).hasMatch())
            files.append(m_directoryPath + QLatin1Char('/') + entry);
    }
    return files;
}

QVector<SettingsHistory::Version> SettingsHistory::versions() const
{
    QVector<Version> list;
    const QStringList files = versionFiles();
    for (int i = 0; i < files.size(); ++i) {
        Version version;
        version.number = i;
        version.filePath = files.at(i);
        const QFileInfo info(files.at(i));
        version.size = info.size();
        version.time = info.lastModified().toUTC();
        QFile meta(metaPathOf(files.at(i)));
        if (meta.open(QIODevice::ReadOnly)) {
            const QJsonObject object = QJsonDocument::fromJson(meta.readAll()).object();
            const QDateTime time = QDateTime::fromString(object.value(QStringLiteral("time")).toString(), Qt::ISODateWithMs);
            if (time.isValid())
                version.time = time;
            for (const QJsonValue& key : object.value(QStringLiteral("changedKeys")).toArray())
                version.changedKeys.append(key.toString());
            version.reason = object.value(QStringLiteral("reason")).toString();
        }
        list.append(version);
    }
    return list;
}

bool SettingsHistory::record(const QByteArray& document, const QJsonObject& next, const QString& reason,
                             QString* error)
{
    return record(SettingsDocument::parse(document), next, reason, error);
}

bool SettingsHistory::record(const SettingsDocument::Reading& current, const QJsonObject& next, const QString& reason,
                             QString* error)
{
    if (current.state != SettingsDocument::CeLoaded)
        return true;
    const QByteArray& document = current.bytes;
    const QStringList files = versionFiles();
    if (!files.isEmpty()) {
        QFile newest(files.first());
        if (newest.size() == document.size() && newest.open(QIODevice::ReadOnly) && newest.readAll() == document)
            return true;
    }

    if (!QDir().mkpath(m_directoryPath)) {
        if (error)
            *error = QStringLiteral("cannot create %1").arg(m_directoryPath);
        return false;
    }
    QFile::setPermissions(m_directoryPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    // Leftovers of a write cut short (the writers hold the document's lock while recording).
    static const QRegularExpression ownFile(QStringLiteral("^\\d{%1}\\.(json|meta)$").arg(C_sequenceDigits));
    for (const QString& entry : QDir(m_directoryPath).entryList(QDir::Files | QDir::Hidden)) {
        if (!ownFile.match(entry).hasMatch())
            QFile::remove(m_directoryPath + QLatin1Char('/') + entry);
    }

    const int sequence = files.isEmpty() ? 1 : QFileInfo(files.first()).baseName().toInt() + 1;
    const QString path = QStringLiteral("%1/%2.json").arg(m_directoryPath).arg(sequence, C_sequenceDigits, 10, QLatin1Char('0'));
    if (!writePrivate(path, document, error))
        return false;

    QJsonObject meta;
    meta.insert(QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    meta.insert(QStringLiteral("size"), double(document.size()));
    meta.insert(QStringLiteral("changedKeys"), QJsonArray::fromStringList(changedKeys(current.object, next)));
    meta.insert(QStringLiteral("reason"), reason);
    if (!writePrivate(metaPathOf(path), QJsonDocument(meta).toJson(QJsonDocument::Compact), error)) {
        QFile::remove(path);
        return false;
    }

    const QStringList kept = versionFiles();
    for (int i = C_keptVersions; i < kept.size(); ++i) {
        QFile::remove(metaPathOf(kept.at(i)));
        QFile::remove(kept.at(i));
    }
    return true;
}

bool SettingsHistory::read(int number, QByteArray& bytes, QString* error) const
{
    const QStringList files = versionFiles();
    if (number < 0 || number >= files.size()) {
        if (error)
            *error = files.isEmpty() ? QStringLiteral("no version is kept in %1").arg(m_directoryPath)
                                     : QStringLiteral("no version %1 (0 to %2 are kept)").arg(number).arg(files.size() - 1);
        return false;
    }
    QFile file(files.at(number));
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("cannot read %1: %2").arg(file.fileName(), file.errorString());
        return false;
    }
    bytes = file.readAll();
    return true;
}

bool SettingsHistory::rollback(int number, QString* error)
{
    QByteArray bytes;
    if (!read(number, bytes, error))
        return false;
    const SettingsDocument::Reading version = SettingsDocument::parse(bytes);
    if (version.state != SettingsDocument::CeLoaded) {
        if (error)
            *error = QStringLiteral("version %1 is damaged: %2").arg(number).arg(version.reason);
        return false;
    }

    const SettingsDocument::Reading current = SettingsDocument::read(m_documentPath);
    const QString when = versions().value(number).time.toLocalTime().toString(Qt::ISODate);
    if (current.state == SettingsDocument::CeLoaded) {
        if (!record(current.bytes, version.object, QStringLiteral("rollback to the version of %1").arg(when), error))
            return false;
    } else if (current.state == SettingsDocument::CeUnusable && !current.bytes.trimmed().isEmpty()) {
        QString aside;
        if (!SettingsDocument::copyAside(m_documentPath, &aside)) {
            if (error)
                *error = QStringLiteral("cannot copy the damaged document aside");
            return false;
        }
    }

    QString writeError;
    if (SettingsDocument::writeInPlace(m_documentPath, bytes, &writeError) != SettingsDocument::CeWritten) {
        if (error)
            *error = QStringLiteral("cannot write %1: %2").arg(m_documentPath, writeError);
        return false;
    }
    return true;
}

QVector<SettingsHistory::Difference> SettingsHistory::differences(const QJsonObject& before, const QJsonObject& after)
{
    QVector<Difference> out;
    collect(QString(), before, after, out);
    return out;
}

QStringList SettingsHistory::changedKeys(const QJsonObject& before, const QJsonObject& after)
{
    QStringList keys;
    for (const Difference& difference : differences(before, after)) {
        if (difference.key != C_lastModificationKey)
            keys.append(difference.key);
    }
    return keys;
}

namespace {
bool isSecretKey(const QString& key)
{
    return key.contains(QLatin1String("password"), Qt::CaseInsensitive);
}

bool isSecret(const QJsonValue& value, const QString& key)
{
    return isSecretKey(key) && !value.isObject() && !value.isArray() && !value.isUndefined()
        && !value.toString().isEmpty();
}

bool holdsSecret(const QCborValue& value, bool secretKey);

// A read-only look first: only containers that hold a secret are rebuilt (replacing elements
// of a large array one by one would copy the array each time). The key is looked at once per
// container, not once per element of a long list of texts.
bool holdsSecret(const QCborMap& map)
{
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        if (holdsSecret(it.value(), isSecretKey(it.key().toString())))
            return true;
    }
    return false;
}

bool holdsSecret(const QCborValue& value, bool secretKey)
{
    if (value.isMap())
        return holdsSecret(value.toMap());
    if (value.isArray()) {
        for (const QCborValue& element : value.toArray()) {
            if (holdsSecret(element, secretKey))
                return true;
        }
        return false;
    }
    return secretKey && !value.isUndefined() && !value.toString().isEmpty();
}

bool holdsSecret(const QJsonValue& value, const QString& key)
{
    return holdsSecret(QCborValue::fromJsonValue(value), isSecretKey(key));
}
}

QJsonValue SettingsHistory::maskSecrets(const QJsonValue& value, const QString& key)
{
    if (isSecret(value, key))
        return C_masked;
    if (!holdsSecret(value, key))
        return value;
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        QVariantHash masked;
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            masked.insert(it.key(), maskSecrets(it.value(), it.key()).toVariant());
        return QJsonObject::fromVariantHash(masked);
    }
    const QJsonArray array = value.toArray();
    QVariantList masked;
    masked.reserve(array.size());
    for (const QJsonValue& element : array)
        masked.append(maskSecrets(element, key).toVariant());
    return QJsonArray::fromVariantList(masked);
}
