#pragma once
#include "utilities/objectlistmodel.h"
#include "utilities/sequenceiorelation.h"

class OLM_SequenceIoRelation : public ObjectListModel<SequenceIoRelation>
{
    Q_OBJECT
public:
    explicit OLM_SequenceIoRelation(QObject* parent = nullptr);
};
