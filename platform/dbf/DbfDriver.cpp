// The entrance to the dBASE format.
#include "platform/dbf/DbfDriver.h"

#include <QDir>
#include <QFileInfo>

#include "platform/dbf/Database.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace dbf {

namespace {

QString folderOf(const storage::OpenRequest &request)
{
    return storage::existingPath(QDir::cleanPath(storage::localPath(request.path)));
}

} // namespace

std::unique_ptr<storage::Database> DbfDriver::open(const storage::OpenRequest &request)
{
    const QFileInfo folder(folderOf(request));
    if (!folder.exists())
        throw StorageError(StorageError::Missing, u"Den Ordner %1 gibt es nicht"_s.arg(folder.filePath()));
    if (!folder.isDir()) {
        throw StorageError(StorageError::NotThisFormat,
                           u"%1 ist kein Ordner mit dBASE-Tabellen"_s.arg(folder.filePath()));
    }
    return std::make_unique<Database>(folder.filePath(), request.readOnly);
}

std::unique_ptr<storage::Database> DbfDriver::create(const storage::OpenRequest &request, storage::FileVersion)
{
    const QString folder = folderOf(request);
    if (QFileInfo::exists(folder))
        throw StorageError(StorageError::AlreadyExists, u"%1 gibt es schon"_s.arg(folder));
    if (!QDir().mkdir(folder))
        throw StorageError(StorageError::InputOutput, u"Der Ordner %1 lässt sich nicht anlegen"_s.arg(folder));
    return std::make_unique<Database>(folder, false);
}

} // namespace dbf
