#include "utilities/olm_sequenceiorelation.h"

OLM_SequenceIoRelation::OLM_SequenceIoRelation(QObject* parent)
    : ObjectListModel<SequenceIoRelation>(parent)
{
}
