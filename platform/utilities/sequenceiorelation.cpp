#include "utilities/sequenceiorelation.h"

namespace {
const QString C_keyBinaryCode = QStringLiteral("binaryCode");
const QString C_keySequenceBaseName = QStringLiteral("sequenceBaseName");
}

SequenceIoRelation::SequenceIoRelation(int binaryCode, const QString& sequenceBaseName, QObject* parent)
    : QObject(parent)
    , m_binaryCode(binaryCode)
    , m_sequenceBaseName(sequenceBaseName)
{
}

SequenceIoRelation::SequenceIoRelation(const QJsonObject& object, QObject* parent)
    : QObject(parent)
    , m_binaryCode(object.value(C_keyBinaryCode).toInt())
    , m_sequenceBaseName(object.value(C_keySequenceBaseName).toString())
{
}

int SequenceIoRelation::binaryCode() const
{
    return m_binaryCode;
}

QString SequenceIoRelation::sequenceBaseName() const
{
    return m_sequenceBaseName;
}

void SequenceIoRelation::setBinaryCode(int binaryCode)
{
    if (m_binaryCode == binaryCode)
        return;
    m_binaryCode = binaryCode;
    emit changed();
}

void SequenceIoRelation::setSequenceBaseName(const QString& name)
{
    if (m_sequenceBaseName == name)
        return;
    m_sequenceBaseName = name;
    emit changed();
}

QJsonObject SequenceIoRelation::toJson() const
{
    return { { C_keyBinaryCode, m_binaryCode }, { C_keySequenceBaseName, m_sequenceBaseName } };
}
