#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include "platform/storage/Bytes.h"

namespace dbf {

/// An open file that is read and written at positions, without a cache of its own: every read sees what other programs
/// have written.
///
/// Units      positions and sizes are in bytes.
/// Owns       the file handle and the byte locks set through it; both end with the object.
/// Errors     throws StorageError: Missing, Damaged (a read beyond the end), ReadOnly, DiskFull, InputOutput.
class File
{
public:
    enum class Lock { Shared, Exclusive };

    /// Where `forWriting` is wanted but the file may only be read, it is opened for reading; see writable().
    File(const QString &path, bool forWriting);

    /// Makes a new file with this content; AlreadyExists if there is one.
    static void create(const QString &path, storage::Bytes content);

    QString path() const { return m_file.fileName(); }
    /// The file's name without its folder, for messages.
    QString name() const;
    bool writable() const { return m_file.openMode() & QIODevice::WriteOnly; }
    qint64 size() const { return m_file.size(); }

    /// Fills `into` completely.
    void read(qint64 position, storage::MutableBytes into) const;
    QByteArray read(qint64 position, qint64 size) const;
    void write(qint64 position, storage::Bytes bytes);
    void resize(qint64 size);

    /// Locks one byte, which may lie beyond the end; false if another program, or another File, holds it.
    /// An exclusive lock needs a writable file.
    [[nodiscard]] bool tryLock(qint64 position, Lock kind);
    void unlock(qint64 position) noexcept;

private:
    mutable QFile m_file; // reading moves its position
};

/// The bytes of a QByteArray; valid as long as the array.
storage::Bytes bytesOf(const QByteArray &array);

} // namespace dbf
