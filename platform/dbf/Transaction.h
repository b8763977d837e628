#pragma once

#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "platform/dbf/File.h"
#include "platform/storage/Storage.h"

namespace dbf {

class Transaction;

/// What the tables of one open database share about writing.
struct WriteState {
    bool readOnly = false;
    Transaction *running = nullptr; ///< owned by whoever began it
    /// Why an undoing failed; from then on the database refuses to work, since its content is uncertain.
    QString fault;

    /// Throws StorageError::InputOutput after a failed undoing.
    void requireSound() const;
};

/// The writes since its making, undone at its end unless committed.
///
/// Owns       the before-images of all changed bytes, in memory, and the byte locks, which are held until the end:
///            so nobody else's change can be undone along with ours.
/// Errors     write() and lock() throw StorageError. A failed undoing is kept in WriteState::fault.
class Transaction final : public storage::WriteScope
{
public:
    /// `state` must outlive the transaction and have none running; the same goes for the files written through it.
    explicit Transaction(WriteState &state);
    ~Transaction() override;
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void commit() override;

    /// Locks one byte, waiting up to a second; then StorageError::Locked, saying that `what` is in use.
    void lock(File &file, qint64 position, const QString &what);
    bool holds(File &file, qint64 position) const { return m_locks.contains({&file, position}); }
    void write(File &file, qint64 position, storage::Bytes bytes);

    std::size_t mark() const { return m_undo.size(); }
    void undoTo(std::size_t mark) noexcept;

private:
    void end() noexcept;

    WriteState &m_state;
    std::vector<std::function<void()>> m_undo;
    std::set<std::pair<File *, qint64>> m_locks;
    bool m_committed = false;
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

/// Waits up to a second for `attempt` to succeed; whether it did.
bool retryForASecond(const std::function<bool()> &attempt);

} // namespace dbf
