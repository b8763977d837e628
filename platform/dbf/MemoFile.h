#pragma once

#include "platform/dbf/Layout.h"
#include "platform/dbf/Transaction.h"

namespace dbf {

/// The memo file of a table. A memo lies in consecutive blocks and is named by its first one; block 0 is the head.
/// FoxPro's .fpt is read and written, dBASE's .dbt read only.
///
/// Errors     throws StorageError: Damaged for blocks outside the file or without a memo, Unsupported for writing a
///            .dbt or reading a picture or object; the rest as TableFile does.
class MemoFile
{
public:
    /// `kind` is not None.
    MemoFile(storage::FileSystem &files, const QString &path, MemoKind kind, bool forWriting);

    /// The file name's ending, with its dot.
    static QString suffix(MemoKind kind);
    /// The whole file of a new table's memos (FoxPro).
    static QByteArray newFile();

    /// The bytes of the memo at this block, which is at least 1.
    QByteArray read(qint64 block) const;
    /// Stores a memo: in the blocks of `oldBlock` (0: none) if it fits there, else behind all others. Returns its
    /// block.
    qint64 write(Transaction &transaction, const QByteArray &content, qint64 oldBlock);
    /// Throws what write() would throw whatever the content.
    void requireWritable() const;

private:
    [[noreturn]] void damaged(qint64 block, const QString &what) const;
    qint64 blockSize() const;
    qint64 positionOf(qint64 block) const;
    qint64 foxProLength(qint64 block) const;
    QByteArray readDBase3(qint64 block) const;
    QByteArray readDBase4(qint64 block) const;
    qint64 firstFreeBlock(qint64 size) const;

    TableFile m_file;
    MemoKind m_kind;
};

} // namespace dbf
