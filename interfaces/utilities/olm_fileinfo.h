#pragma once
#include "utilities/station_utilities_export.h"
#include "utilities/fileinfo.h"
#include "utilities/objectlistmodel.h"

class STATION_UTILITIES_EXPORT OLM_FileInfo : public ObjectListModel<FileInfo>
{
    Q_OBJECT
public:
    explicit OLM_FileInfo(QObject* parent = nullptr);
};
