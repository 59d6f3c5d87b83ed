#include "utilities/olm_fileinfo.h"

OLM_FileInfo::OLM_FileInfo(QObject* parent)
    : ObjectListModel<FileInfo>(parent)
{
}
