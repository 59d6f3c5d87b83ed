#pragma once
#include "utilities/fileinfo.h"
#include "utilities/objectlistmodel.h"

class OLM_FileInfo : public ObjectListModel<FileInfo>
{
    Q_OBJECT
public:
    explicit OLM_FileInfo(QObject* parent = nullptr);
};
