// The entrance to the dBASE format.
#include "platform/dbf/DbfDriver.h"

#include <filesystem>

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
    const QString folder = folderOf(request);
    if (!m_files.exists(folder))
        throw StorageError(StorageError::Missing, u"Den Ordner %1 gibt es nicht"_s.arg(folder));
    if (!QFileInfo(folder).isDir())
        throw StorageError(StorageError::NotThisFormat, u"%1 ist kein Ordner mit dBASE-Tabellen"_s.arg(folder));
    return std::make_unique<Database>(m_files, folder, request.readOnly);
}

std::unique_ptr<storage::Database> DbfDriver::create(const storage::OpenRequest &request, storage::FileVersion)
{
    const QString folder = folderOf(request);
    if (m_files.exists(folder))
        throw StorageError(StorageError::AlreadyExists, u"%1 gibt es schon"_s.arg(folder));
    std::error_code error;
    std::filesystem::create_directory(QFileInfo(folder).filesystemFilePath(), error);
    if (error)
        throw storage::nameError(error.value(), folder, u"Anlegen"_s);
    return std::make_unique<Database>(m_files, folder, false);
}

} // namespace dbf
