// What all implementations of files share.
#include "platform/storage/FileSystem.h"

using namespace Qt::StringLiterals;

namespace storage {

QByteArray File::read(qint64 position, qint64 size) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    read(position, std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(size))));
    return bytes;
}

Bytes bytesOf(const QByteArray &array)
{
    return std::as_bytes(std::span(array.constData(), static_cast<std::size_t>(array.size())));
}

QByteArray readWholeFile(const QString &path)
{
    const std::unique_ptr<File> file = systemFiles().open(path, Access::Read);
    return file->read(0, file->size());
}

OpenedFile openAsFarAsPossible(FileSystem &files, const QString &path, bool forWriting)
{
    std::optional<StorageError> whyReadOnly;
    if (forWriting) {
        try {
            return {files.open(path, Access::ReadWrite)};
        } catch (const StorageError &error) {
            if (error.kind() != StorageError::ReadOnly)
                throw;
            whyReadOnly = error;
        }
    } else {
        whyReadOnly = StorageError(StorageError::ReadOnly, u"%1 ist nur zum Lesen geöffnet."_s.arg(path));
    }
    return {files.open(path, Access::Read), std::move(whyReadOnly)};
}

StorageError fileError(int systemError, const QString &path, const QString &what)
{
    const StorageError::Kind kind = errorKind(systemError);
    const QString place = u"%1: %2 nicht möglich"_s.arg(path, what);
    switch (kind) {
    case StorageError::Missing:
        return {kind, u"%1 gibt es nicht"_s.arg(path)};
    case StorageError::AlreadyExists:
        return {kind, u"%1 gibt es schon"_s.arg(path)};
    case StorageError::NoPermission:
        return {kind, place + u", die Berechtigung fehlt"_s};
    case StorageError::ReadOnly:
        return {kind, place + u", der Datenträger ist schreibgeschützt"_s};
    case StorageError::DiskFull:
        return {kind, place + u", der Datenträger ist voll"_s};
    case StorageError::FileFull:
        return {kind, place + u", die Datei würde zu groß"_s};
    case StorageError::Locked:
        return {kind, place + u", ein anderes Programm benutzt die Datei"_s};
    case StorageError::ConnectionLost:
        return {kind, place + u", die Verbindung ist unterbrochen"_s};
    default:
        return {kind, u"%1 (Fehler %2 des Betriebssystems)"_s.arg(place).arg(systemError)}; // it knows no German
    }
}

StorageError nameError(int systemError, const QString &path, const QString &what)
{
    const StorageError::Kind kind = errorKind(systemError);
    if (kind == StorageError::NoPermission || kind == StorageError::ReadOnly) {
        return {StorageError::FolderReadOnly,
                u"%1: %2 nicht möglich, der Ordner ist schreibgeschützt"_s.arg(path, what)};
    }
    return fileError(systemError, path, what);
}

} // namespace storage
