#pragma once

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/storage/FileSystem.h"
#include "platform/storage/Journal.h"
#include "platform/storage/StorageError.h"

namespace dbf {

/// FoxPro's place for locks of a table without a structural index: this one is the head's, or the memo file's; a record
/// has its position in the file behind it.
constexpr qint64 lockBase = 0x40000000;
/// What FoxPro 2.x can address.
constexpr qint64 greatestSize = 0x7FFFFFFF;

/// A .dbf or memo file. Writes are held back in memory until the transaction commits them; reads see them.
///
/// Units      positions and sizes are in bytes.
/// Owns       the file handle and the byte locks set through it; both end with the object.
/// Errors     as storage::File and storage::FileSystem::open have them.
class TableFile
{
public:
    /// Where `forWriting` is wanted but the file may only be read, it is opened for reading; see requireWritable().
    TableFile(storage::FileSystem &files, const QString &path, bool forWriting);

    QString path() const { return m_file->path(); }
    /// Throws StorageError::ReadOnly unless the file can be written.
    void requireWritable() const;
    qint64 size() const;

    /// Fills `into` completely.
    void read(qint64 position, storage::MutableBytes into) const;
    QByteArray read(qint64 position, qint64 size) const;

    using Pieces = std::map<qint64, QByteArray>; ///< by position, none overlapping
    /// What a held write has replaced: the pieces that lay in its way.
    struct Replaced {
        qint64 begin = 0;
        qint64 end = 0;
        Pieces pieces{};
    };
    /// Holds a write back; its result undoes it, unless later ones are still held.
    Replaced hold(qint64 position, const QByteArray &bytes);
    void undo(const Replaced &replaced);
    /// What the held writes change in the file as it is now, as its journal needs it.
    storage::FileChanges changes() const;
    void dropHeld() { m_held.clear(); }

    /// The file itself, for commits and locks.
    storage::File &file() { return *m_file; }

private:
    explicit TableFile(storage::OpenedFile opened);
    qint64 heldEnd() const;

    std::unique_ptr<storage::File> m_file;
    std::optional<storage::StorageError> m_whyReadOnly{};
    Pieces m_held{};
};

} // namespace dbf
