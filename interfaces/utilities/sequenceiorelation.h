#pragma once
#include "utilities/station_utilities_export.h"
#include <QJsonObject>
#include <QObject>
#include <QString>

// Binds a binary input code to the base name of the sequence it launches.
class STATION_UTILITIES_EXPORT SequenceIoRelation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int binaryCode READ binaryCode WRITE setBinaryCode NOTIFY changed)
    Q_PROPERTY(QString sequenceBaseName READ sequenceBaseName WRITE setSequenceBaseName NOTIFY changed)
public:
    SequenceIoRelation(int binaryCode, const QString& sequenceBaseName, QObject* parent = nullptr);
    // Keys "binaryCode" and "sequenceBaseName".
    explicit SequenceIoRelation(const QJsonObject& object, QObject* parent = nullptr);

    int binaryCode() const;
    QString sequenceBaseName() const;
    void setBinaryCode(int binaryCode);
    void setSequenceBaseName(const QString& name);
    QJsonObject toJson() const;

signals:
    void changed();

private:
    int m_binaryCode = 0;
    QString m_sequenceBaseName;
};
