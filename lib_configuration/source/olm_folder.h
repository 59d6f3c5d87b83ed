#pragma once
#include "station_configuration_export.h"
#include "folder.h"
#include "utilities/objectlistmodel.h"

// The registry's folder list, in display order.
class STATION_CONFIGURATION_EXPORT OLM_Folder : public ObjectListModel<Folder>
{
    Q_OBJECT
public:
    explicit OLM_Folder(QObject* parent = nullptr);
};
