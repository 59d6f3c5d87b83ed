// Sequence I/O relations and the skip and rework comment lists.
#include "d_zu_configuration.h"

#include "utilities/logline.h"

#include <QCborArray>

#include <algorithm>

namespace {
const char C_source[] = "lib_configuration/source/d_zu_configuration";

// Comment lists accept any text but the empty one; duplicates are kept on purpose.
bool addComment(QStringList& comments, const QString& text)
{
    if (text.isEmpty())
        return false;
    comments.append(text);
    return true;
}

bool editComment(QStringList& comments, int index, const QString& text)
{
    if (index < 0 || index >= comments.size() || text.isEmpty())
        return false;
    comments[index] = text;
    return true;
}

bool removeComment(QStringList& comments, int index)
{
    if (index < 0 || index >= comments.size())
        return false;
    comments.removeAt(index);
    return true;
}
}

// --- Comment lists as the document holds them ----------------------------------------------

void DZuConfiguration::CommentList::load(const QJsonArray& array)
{
    m_array = array;
    m_strings.clear();
    m_converted = false;
    m_edited = false;
}

// An element that is not a string reads as the empty text, as it always has.
const QStringList& DZuConfiguration::CommentList::strings() const
{
    if (!m_converted) {
        m_strings.reserve(m_array.size());
        for (const QCborValue& element : QCborArray::fromJsonArray(m_array))
            m_strings.append(element.toString());
        m_converted = true;
    }
    return m_strings;
}

QStringList& DZuConfiguration::CommentList::edit()
{
    strings();
    m_edited = true;
    m_array = QJsonArray();
    return m_strings;
}

QJsonArray DZuConfiguration::CommentList::toJson() const
{
    if (!m_edited) {
        const QCborArray elements = QCborArray::fromJsonArray(m_array);
        if (std::all_of(elements.cbegin(), elements.cend(), [](const QCborValue& element) { return element.isString(); }))
            return m_array;
    }
    return QJsonArray::fromStringList(strings());
}

// --- Sequence I/O relations -----------------------------------------------------------------

bool DZuConfiguration::checkSeqRelationExist(int binaryCode, int& index) const
{
    int position = 0;
    for (const auto& relation : m_sequenceIoRelations.list()) {
        if (relation.isNull()) {
            LogLine::critical(this, C_source, __LINE__, QStringLiteral("DZuConfiguration::checkSeqRelationExist: seqIoRl is null"));
        } else if (relation->binaryCode() == binaryCode) {
            index = position;
            return true;
        }
        ++position;
    }
    return false;
}

bool DZuConfiguration::addSequenceIoRelation(int binaryCode, const QString& sequenceBaseName)
{
    int existingIndex = 0;
    if (binaryCode < 1 || sequenceBaseName.isEmpty() || checkSeqRelationExist(binaryCode, existingIndex))
        return false;

    m_sequenceIoRelations.append(QSharedPointer<SequenceIoRelation>::create(binaryCode, sequenceBaseName));
    emit sigSequenceRelationChanged();
    return true;
}

void DZuConfiguration::editSequenceIoRelation(int index, int binaryCode, const QString& sequenceBaseName)
{
    if (binaryCode < 1 || sequenceBaseName.isEmpty() || index >= m_sequenceIoRelations.count() || index < 0)
        return;

    int atIndex = 0;
    if (!checkSeqRelationExist(binaryCode, atIndex)) {
        const auto relation = m_sequenceIoRelations.at(index);
        if (relation.isNull()) {
            LogLine::critical(this, C_source, __LINE__,
                              QStringLiteral("DZuConfiguration::editSequenceIoRelation: sequenceIoRelation at index is null"));
            return;
        }
        relation->setSequenceBaseName(sequenceBaseName);
        relation->setBinaryCode(binaryCode);
    } else {
        // The code belongs to a row already (maybe another one): that row is renamed, so codes
        // stay unique and the edited row keeps its own relation.
        const auto relation = m_sequenceIoRelations.at(atIndex);
        if (relation.isNull()) {
            LogLine::critical(this, C_source, __LINE__,
                              QStringLiteral("DZuConfiguration::editSequenceIoRelation: sequenceIoRelation at atIndex is null"));
            return;
        }
        relation->setSequenceBaseName(sequenceBaseName);
    }
    emit sigSequenceRelationChanged();
}

void DZuConfiguration::removeSequenceIoRelation(int index)
{
    if (!m_sequenceIoRelations.removeAt(index)) {
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("ERROR: index out of range"));
        return;
    }
    emit sigSequenceRelationChanged();
}

// --- Comments -------------------------------------------------------------------------------
// The getters' "rage" (not "range") is the text log readers have always matched; keep it.

QString DZuConfiguration::getReworkCommentFromIndex(int index)
{
    if (index < 0 || index >= m_reworkComments.size()) {
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("ERROR: index out of rage"));
        return QString();
    }
    return m_reworkComments.strings().at(index);
}

QString DZuConfiguration::getSkipCommentFromIndex(int index)
{
    if (index < 0 || index >= m_skipComments.size()) {
        LogLine::critical(this, C_source, __LINE__, QStringLiteral("ERROR: index out of rage"));
        return QString();
    }
    return m_skipComments.strings().at(index);
}

void DZuConfiguration::addSkipComment(const QString& text)
{
    if (addComment(m_skipComments.edit(), text))
        emit sigConfigurationChanged();
}

void DZuConfiguration::addReworkComment(const QString& text)
{
    if (addComment(m_reworkComments.edit(), text))
        emit sigConfigurationChanged();
}

void DZuConfiguration::editSkipComment(int index, const QString& text)
{
    if (editComment(m_skipComments.edit(), index, text))
        emit sigConfigurationChanged();
}

void DZuConfiguration::editReworkComment(int index, const QString& text)
{
    if (editComment(m_reworkComments.edit(), index, text))
        emit sigConfigurationChanged();
}

void DZuConfiguration::removeSkipComment(int index)
{
    if (removeComment(m_skipComments.edit(), index))
        emit sigConfigurationChanged();
}

void DZuConfiguration::removeReworkComment(int index)
{
    if (removeComment(m_reworkComments.edit(), index))
        emit sigConfigurationChanged();
}
