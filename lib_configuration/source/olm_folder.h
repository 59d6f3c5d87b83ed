#pragma once
#include "folder.h"
#include "utilities/objectlistmodel.h"

// The registry's folder list, in display order.
class OLM_Folder : public ObjectListModel<Folder>
{
    Q_OBJECT
public:
    explicit OLM_Folder(QObject* parent = nullptr);
};
