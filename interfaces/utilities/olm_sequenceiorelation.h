#pragma once
#include "utilities/station_utilities_export.h"
#include "utilities/objectlistmodel.h"
#include "utilities/sequenceiorelation.h"

class STATION_UTILITIES_EXPORT OLM_SequenceIoRelation : public ObjectListModel<SequenceIoRelation>
{
    Q_OBJECT
public:
    explicit OLM_SequenceIoRelation(QObject* parent = nullptr);
};
