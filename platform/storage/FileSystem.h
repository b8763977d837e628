#pragma once

#include <memory>
#include <optional>

#include <QByteArray>
#include <QString>

#include "platform/storage/Bytes.h"
#include "platform/storage/StorageError.h"

/// The files below the formats. All access to a database and to what lies beside it goes through here, so that a test
/// can let any single operation fail.
namespace storage {

/// A stretch of a file, in bytes; for locks it may lie beyond the end.
struct ByteRange {
    qint64 first = 0;
    qint64 size = 0;
};

enum class LockKind { Shared, Exclusive };

/// An open file that is read and written at positions, without a cache of its own: every read sees what other programs
/// have written.
///
/// Units   positions and sizes are in bytes.
/// Owns    the handle and the locks set through it; both end with the object.
/// Errors  StorageError: Damaged (a read beyond the end), ReadOnly, DiskFull, FileFull, ConnectionLost, InputOutput.
class File
{
public:
    virtual ~File() = default;

    virtual QString path() const = 0;
    virtual bool writable() const = 0;
    virtual qint64 size() const = 0;

    /// Fills `into` completely.
    virtual void read(qint64 position, MutableBytes into) const = 0;
    QByteArray read(qint64 position, qint64 size) const;
    /// Writes all of the bytes; a failure may leave some of them written.
    virtual void write(qint64 position, Bytes bytes) = 0;
    virtual void resize(qint64 size) = 0;
    /// Returns when content and length are on the disk.
    virtual void sync() = 0;

    /// False if another program, or another File, holds a lock on any of the bytes. An exclusive lock needs a writable
    /// file. Locks that touch or overlap are not to be set through the same object.
    [[nodiscard]] virtual bool tryLock(ByteRange range, LockKind kind) = 0;
    virtual void unlock(ByteRange range) noexcept = 0;

    /// Whether its name still leads to this file: false when it was removed or replaced meanwhile.
    virtual bool isStillThere() const = 0;
};

enum class Access { Read, ReadWrite };

/// The names of files.
///
/// Errors  StorageError: Missing, AlreadyExists, ReadOnly, FolderReadOnly, NoPermission, DiskFull, ConnectionLost,
///         InputOutput.
class FileSystem
{
public:
    virtual ~FileSystem() = default;

    /// Opens a file. ReadOnly if it could be read but not written; NoPermission if neither.
    virtual std::unique_ptr<File> open(const QString &path, Access access) = 0;
    /// Makes an empty file and opens it for writing.
    virtual std::unique_ptr<File> create(const QString &path) = 0;
    virtual bool exists(const QString &path) const = 0;
    virtual void remove(const QString &path) = 0;
    /// Gives a file another name, which nobody may have.
    virtual void rename(const QString &from, const QString &to) = 0;
    /// Returns when the names in the folder of that file are on the disk as they are now.
    virtual void syncFolderOf(const QString &path) = 0;
};

/// The machine's own.
FileSystem &systemFiles();

/// A file that is open as far as it lets itself be.
struct OpenedFile {
    std::unique_ptr<File> file{};
    std::optional<StorageError> whyReadOnly{}; ///< nothing: it is open for writing
};

/// Opens a file for writing if that is wanted and possible, else for reading; says why. Throws as FileSystem::open.
OpenedFile openAsFarAsPossible(FileSystem &files, const QString &path, bool forWriting);

/// The content of a file of the machine's own. Throws as FileSystem::open and File::read: a German text with the file's
/// name for whatever cannot be read, a folder among them.
QByteArray readWholeFile(const QString &path);

/// What the operating system's error means for `what` ("Schreiben") on a file.
StorageError fileError(int systemError, const QString &path, const QString &what);
/// The same for making, removing and renaming, which the folder may not allow.
StorageError nameError(int systemError, const QString &path, const QString &what);

/// What kind of failure the operating system's error is.
StorageError::Kind errorKind(int systemError);

/// The bytes of an array; valid as long as the array.
Bytes bytesOf(const QByteArray &array);

} // namespace storage
