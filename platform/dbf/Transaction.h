#pragma once

#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "platform/dbf/FolderJournal.h"
#include "platform/dbf/TableFile.h"
#include "platform/storage/Storage.h"

namespace dbf {

class Transaction;

/// What the tables of one open database share about writing.
struct WriteState {
    FolderJournal journal;
    bool readOnly = false;
    Transaction *running = nullptr; ///< owned by whoever began it
};

/// Writes that are held back until commit(), which brings them into the files as a whole; without it they never were.
///
/// Owns       the new content, in memory, and the byte locks, which are held until the end.
/// Errors     lock() and commit() throw StorageError. After a failed commit the files are as before, or the journal
///            will bring them there before they are used again.
class Transaction final : public storage::WriteScope
{
public:
    /// `state` must outlive the transaction and have none running; the same goes for the files written through it.
    explicit Transaction(WriteState &state);
    ~Transaction() override;
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void commit() override;

    /// Locks one byte, waiting a while; then StorageError::Locked, saying that `what` is in use.
    void lock(TableFile &file, qint64 position, const QString &what);
    bool holds(TableFile &file, qint64 position) const { return m_locks.contains({&file, position}); }
    void write(TableFile &file, qint64 position, const QByteArray &bytes);

    std::size_t mark() const { return m_writes.size(); }
    void undoTo(std::size_t mark) noexcept;

private:
    std::vector<TableFile *> changedFiles() const;
    void end() noexcept;

    WriteState &m_state;
    std::vector<std::pair<TableFile *, TableFile::Replaced>> m_writes;
    std::set<std::pair<TableFile *, qint64>> m_locks;
};

/// One statement: joins the running transaction or is one of its own. Unless done() was called, its writes are undone
/// at its end and those before it in the transaction stay.
class Step
{
public:
    /// Throws StorageError::ReadOnly where the database was opened for reading.
    explicit Step(WriteState &state);
    ~Step();
    Step(const Step &) = delete;
    Step &operator=(const Step &) = delete;

    Transaction &transaction() { return *m_transaction; }
    void done();

private:
    std::unique_ptr<Transaction> m_own;
    Transaction *m_transaction;
    std::size_t m_mark = 0;
    bool m_done = false;
};

} // namespace dbf
