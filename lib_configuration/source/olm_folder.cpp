#include "olm_folder.h"

OLM_Folder::OLM_Folder(QObject* parent)
    : ObjectListModel<Folder>(parent)
{
}
